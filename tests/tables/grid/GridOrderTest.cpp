// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridOrder.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <random>

using support::CRecordingLibrary;
using tables::CGridContents;
using tables::SortDirection;

namespace {

class GridOrderTest : public testing::TestWithParam<bool> {
protected:
    void open(const std::string& notation)
    {
        m_library = std::make_unique<CRecordingLibrary>(notation);
        m_library->offerColumns(GetParam());
        m_contents = std::make_unique<CGridContents>(m_library.get(), m_library->GetTable(0));
        m_contents->fill();
    }
    std::vector<int> order(int field, SortDirection direction = SortDirection::Ascending)
    {
        std::vector<int> rows;
        EXPECT_TRUE(tables::orderRows(
            *m_contents, field, direction, [](double) { return true; }, rows));
        return rows;
    }

    std::unique_ptr<CRecordingLibrary> m_library;
    std::unique_ptr<CGridContents> m_contents;
};

using Rows = std::vector<int>;

} // namespace

TEST_P(GridOrderTest, NumbersGoByTheirValueAndMissingOnesLastInBothDirections)
{
    open("table T (i integer, d decimal 1); rows T: (10, 2.5), (-, -10), (9, -), (-3, 2.25)");

    EXPECT_EQ(order(0), (Rows { 3, 2, 0, 1 }));
    EXPECT_EQ(order(0, SortDirection::Descending), (Rows { 0, 2, 3, 1 }));
    EXPECT_EQ(order(1), (Rows { 1, 3, 0, 2 }));
    EXPECT_EQ(order(1, SortDirection::Descending), (Rows { 0, 3, 1, 2 }));
}

TEST_P(GridOrderTest, DatesGoByTheirDayNotByTheirText)
{
    open("table T (g date); rows T: (02/01/2016), (01/12/2015), (-), (03/01/1960)");

    EXPECT_EQ(order(0), (Rows { 3, 1, 0, 2 }));
}

TEST_P(GridOrderTest, ADateOfZeroIsShownAsNoDateAndGoesAmongTheMissingOnes)
{
    const support::TimeZoneScope utc("UTC");
    open("table T (g date); rows T: (02/01/2016), (01/01/1970), (03/01/1960), (-), (05/01/1970)");
    ASSERT_EQ(m_contents->text(1, 0).Bytes(), "");

    EXPECT_EQ(order(0), (Rows { 2, 4, 0, 1, 3 }));
    EXPECT_EQ(order(0, SortDirection::Descending), (Rows { 0, 4, 2, 1, 3 }));
}

TEST_P(GridOrderTest, TextsGoByTheirBytesAndEqualOnesInFillOrder)
{
    open("table T (t text); rows T: ('b'), ('Zanzara'), (-), ('b'), ('a'), ('Via Roma 12'), "
         "('Via Roma 1'), ('Via Roma 120')");

    EXPECT_EQ(order(0), (Rows { 6, 5, 7, 1, 4, 0, 3, 2 }));
    EXPECT_EQ(order(0, SortDirection::Descending), (Rows { 0, 3, 4, 1, 7, 5, 6, 2 }));
}

TEST_P(GridOrderTest, NoGoesBeforeYes)
{
    open("table T (b boolean); rows T: (yes), (-), (no), (yes)");

    EXPECT_EQ(order(0), (Rows { 2, 0, 3, 1 }));
}

TEST_P(GridOrderTest, EditedTextsCountAsWhatTheyStandFor)
{
    open("table T (t text, i integer, d decimal 1, g date, b boolean);"
         "rows T: ('b', 1, 1, 01/01/2001, no), ('d', 2, 2, 01/01/2002, no), ('f', 3, 3, "
         "01/01/2003, no), ('h', 4, 4, 01/01/2004, no)");
    const char* edits[] = { "e", "10", "9.5", "1/6/2002", "S\xC3\xAC" };
    for (int field = 0; field < 5; ++field)
        m_contents->enter(0, field, orv::String(edits[field]));
    m_contents->enter(3, 0, orv::String(""));

    EXPECT_EQ(order(0), (Rows { 1, 0, 2, 3 }));
    EXPECT_EQ(order(1), (Rows { 1, 2, 3, 0 }));
    EXPECT_EQ(order(2), (Rows { 1, 2, 3, 0 }));
    EXPECT_EQ(order(3), (Rows { 1, 0, 2, 3 }));
    EXPECT_EQ(order(4), (Rows { 1, 2, 3, 0 }));
}

TEST_P(GridOrderTest, RowsOfAListAreOrderedAmongThemselves)
{
    open("table T (t text); rows T: ('d'), ('c'), ('b'), ('a')");
    auto* table = m_library->GetTable(0);

    m_contents->fill(
        { m_library->GetRow(table, 0), m_library->GetRow(table, 2), m_library->GetRow(table, 3) });
    EXPECT_EQ(order(0), (Rows { 2, 1, 0 }));

    m_contents->fill({ m_library->GetRow(table, 3), m_library->GetRow(table, 0),
        m_library->GetRow(table, 2) }); // not in table order
    EXPECT_EQ(order(0), (Rows { 0, 2, 1 }));
}

TEST_P(GridOrderTest, CanBeStopped)
{
    open("table T (t text); rows T: ('d'), ('c')");
    Rows rows;

    EXPECT_FALSE(tables::orderRows(
        *m_contents, 0, SortDirection::Ascending, [](double) { return false; }, rows));
}

INSTANTIATE_TEST_SUITE_P(
    Hosts, GridOrderTest, testing::Bool(), [](const testing::TestParamInfo<bool>& columns) {
        return columns.param ? "WithColumns" : "CellByCell";
    });

TEST(GridOrderOfManyTest, ColumnsAndCellsGiveTheSameOrder)
{
    const unsigned seed = 20260301;
    std::mt19937 random(seed);
    std::string notation = "table T (t text, i integer, d decimal 3, g date, b boolean); rows T: ";
    for (int row = 0; row < 500; ++row) {
        const auto pick
            = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
        const auto maybe
            = [&](const std::string& value) { return pick(8) == 0 ? std::string("-") : value; };
        notation += row > 0 ? ", (" : "(";
        notation += maybe("'" + std::string("abcXYZ").substr(static_cast<std::size_t>(pick(5)), 2)
                        + std::to_string(pick(20)) + "'")
            + ", ";
        notation += maybe(std::to_string(pick(2000) - 1000)) + ", ";
        notation
            += maybe(std::to_string(pick(2000) - 1000) + "." + std::to_string(pick(10))) + ", ";
        notation += maybe("0" + std::to_string(1 + pick(9)) + "/0" + std::to_string(1 + pick(9))
                        + "/" + std::to_string(1950 + pick(90)))
            + ", ";
        notation += maybe(pick(2) ? "yes" : "no") + ")";
    }
    CRecordingLibrary library(notation);
    CGridContents byCell(&library, library.GetTable(0));
    byCell.fill();
    library.offerColumns();
    CGridContents byColumn(&library, library.GetTable(0));
    byColumn.fill();
    const auto goesOn = [](double) { return true; };

    for (int field = 0; field < 5; ++field)
        for (const auto direction : { SortDirection::Ascending, SortDirection::Descending }) {
            Rows cells;
            Rows columns;
            ASSERT_TRUE(tables::orderRows(byCell, field, direction, goesOn, cells));
            ASSERT_TRUE(tables::orderRows(byColumn, field, direction, goesOn, columns));
            EXPECT_TRUE(tables::readsColumn(byColumn, field));
            EXPECT_FALSE(tables::readsColumn(byCell, field));
            EXPECT_EQ(cells, columns) << "field " << field << ", seed " << seed;
        }
}
