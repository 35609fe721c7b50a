// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Shapefile.h"

#include "embedded/model/Library.h"
#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/embedded/shapefile/StopAt.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/Exchange.h"
#include "host/gis/Merge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <map>

using embedded::ErrorCode;
using embedded::FindingCode;
using embedded::Report;
using embedded::ShapefileImportOptions;
using support::printLibrary;
using namespace shapetest;

namespace {

class ShapefileImportTest : public testing::Test {
protected:
    embedded::Result<embedded::ShapefileImportResult> import(
        const std::string& path, gis::IGisMerger* merger = nullptr)
    {
        report = {};
        return embedded::importShapefile(library, path, options, merger, nullptr, report);
    }
    ErrorCode errorOf(const std::string& path)
    {
        const auto result = import(path);
        return result ? ErrorCode::Internal : result.error().code;
    }
    /// The library in the notation of tests, on one line.
    std::string printed()
    {
        std::string text = printLibrary(library);
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text;
    }
    embedded::Library& model() { return *embedded::Library::of(&library); }

    std::map<FindingCode, std::int64_t> warnings() const
    {
        std::map<FindingCode, std::int64_t> result;
        for (const auto& finding : report.findings)
            if (finding.severity == embedded::FindingSeverity::Warning)
                result[finding.code] += std::max<std::int64_t>(1, finding.count);
        return result;
    }

    TemporaryFolder folder;
    orv::CChangeTransactionManager changes;
    gis::CLibGis library { &changes };
    ShapefileImportOptions options;
    Report report;
};

TEST_F(ShapefileImportTest, TableAndThemeAreNamedAfterTheFile)
{
    const std::string path
        = writeShapefile(folder, "Lampioni", pointFile(2), textTable({ "L1", "L2" }));

    const auto result = import(path);

    ASSERT_TRUE(result.ok());
    EXPECT_FALSE(result.value().tableRenamed);
    EXPECT_EQ(printed(),
        "table Lampioni (NOME text); rows Lampioni: ('L1') ('L2') ; "
        "theme Lampioni: points 2d on Lampioni active; ents Lampioni: 0 [0 0], 1 [1 10]; ");
    EXPECT_TRUE(library.GetModifiedFlag());
    EXPECT_TRUE(warnings().empty());
}

TEST_F(ShapefileImportTest, AnImportIsOneStep)
{
    const std::string path
        = writeShapefile(folder, "Lampioni", pointFile(2), textTable({ "L1", "L2" }));
    ASSERT_TRUE(import(path).ok());
    const std::string imported = printed();

    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_EQ(library.GetNumThemes(), 0);
    EXPECT_FALSE(changes.CanUndo());
    ASSERT_TRUE(changes.Redo());
    EXPECT_EQ(printed(), imported);
}

TEST_F(ShapefileImportTest, EveryFormatComesFromItsColumn)
{
    RawDbf dbf;
    dbf.fields = { { "T", 'C', 6 }, { "L", 'L', 1 }, { "I", 'N', 6 }, { "R", 'N', 8, 3 },
        { "D", 'D', 8 }, { "F", 'F', 8, 1 } };
    dbf.rows = { { " a", "T", "7", "1.5", "20160305", "2.5" },
        { "", "?", "", "********", "00000000", "" } };
    const std::string path = writeShapefile(folder, "t", pointFile(2), dbf);

    ASSERT_TRUE(import(path).ok());

    EXPECT_THAT(printed(),
        testing::StartsWith(
            "table t (T text, L boolean, I integer, R decimal 3, D date, F decimal 1); "
            "rows t: (' a', yes, 7, 1.5, 05/03/2016, 2.5) (-, -, -, -, -, -) ;"));
    EXPECT_TRUE(warnings().empty());
}

TEST_F(ShapefileImportTest, NullShapesAreEntitiesWithoutParts)
{
    RawShp shp = pointFile(3);
    shp.contents[1] = nullContent();

    ASSERT_TRUE(import(writeShapefile(folder, "t", shp, textTable({ "a", "b", "c" }))).ok());

    EXPECT_THAT(printed(), testing::HasSubstr("ents t: 0 [0 0], 1 [], 2 [2 20]"));
    EXPECT_TRUE(warnings().empty());
}

TEST_F(ShapefileImportTest, DeletedRecordsAreLeftOutWithTheirShapes)
{
    RawDbf dbf = textTable({ "a", "b", "c" });
    dbf.deleted = { false, true, false };

    ASSERT_TRUE(import(writeShapefile(folder, "t", pointFile(3), dbf)).ok());

    EXPECT_THAT(printed(), testing::HasSubstr("rows t: ('a') ('c') ;"));
    EXPECT_THAT(printed(), testing::HasSubstr("ents t: 0 [0 0], 1 [2 20]"));
    EXPECT_EQ(
        warnings(), (std::map<FindingCode, std::int64_t> { { FindingCode::RecordsDeleted, 1 } }));
}

TEST_F(ShapefileImportTest, ShapesWithoutARecordStayAndRecordsWithoutAShapeDoNot)
{
    ASSERT_TRUE(import(writeShapefile(folder, "fewRows", pointFile(3), textTable({ "a" }))).ok());
    EXPECT_THAT(printed(), testing::HasSubstr("rows fewRows: ('a') (-) (-) ;"));
    EXPECT_EQ(warnings()[FindingCode::RowsMissing], 2);

    ASSERT_TRUE(
        import(writeShapefile(folder, "fewShapes", pointFile(1), textTable({ "a", "b", "c" })))
            .ok());
    EXPECT_THAT(printed(), testing::HasSubstr("rows fewShapes: ('a') ;"));
    EXPECT_EQ(warnings()[FindingCode::ShapesMissing], 2);
}

TEST_F(ShapefileImportTest, RowsOfShapesThatWereCutAwayStay)
{
    const std::string path
        = writeShapefile(folder, "t", pointFile(4), textTable({ "a", "b", "c", "d" }));
    writeFile(path, pointFile(4).shp().substr(0, 100 + 28 + 10));

    ASSERT_TRUE(import(path).ok());

    EXPECT_THAT(printed(), testing::HasSubstr("rows t: ('a') ('b') ('c') ('d') ;"));
    EXPECT_THAT(printed(), testing::HasSubstr("ents t: 0 [0 0], 1 [], 2 [], 3 []"));
    EXPECT_EQ(warnings()[FindingCode::ShapeUnreadable], 3);
}

TEST_F(ShapefileImportTest, RingsAreClosedAndKeptAsTheyAre)
{
    RawShp shp;
    shp.type = 5;
    shp.contents = { partsContent(5, { { 0, 0, 0, 4, 4, 4, 0, 0 }, { 1, 1, 2, 1, 2, 2 } }),
        partsContent(5, { { 7, 7 }, {}, { 3, 3, 4, 4 } }) };

    ASSERT_TRUE(import(writeShapefile(folder, "t", shp, textTable({ "a", "b" }))).ok());

    EXPECT_THAT(printed(),
        testing::HasSubstr(
            "ents t: 0 [0 0, 0 4, 4 4, 0 0 | 1 1, 2 1, 2 2, 1 1], 1 [7 7 | 3 3, 4 4, 3 3]"));
}

TEST_F(ShapefileImportTest, MultipointsHaveOnePartAPoint)
{
    RawShp shp;
    shp.type = 8;
    shp.contents = { partsContent(8, { { 1, 2, 3, 4 } }) };

    ASSERT_TRUE(import(writeShapefile(folder, "t", shp, textTable({ "a" }))).ok());

    EXPECT_THAT(printed(), testing::HasSubstr("theme t: points 2d on t"));
    EXPECT_THAT(printed(), testing::HasSubstr("ents t: 0 [1 2 | 3 4]"));
}

TEST_F(ShapefileImportTest, HeightsAndRealMeasuresAreKept)
{
    RawShp measured;
    measured.type = 13;
    measured.contents = { partsContent(13, { { 0, 0, 1, 1 } }, { 5, 6 }, { 7, -1e39 }) };
    RawShp plain;
    plain.type = 11;
    plain.contents = { pointContent(1, 2, 3, -1e39) };
    RawShp onlyMeasures;
    onlyMeasures.type = 23;
    onlyMeasures.contents = { partsContent(23, { { 0, 0, 1, 1 } }, {}, { 7, 8 }) };

    const auto withM = import(writeShapefile(folder, "zm", measured, textTable({ "a" })));
    const auto withoutM = import(writeShapefile(folder, "z", plain, textTable({ "a" })));
    const auto mOnly = import(writeShapefile(folder, "m", onlyMeasures, textTable({ "a" })));

    const auto& zm = withM.value().theme->entities();
    EXPECT_TRUE(zm.hasZ() && zm.hasM());
    EXPECT_EQ(zm.part(0, 0).coordinates[3], 7);
    EXPECT_TRUE(std::isnan(zm.part(0, 0).coordinates[7]));
    EXPECT_TRUE(withoutM.value().theme->entities().hasZ());
    EXPECT_FALSE(withoutM.value().theme->entities().hasM());
    EXPECT_EQ(mOnly.value().theme->coords, gis::EntTypeCoords::XYM);
    EXPECT_EQ(mOnly.value().theme->entities().part(0, 0).coordinates[2], 7);
}

TEST_F(ShapefileImportTest, ManyFaultsAreCountedTogether)
{
    RawShp shp = pointFile(100);
    for (std::string& content : shp.contents)
        content = pointContent(std::numeric_limits<double>::infinity(), 0);
    const std::string path
        = writeShapefile(folder, "t", shp, textTable(std::vector<std::string>(100, "a")));

    ASSERT_TRUE(import(path).ok());

    std::int64_t told = 0;
    std::int64_t lines = 0;
    for (const auto& finding : report.findings)
        if (finding.code == FindingCode::ShapeUnreadable) {
            told += 1 + finding.count;
            ++lines;
        }
    EXPECT_EQ(told, 100);
    EXPECT_LT(lines, 25);
}

TEST_F(ShapefileImportTest, FilesThatCannotBeTakenLeaveTheLibraryAsItWas)
{
    const std::string lone = folder / "lone.shp";
    writeFile(lone, pointFile(1).shp());
    const std::string bad = writeShapefile(folder, "bad", pointFile(1), textTable({ "a" }));
    writeFile(folder / "bad.dbf", "short");
    writeFile(folder / "zip.zip", "PK\3\4" + std::string(200, 'x'));
    writeFile(folder / "empty.shp", "");
    ASSERT_TRUE(import(writeShapefile(folder, "t", pointFile(1), textTable({ "a" }))).ok());
    const std::string before = printed();
    const auto position = changes.Position();

    EXPECT_EQ(errorOf(folder / "none.shp"), ErrorCode::FileNotFound);
    EXPECT_EQ(errorOf(folder.path()), ErrorCode::NotAFile);
    EXPECT_EQ(errorOf(folder / "empty.shp"), ErrorCode::EmptyFile);
    EXPECT_EQ(errorOf(folder / "zip.zip"), ErrorCode::NoShapeHeader);
    EXPECT_EQ(errorOf(folder / "t.dbf"), ErrorCode::NoShapeHeader);
    EXPECT_EQ(errorOf(lone), ErrorCode::NoDbf);
    EXPECT_EQ(errorOf(bad), ErrorCode::BadDbf);
    EXPECT_EQ(errorOf(folder / "t.shp"), ErrorCode::NameClash);
    options.encoding = "KLINGON-8";
    EXPECT_EQ(errorOf(folder / "t.shp"), ErrorCode::UnknownEncoding);
    EXPECT_EQ(printed(), before);
    EXPECT_EQ(changes.Position(), position);
}

TEST_F(ShapefileImportTest, AClashOfThemesAloneIsRefusedToo)
{
    support::fillLibrary(library, "table altra (a text); theme t: points 2d on altra");

    EXPECT_EQ(errorOf(writeShapefile(folder, "T", pointFile(1), textTable({ "a" }))),
        ErrorCode::NameClash);
}

TEST_F(ShapefileImportTest, StrictRefusesWhatHasAWarning)
{
    const std::string sound
        = writeShapefile(folder, "sound", pointFile(2), textTable({ "a", "b" }));
    const std::string odd = writeShapefile(folder, "odd", pointFile(2), textTable({ "a", "b" }));
    std::filesystem::remove(folder / "odd.shx");
    options.strict = true;

    EXPECT_EQ(errorOf(odd), ErrorCode::StrictFinding);
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_TRUE(import(sound).ok());
}

TEST_F(ShapefileImportTest, TheEncodingIsAskedForOrSaidOrFound)
{
    struct Case {
        const char* what;
        std::string bytes;
        const char* cpg;
        int languageByte;
        const char* asked;
        const char* why;
        const char* text;
    };
    const Case cases[] = {
        { "asked", "Citt\xE0", "UTF-8", 0x02, "1252", "asked for", "Città" },
        { "cpg", "Citt\xE0", "ANSI 1252", 0x02, "", ".cpg", "Città" },
        { "language", "Citt\x85", "", 0x02, "", "language byte", "Città" },
        { "unknownCpg", "Citt\x85", "KLINGON-8", 0x02, "", "language byte", "Città" },
        { "utf8", "Città", "", 0, "", "valid UTF-8", "Città" },
        { "cp1252", "Citt\xE0", "", 0, "", "default", "Città" },
        { "ascii", "Citta", "", 0, "", "default", "Citta" },
    };
    for (const Case& each : cases) {
        RawDbf dbf = textTable({ each.bytes }, 20);
        dbf.languageByte = each.languageByte;
        const std::string path = writeShapefile(folder, each.what, pointFile(1), dbf);
        if (*each.cpg)
            writeFile(folder / (std::string(each.what) + ".cpg"), each.cpg);
        options.encoding = each.asked;
        ASSERT_TRUE(import(path).ok()) << each.what;

        EXPECT_THAT(printed(),
            testing::HasSubstr(std::string("rows ") + each.what + ": ('" + each.text + "') ;"));
        std::string why;
        for (const auto& finding : report.findings)
            if (finding.code == FindingCode::EncodingChosen)
                why = finding.detail;
        EXPECT_EQ(why, each.why) << each.what;
        EXPECT_EQ(warnings()[FindingCode::EncodingUnknown],
            std::string(each.what) == "unknownCpg" ? 1 : 0);
    }
}

TEST_F(ShapefileImportTest, ThePrjIsKeptAndIdentified)
{
    const std::string wkt
        = R"(GEOGCS["GCS_WGS_1984",DATUM["D_WGS_1984",SPHEROID["WGS_1984",6378137.0,298.257223563]],PRIMEM["Greenwich",0.0],UNIT["Degree",0.0174532925199433]])"
          "\r\n";
    const std::string path = writeShapefile(folder, "t", pointFile(1), textTable({ "a" }));
    writeFile(folder / "t.prj", wkt);

    const auto result = import(path);

    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.value().theme->referenceSystem.definition, wkt);
    EXPECT_EQ(result.value().theme->referenceSystem.authority, "EPSG");
    EXPECT_EQ(result.value().theme->referenceSystem.code, 4326);
    EXPECT_TRUE(warnings().empty());
}

TEST_F(ShapefileImportTest, APrjThatIsNoneIsKeptAndTold)
{
    const std::string path = writeShapefile(folder, "t", pointFile(1), textTable({ "a" }));
    writeFile(folder / "t.prj", "<html>404</html>");

    const auto result = import(path);

    ASSERT_TRUE(result.ok());
    EXPECT_EQ(result.value().theme->referenceSystem.definition, "<html>404</html>");
    EXPECT_EQ(result.value().theme->referenceSystem.code, 0);
    EXPECT_EQ(warnings()[FindingCode::ReferenceSystemUnknown], 1);
}

TEST_F(ShapefileImportTest, PointsOfPointFilesAreLinkedEachWithNameAndDescription)
{
    RawDbf dbf;
    dbf.fields = { { "NOME", 'C', 4 }, { "COD", 'N', 4 } };
    dbf.rows = { { "P1", "10" }, { "P2", "" } };
    RawShp shp = pointFile(1);
    shp.contents.push_back(shp.contents[0]);
    options.points = { true, 0, 1 };

    const auto result = import(writeShapefile(folder, "t", shp, dbf));

    ASSERT_TRUE(result.ok());
    EXPECT_THAT(
        printed(), testing::HasSubstr("ents t: 0 [0 0] point 'P1' '10', 1 [0 0] point 'P2' ''"));
    EXPECT_EQ(model().linkedPointCount(), 2u);
    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(model().linkedPointCount(), 0u);
    ASSERT_TRUE(changes.Redo());
    EXPECT_EQ(model().linkedPointCount(), 2u);
    EXPECT_THAT(printed(), testing::HasSubstr("point 'P1' '10'"));
}

TEST_F(ShapefileImportTest, VerticesAtOnePlaceShareTheirPoint)
{
    RawShp shp;
    shp.type = 3;
    shp.contents = { partsContent(3, { { 0, 0, 1, 1 } }), partsContent(3, { { 1, 1, -0.0, 0 } }) };
    options.points = { true, -2, -2 };

    const auto result = import(writeShapefile(folder, "t", shp, textTable({ "a", "b" })));

    ASSERT_TRUE(result.ok());
    const auto& entities = result.value().theme->entities();
    EXPECT_EQ(model().linkedPointCount(), 2u);
    EXPECT_EQ(entities.linkedPoint(0, 0, 0), entities.linkedPoint(1, 0, 1));
    EXPECT_EQ(entities.linkedPoint(0, 0, 1), entities.linkedPoint(1, 0, 0));
    EXPECT_NE(entities.linkedPoint(0, 0, 0), entities.linkedPoint(0, 0, 1));
    EXPECT_EQ(entities.linkedPoint(0, 0, 0)->name, orv::String());
}

TEST_F(ShapefileImportTest, WithoutTheOptionNothingIsLinked)
{
    options.points = { false, 0, 0 };

    ASSERT_TRUE(import(writeShapefile(folder, "t", pointFile(1), textTable({ "a" }))).ok());

    EXPECT_EQ(model().linkedPointCount(), 0u);
}

TEST_F(ShapefileImportTest, AStoppedImportLeavesTheLibraryAsItWas)
{
    const std::string path = writeShapefile(
        folder, "t", pointFile(200'000), textTable(std::vector<std::string>(200'000, "x")));
    options.points.createPoints = true;
    int stopped = 0;
    for (int call = 1; call < 4; ++call) {
        StopAt progress(call);
        model().setProgress(&progress);
        const auto result = import(path);
        model().setProgress(nullptr);
        if (!progress.wasAsked())
            break;
        ++stopped;
        ASSERT_FALSE(result.ok());
        EXPECT_EQ(result.error().code, ErrorCode::Cancelled);
        EXPECT_EQ(library.GetNumTables(), 0);
        EXPECT_EQ(library.GetNumThemes(), 0);
        EXPECT_EQ(model().linkedPointCount(), 0u);
        EXPECT_FALSE(changes.CanUndo());
    }
    EXPECT_GE(stopped, 1);
}

TEST_F(ShapefileImportTest, ALibraryWithoutARecordOfChangesTakesShapefilesToo)
{
    gis::CLibGis plain;
    const std::string path = writeShapefile(folder, "t", pointFile(2), textTable({ "a", "b" }));

    EXPECT_TRUE(embedded::importShapefile(plain, path, options, nullptr, nullptr, report).ok());
    EXPECT_EQ(plain.GetNumThemes(), 1);
    EXPECT_FALSE(embedded::importShapefile(plain, path, options, nullptr, nullptr, report).ok());
    EXPECT_EQ(plain.GetNumTables(), 1);
}

TEST_F(ShapefileImportTest, AFileCutAtAnyByteNeverHarms)
{
    RawDbf dbf = textTable({ "Via Roma", "Città", "x" });
    const std::string path = writeShapefile(folder, "t", pointFile(3), dbf);
    for (const char* extension : { ".shp", ".shx", ".dbf" }) {
        const std::string cutPath = folder / (std::string("t") + extension);
        const std::string whole = readFile(cutPath);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            writeFile(cutPath, std::string_view(whole).substr(0, length));
            gis::CLibGis target;
            const auto result
                = embedded::importShapefile(target, path, options, nullptr, nullptr, report);
            EXPECT_EQ(target.GetNumTables(), result.ok() ? 1 : 0) << extension << length;
            // An index that is cut costs nothing but a line.
            if (std::string_view(extension) == ".shx") {
                EXPECT_EQ(target.GetNoEnts(target.GetTheme(0)), 3) << length;
            }
        }
        writeFile(cutPath, whole);
    }
}

} // namespace
