// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/model/PartlyReadableStore.h"
#include "tests/embedded/shapefile/ShapefileExportTesting.h"

#include "embedded/model/Library.h"
#include "host/gis/Exchange.h"

#include <gmock/gmock.h>

#include <limits>

// What a shapefile cannot hold: coordinates that are no numbers, bytes that are no text, more
// columns and bytes than a .dbf has room for.

using embedded::ErrorCode;
using embedded::FindingCode;
using namespace shapetest;

namespace {

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

class ShapefileExportFindingsTest : public ShapefileExportTest {
protected:
    /// An entity of the first theme for a row of its table (-1: for none), one part.
    void addShape(int row, const std::vector<double>& coordinates)
    {
        gis::CTheme& theme = *library.GetTheme(0);
        theme.entities().addEntity(row < 0 ? nullptr : library.GetTable(0)->row(row));
        double* place = theme.entities().addPart(
            static_cast<int>(coordinates.size()) / theme.entities().stride());
        std::copy(coordinates.begin(), coordinates.end(), place);
    }
    /// One theme of points with a table of so many text fields, each with a text as wide as can be.
    void fillWide(int fields, int textBytes)
    {
        embedded::Library& model = *embedded::Library::of(&library);
        gis::CDBTable* table = model.createTable("t");
        const std::string text(static_cast<std::size_t>(textBytes), 'x');
        for (int i = 0; i < fields; ++i)
            table->addField(orv::String("F" + std::to_string(i)), gis::FieldFormat::Text);
        table->addRows(1);
        for (int i = 0; i < fields; ++i)
            table->columnForWriting(i).setText(0, text);
        model.createTheme(table, "t", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
        addShape(0, { 1, 2 });
    }
    void expectTableRefused(const std::string& detail)
    {
        const auto result = exportTheme();
        ASSERT_FALSE(result.ok());
        EXPECT_EQ(result.error().code, ErrorCode::WriteFailed);
        EXPECT_EQ(result.error().subject, folder / "t.dbf");
        EXPECT_EQ(result.error().detail, detail);
        EXPECT_EQ(errorFlags, ExportDbfNotWritten);
        EXPECT_TRUE(filesInFolder().empty());
    }
};

TEST_F(ShapefileExportFindingsTest, ShapesWithoutAPlaceAreNullShapesWhoseRowsStay)
{
    support::fillLibrary(
        library, "table t (a text); rows t: ('x'), ('y'), ('z'), ('w'); theme t: lines 2d on t");
    addShape(0, { 0, 0, 1, 1 });
    addShape(1, { 0, NoNumber, 1, 1 });
    addShape(2, { 0, 0, -Infinite, 1 });
    addShape(3, { 2, 2, 3, 3 });

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_THAT(readBack("t.shp"),
        testing::HasSubstr("ents t:\n0 [0 0, 1 1],\n1 [],\n2 [],\n3 [2 2, 3 3];"));
    EXPECT_THAT(cells("t.dbf", 0), testing::ElementsAre("x", "y", "z", "w"));
    ASSERT_NE(finding(FindingCode::ShapesNotWritten), nullptr);
    EXPECT_EQ(finding(FindingCode::ShapesNotWritten)->count, 2);
    EXPECT_TRUE(report.hasWarnings());
}

TEST_F(ShapefileExportFindingsTest, AThemeThatCannotBeReadIsNotWrittenAndStandsInNoOthersWay)
{
    support::fillLibrary(library,
        "table t (a text, b text); rows t: ('x', 'y'); table u (a text); rows u: ('z');"
        "theme t: points 2d on t; ents t: 0 [5 5]; theme u: points 2d on u; ents u: 0 [1 2]");
    const auto store = model_testing::intoFile(library);
    store->unreadable = { "b" };

    const auto refused = exportTheme(0);
    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::DamagedFile);
    EXPECT_EQ(refused.error().subject, "x.gpkg") << "what is damaged, not what was to be written";
    EXPECT_EQ(errorFlags, ExportShpNotWritten | ExportDbfNotWritten);
    EXPECT_TRUE(filesInFolder().empty());

    ASSERT_TRUE(exportTheme(1).ok());
    EXPECT_EQ(errorFlags, 0);
    EXPECT_THAT(cells("u.dbf", 0), testing::ElementsAre("z"));

    store->unreadable.clear();
    EXPECT_TRUE(exportTheme(0).ok()) << "read again";
    EXPECT_THAT(cells("t.dbf", 1), testing::ElementsAre("y"));
}

TEST_F(ShapefileExportFindingsTest, HeightsThatAreNoNumbersCountOnlyWhereTheyAreWritten)
{
    support::fillLibrary(library, "table t (a text); rows t: ('x'); theme t: points 3d on t");
    addShape(0, { 1, 2, NoNumber });

    ASSERT_TRUE(exportTheme().ok());
    EXPECT_THAT(readBack("t.shp"), testing::HasSubstr("ents t:\n0 [];"));
    ASSERT_NE(finding(FindingCode::ShapesNotWritten), nullptr);
    EXPECT_EQ(finding(FindingCode::ShapesNotWritten)->count, 1);

    options.coordinates = embedded::ExportCoordinates::XY;
    ASSERT_TRUE(exportTheme().ok());
    EXPECT_THAT(readBack("t.shp"), testing::HasSubstr("ents t:\n0 [1 2];"));
    EXPECT_EQ(finding(FindingCode::ShapesNotWritten), nullptr);
}

TEST_F(ShapefileExportFindingsTest, MeasuresThatAreNoNumbersAreNoMeasures)
{
    support::fillLibrary(library, "table t (a text); rows t: ('x'); theme t: points m on t");
    addShape(0, { 1, 2, NoNumber });

    ASSERT_TRUE(exportTheme().ok());

    EXPECT_EQ(finding(FindingCode::ShapesNotWritten), nullptr);
    gis::CLibGis other;
    ASSERT_TRUE(
        embedded::importShapefile(other, folder / "t.shp", {}, nullptr, nullptr, report).ok());
    ASSERT_EQ(other.GetTheme(0)->geometry().partCount(0), 1);
    EXPECT_EQ(other.GetTheme(0)->geometry().part(0, 0).y(0), 2);
}

TEST_F(ShapefileExportFindingsTest, BytesThatAreNoTextBecomeQuestionMarks)
{
    const std::pair<const char*, const char*> texts[] = {
        { "caff\xE8", "caff?" }, // Latin-1
        { "caff\xC3\xA8", "caff\xC3\xA8" },
        { "\xE2\x82", "??" }, // a character's beginning
        { "a\x80z", "a?z" }, // its end
        { "\xC0\xAF", "??" }, // longer than need be
        { "\xE0\x80\x80", "???" },
        { "\xED\xA0\x80", "???" }, // half of a pair
        { "\xF4\x90\x80\x80", "????" }, // beyond the last
        { "\xF0\x9F\x8F\xA0", "\xF0\x9F\x8F\xA0" },
        { "\xE0\xA4\x85", "\xE0\xA4\x85" },
        { "", "" },
    };
    support::fillLibrary(library, "table t (a text, b text); theme t: points 2d on t");
    gis::CDBTable& table = *library.GetTable(0);
    table.addRows(static_cast<int>(std::size(texts)));
    for (int row = 0; row < table.rowCount(); ++row) {
        table.columnForWriting(0).setText(row, texts[row].first);
        addShape(row, { 0, 0 });
    }

    ASSERT_TRUE(exportTheme().ok());

    const auto written = cells("t.dbf", 0);
    ASSERT_EQ(written.size(), std::size(texts));
    for (std::size_t row = 0; row < written.size(); ++row)
        EXPECT_EQ(written[row].substr(0, written[row].find_last_not_of(' ') + 1), texts[row].second)
            << row;
    ASSERT_NE(finding(FindingCode::TextReplaced, "a"), nullptr);
    EXPECT_EQ(finding(FindingCode::TextReplaced, "a")->count, 7);
    EXPECT_EQ(finding(FindingCode::TextReplaced, "b"), nullptr);
    EXPECT_EQ(finding(FindingCode::TextCut, "a"), nullptr) << "nothing was cut";
}

TEST_F(ShapefileExportFindingsTest, RecordsLongerThanADbfHasAreRefused)
{
    fillWide(259, 254);
    expectTableRefused("259 fields of 65787 bytes are more than a .dbf holds");
}

TEST_F(ShapefileExportFindingsTest, TheLongestRecordIsWritten)
{
    fillWide(258, 254); // 65533 bytes with the mark of deleted ones
    ASSERT_TRUE(exportTheme().ok());
    EXPECT_EQ(cells("t.dbf", 257), std::vector<std::string> { std::string(254, 'x') });
}

TEST_F(ShapefileExportFindingsTest, MoreFieldsThanAHeaderHasRoomForAreRefused)
{
    fillWide(2047, 1);
    expectTableRefused("2047 fields of 2048 bytes are more than a .dbf holds");
}

TEST_F(ShapefileExportFindingsTest, AsManyFieldsAsAHeaderHasRoomForAreWritten)
{
    fillWide(2046, 1);
    ASSERT_TRUE(exportTheme().ok());
    EXPECT_EQ(cells("t.dbf", 2045), std::vector<std::string> { "x" });
}

TEST_F(ShapefileExportFindingsTest, MoreThanTwoGigabytesOfRecordsAreRefused)
{
    fillWide(258, 254);
    gis::CDBTable& table = *library.GetTable(0);
    constexpr int Rows = 40'000; // of 65533 bytes each
    table.addRows(Rows - 1);
    for (int row = 1; row < Rows; ++row)
        addShape(row, { 0, 0 });

    expectTableRefused("more than 2 GiB of records");
}

TEST_F(ShapefileExportFindingsTest, EntitiesWithoutARowHaveEmptyCells)
{
    support::fillLibrary(library,
        "table t (whole decimal 0, part decimal 2, name text, date date, yes boolean, n integer);"
        "rows t: (5, 1.25, 'x', 05/03/2016, yes, 7); theme t: points 2d on t");
    addShape(-1, { 0, 0 });
    addShape(0, { 1, 1 });
    addShape(-1, { 2, 2 });

    ASSERT_TRUE(exportTheme().ok());

    const auto whole = cells("t.dbf", 0);
    ASSERT_EQ(whole.size(), 3U);
    EXPECT_EQ(whole[1], "5");
    for (std::size_t field = 0; field < 6; ++field)
        for (const std::size_t row : { 0U, 2U })
            EXPECT_EQ(cells("t.dbf", field)[row].find_first_not_of(' '), std::string::npos)
                << field;
    EXPECT_NE(finding(FindingCode::FormatChanged, "whole"), nullptr)
        << "the rows that there are tell that it reads back as whole numbers";
}

} // namespace
