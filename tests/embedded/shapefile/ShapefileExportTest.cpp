// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/shapefile/ShapefileExportTesting.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/DbfWriter.h"
#include "tests/support/OrdinaryUser.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using embedded::ErrorCode;
using embedded::FindingCode;
using namespace shapetest;

namespace {

TEST_F(ShapefileExportTest, WhatIsWrittenIsReadBackTheSame)
{
    const char* const libraries[] = {
        "table t (a text, b integer, c decimal 3, d boolean, e date);"
        "rows t: ('Città', -7, 1.5, yes, 05/03/2016), (-, -, -, -, -), (' x', 2147483647, -0.125, "
        "no, 31/12/1899);"
        "theme t: points 2d on t active; ents t: 0 [0.1 -20], 1 [], 2 [1e300 3]",
        "table t (a text); rows t: ('x'), ('y'); theme t: lines 2d on t active;"
        "ents t: 0 [0 0, 1 1 | 2 2, 3 3, 4 4], 1 [5 5, 6 6]",
        "table t (a text); rows t: ('x'), ('y'); theme t: polygons 2d on t active;"
        "ents t: 0 [0 0, 0 9, 9 9, 0 0 | 1 1, 2 1, 2 2, 1 1], 1 []",
        "table t (a text); rows t: ('x'); theme t: polygons 3d on t active; ents t: 0 [0 0 5, 0 9 "
        "6, 9 9 7, 0 0 5]",
        "table t (a text); rows t: ('x'); theme t: lines m on t active; ents t: 0 [0 0 5, 0 9 6]",
        "table t (a text); rows t: ('x'), ('y'); theme t: points 3d on t active; ents t: 0 [1 2 3 "
        "| 4 5 6], 1 [7 8 9]",
        "table t (a text); theme t: lines 3d on t active",
    };
    for (const char* notation : libraries) {
        gis::CLibGis source;
        support::fillLibrary(source, notation);
        report = {};

        ASSERT_TRUE(embedded::exportShapefile(
            *source.GetTheme(0), folder.path(), options, errorFlags, report)
                        .ok());

        EXPECT_EQ(readBack("t.shp"), support::printLibrary(source)) << notation;
        EXPECT_FALSE(report.hasWarnings()) << notation;
    }
}

TEST_F(ShapefileExportTest, AllFilesOfAShapefileAreWritten)
{
    support::fillLibrary(
        library, "table t (a text); rows t: ('x'); theme Vie: points 2d on t; ents Vie: 0 [1 2]");
    library.GetTheme(0)->referenceSystem.definition = "GEOGCS[\"x\"]\r\n ";

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(filesInFolder(),
        testing::UnorderedElementsAre("Vie.shp", "Vie.shx", "Vie.dbf", "Vie.cpg", "Vie.prj"));
    EXPECT_EQ(readFile(folder / "Vie.cpg"), "UTF-8");
    EXPECT_EQ(readFile(folder / "Vie.prj"), "GEOGCS[\"x\"]\r\n ");
    EXPECT_EQ(errorFlags, 0);
}

TEST_F(ShapefileExportTest, ACodeAloneGivesAPrj)
{
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");
    library.GetTheme(0)->referenceSystem.authority = "EPSG";
    library.GetTheme(0)->referenceSystem.code = 32632;

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(
        readFile(folder / "t.prj"), testing::StartsWith("PROJCS[\"WGS_1984_UTM_Zone_32N\""));
}

TEST_F(ShapefileExportTest, LongNamesAreCutAndStayDifferent)
{
    support::fillLibrary(library,
        "table t (descrizione1 text, descrizione2 text, DESCRIZIONE text, abcdefghià text, ok "
        "text);"
        "theme t: points 2d on t");

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(fieldNames("t.dbf"),
        testing::ElementsAre("descrizion", "descrizi_1", "DESCRIZI_2", "abcdefghi", "ok"));
    ASSERT_NE(finding(FindingCode::FieldNameCut, "descrizione2"), nullptr);
    EXPECT_EQ(finding(FindingCode::FieldNameCut, "descrizione2")->detail, "descrizi_1");
    EXPECT_EQ(finding(FindingCode::FieldNameCut, "ok"), nullptr);
}

TEST_F(ShapefileExportTest, TextsAreCutAtACharacter)
{
    support::fillLibrary(library,
        "table t (a text); rows t: ('123456789à'), ('short'), (-); theme t: points 2d on t; ents "
        "t: 0 [0 0], 1 [0 0], 2 [0 0]");
    options.maxTextBytes = 10;

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(cells("t.dbf", 0), testing::ElementsAre("123456789 ", "short     ", "          "));
    ASSERT_NE(finding(FindingCode::TextCut, "a"), nullptr);
    EXPECT_EQ(finding(FindingCode::TextCut, "a")->count, 1);
}

TEST_F(ShapefileExportTest, TextsAreAsWideAsTheLongestUpTo254)
{
    const std::string longText(300, 'x');
    support::fillLibrary(library,
        "table t (a text, b text); rows t: ('" + longText
            + "', -); theme t: points 2d on t; ents t: 0 [0 0]");
    options.maxTextBytes = 1000;

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_EQ(cells("t.dbf", 0)[0], std::string(254, 'x'));
    EXPECT_EQ(cells("t.dbf", 1)[0], " ");
    EXPECT_EQ(finding(FindingCode::TextCut, "a")->count, 1);
}

TEST_F(ShapefileExportTest, DecimalsKeepTheirDigitsAndTellWhatTheyLose)
{
    support::fillLibrary(library,
        "table t (a decimal 2); rows t: (1.5), (-12.25), (0.125), (1e30); theme t: points 2d on t;"
        "ents t: 0 [0 0], 1 [0 0], 2 [0 0], 3 [0 0]");

    ASSERT_TRUE(exportTheme().ok());

    const std::vector<std::string> written = cells("t.dbf", 0);
    EXPECT_THAT(written[0], testing::EndsWith(" 1.50"));
    EXPECT_THAT(written[1], testing::EndsWith("-12.25"));
    EXPECT_THAT(written[2], testing::EndsWith(" 0.12"));
    EXPECT_THAT(written[3], testing::EndsWith("1e+30"));
    ASSERT_NE(finding(FindingCode::NumberRounded, "a"), nullptr);
    EXPECT_EQ(finding(FindingCode::NumberRounded, "a")->count, 1);
    EXPECT_EQ(finding(FindingCode::NumberCut, "a"), nullptr) << "nothing was left out";
}

TEST_F(ShapefileExportTest, NumbersFitTheirCells)
{
    struct Case {
        double value;
        int decimals;
        int width;
        const char* text;
        bool isExact;
    };
    const Case cases[] = {
        { 1.5, 2, 20, "1.50", true },
        { -1.5, 0, 20, "-2", false },
        { 1e300, 2, 20, "1e+300", true },
        { -1.2345678901234567e-300, 10, 20, "-0.0000000000", false },
        { 1.2345678901234567e+300, 2, 20, "1.23456789012346e+300", false },
        { 12345678901234567890.0, 2, 20, "1.2345678901234567e+19", false },
        { std::numeric_limits<double>::infinity(), 2, 20, "", false },
        { std::nan(""), 2, 20, "", false },
    };
    for (const Case& each : cases) {
        bool isExact = !each.isExact;
        const std::string text
            = embedded::dbfNumberText(each.value, each.decimals, each.width, isExact);
        EXPECT_LE(text.size(), 20u);
        EXPECT_EQ(isExact, each.isExact) << each.text;
        if (std::string(each.text).size() <= 20) {
            EXPECT_EQ(text, each.text);
        }
    }
}

TEST_F(ShapefileExportTest, ListsBecomeTexts)
{
    support::fillLibrary(library,
        "table t (a list ('A', 'B')); rows t: ('B'); theme t: points 2d on t; ents t: 0 [0 0]");

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(cells("t.dbf", 0), testing::ElementsAre("B"));
    EXPECT_NE(finding(FindingCode::FormatChanged, "a"), nullptr);
}

TEST_F(ShapefileExportTest, DecimalsThatReadBackAsIntegersAreNoted)
{
    support::fillLibrary(library,
        "table t (a decimal 0, b decimal 0, c decimal 1); rows t: (5, 3000000000, 5);"
        "theme t: points 2d on t; ents t: 0 [0 0]");

    ASSERT_TRUE(exportTheme().ok());

    ASSERT_NE(finding(FindingCode::FormatChanged, "a"), nullptr);
    EXPECT_EQ(finding(FindingCode::FormatChanged, "a")->severity, embedded::FindingSeverity::Note);
    EXPECT_EQ(finding(FindingCode::FormatChanged, "b"), nullptr) << "too large for an integer";
    EXPECT_EQ(finding(FindingCode::FormatChanged, "c"), nullptr) << "its digits tell";
}

TEST_F(ShapefileExportTest, ATableWithoutFieldsGetsANumber)
{
    support::fillLibrary(
        library, "table t (); rows t: (), (); theme t: points 2d on t; ents t: 0 [0 0], 1 [1 1]");

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(fieldNames("t.dbf"), testing::ElementsAre("FID"));
    EXPECT_THAT(cells("t.dbf", 0), testing::ElementsAre("          1", "          2"));
}

TEST_F(ShapefileExportTest, CoordinatesAreThoseAskedFor)
{
    support::fillLibrary(library,
        "table t (a text); rows t: ('x'); theme t: lines 3d on t; ents t: 0 [0 0 5, 1 1 6];"
        "table u (a text); rows u: ('x'); theme u: lines m on u; ents u: 0 [0 0 5, 1 1 6]");
    const auto coordsOf = [this](const char* file) {
        auto coords = gis::EntTypeCoords::XY;
        EXPECT_EQ(embedded::shapefileEntityType(folder / file, &coords), 3);
        return coords;
    };

    options.coordinates = embedded::ExportCoordinates::XY;
    ASSERT_TRUE(exportTheme(0).ok());
    EXPECT_EQ(coordsOf("t.shp"), gis::EntTypeCoords::XY);
    EXPECT_NE(finding(FindingCode::CoordinateDropped), nullptr);

    options.coordinates = embedded::ExportCoordinates::XYZ;
    ASSERT_TRUE(exportTheme(1).ok());
    EXPECT_EQ(coordsOf("u.shp"), gis::EntTypeCoords::XYZ);
    EXPECT_NE(finding(FindingCode::CoordinateAdded), nullptr);
    EXPECT_THAT(readBack("u.shp"), testing::HasSubstr("0 0 0"));

    options.coordinates = embedded::ExportCoordinates::AsTheme;
    ASSERT_TRUE(exportTheme(1).ok());
    EXPECT_EQ(coordsOf("u.shp"), gis::EntTypeCoords::XYM);
}

TEST_F(ShapefileExportTest, NamesBecomeFileNames)
{
    support::fillLibrary(library, "table t (a text); theme \"Strade/vie\": points 2d on t");
    std::string path;
    EXPECT_FALSE(embedded::shapefileExists(*library.GetTheme(0), folder.path(), path));

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_EQ(path, folder / "Strade_vie");
    EXPECT_TRUE(std::filesystem::exists(folder / "Strade_vie.shp"));
    EXPECT_TRUE(embedded::shapefileExists(*library.GetTheme(0), folder.path() + "/", path));
    EXPECT_EQ(path, folder / "Strade_vie");
}

TEST_F(ShapefileExportTest, OldFilesOfTheNameAreReplacedTogether)
{
    for (const char* name : { "t.shp", "t.DBF", "t.prj", "t.sbn", "t.qix", "t.txt", "T.shp" })
        writeFile(folder / name, "old");
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");

    ASSERT_TRUE(exportTheme().ok());

    // The .prj of the old file and its indexes would be wrong beside the new one.
    EXPECT_THAT(filesInFolder(),
        testing::UnorderedElementsAre("t.shp", "t.shx", "t.dbf", "t.cpg", "t.txt", "T.shp"));
}

TEST_F(ShapefileExportTest, FoldersThatAreNoneAreRefused)
{
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");
    gis::CTheme& theme = *library.GetTheme(0);
    for (const char* name : { "C:\\", "relative", "", "C:\\out\\" }) {
        const auto result = embedded::exportShapefile(theme, name, options, errorFlags, report);
        EXPECT_EQ(result.error().code, ErrorCode::FolderNotAbsolute);
        EXPECT_EQ(errorFlags, 3);
    }
    const auto missing
        = embedded::exportShapefile(theme, folder / "none", options, errorFlags, report);
    EXPECT_EQ(missing.error().code, ErrorCode::FolderNotFound);
    EXPECT_EQ(errorFlags, 3);
    EXPECT_TRUE(filesInFolder().empty());
}

TEST_F(ShapefileExportTest, WhatStandsInTheWayOfAFileIsToldAndNothingChanges)
{
    support::fillLibrary(
        library, "table t (a text); rows t: ('x'); theme t: points 2d on t; ents t: 0 [0 0]");
    std::filesystem::create_directory(folder / "t.dbf");
    writeFile(folder / "t.shp", "old shapes");

    const auto result = exportTheme();

    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, ErrorCode::WriteFailed);
    EXPECT_EQ(result.error().subject, folder / "t.dbf");
    EXPECT_EQ(errorFlags, 2);
    EXPECT_EQ(readFile(folder / "t.shp"), "old shapes");
    EXPECT_THAT(filesInFolder(), testing::UnorderedElementsAre("t.shp", "t.dbf"));
}

TEST_F(ShapefileExportTest, AFolderWithoutRightsGivesBothFlags)
{
    const support::OrdinaryUserScope user(folder.path());
    ASSERT_TRUE(user.isOrdinary());
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");
    ::chmod(folder.path().c_str(), 0500);
    const auto result = exportTheme();
    ::chmod(folder.path().c_str(), 0700);

    ASSERT_FALSE(result.ok());
    EXPECT_EQ(errorFlags, 3);
}

TEST_F(ShapefileExportTest, AFileThatCannotGrowLeavesTheOldOnes)
{
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");
    gis::CDBTable& table = *library.GetTable(0);
    table.addRows(1000);
    for (int i = 0; i < 1000; ++i) {
        library.GetTheme(0)->entities().addEntity(table.row(i));
        double* vertex = library.GetTheme(0)->entities().addPart(1);
        vertex[0] = vertex[1] = i;
    }
    writeFile(folder / "t.shp", "old shapes");
    // As on a disk that is full: no file may grow beyond a few thousand bytes.
    struct rlimit before { };
    ::getrlimit(RLIMIT_FSIZE, &before);
    struct rlimit small = before;
    small.rlim_cur = 4096;
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);
    const auto result = exportTheme();
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);

    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, ErrorCode::WriteFailed);
    EXPECT_EQ(errorFlags, 1);
    EXPECT_EQ(readFile(folder / "t.shp"), "old shapes");
    EXPECT_THAT(filesInFolder(), testing::ElementsAre("t.shp"));
}

class StopAtOnce final : public embedded::IProgress {
public:
    bool advance(double) override { return false; }
};

TEST_F(ShapefileExportTest, AStoppedExportLeavesNothingBehind)
{
    support::fillLibrary(
        library, "table t (a text); rows t: ('x'); theme t: points 2d on t; ents t: 0 [0 0]");
    StopAtOnce progress;
    embedded::Library::of(&library)->setProgress(&progress);

    const auto result = exportTheme();

    ASSERT_FALSE(result.ok());
    EXPECT_EQ(result.error().code, ErrorCode::Cancelled);
    EXPECT_EQ(errorFlags, 0);
    EXPECT_TRUE(filesInFolder().empty());
}

} // namespace
