// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// The grid where a host's columns are not what its table is: it shows, sorts, finds and saves
// cells.
#include "tables/grid/GridFind.h"
#include "tables/grid/GridOrder.h"

#include "tests/support/HeapColumns.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<int>;

class GridOddColumnsTest : public testing::Test {
protected:
    void open(const char* notation)
    {
        library = std::make_unique<support::CRecordingLibrary>(notation);
        library->offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&columns));
        contents = std::make_unique<tables::CGridContents>(library.get(), library->GetTable(0));
        contents->fill();
    }
    Rows order() const
    {
        Rows rows;
        EXPECT_TRUE(tables::orderRows(
            *contents, 0, tables::SortDirection::Ascending, [](double) { return true; }, rows));
        return rows;
    }
    int rowWith(const char* text) const
    {
        const tables::CGridModel model(*contents);
        return tables::CGridFinder(model, QString::fromUtf8(text))
            .find({}, tables::FindDirection::Forward, [](double) { return true; })
            .viewRow;
    }

    support::CHeapColumns columns;
    std::unique_ptr<support::CRecordingLibrary> library;
    std::unique_ptr<tables::CGridContents> contents;
};

TEST_F(GridOddColumnsTest, ColumnsThatFitAreBelieved)
{
    open("table T (a integer); rows T: (3), (1), (2)");

    EXPECT_EQ(order(), (Rows { 0, 1, 2 })) << "else the tests below would say nothing";
}

TEST_F(GridOddColumnsTest, RowsAreSortedByTheirCellsWhereChunksAreTooShortOrTooFew)
{
    open("table T (a integer); rows T: (3), (1), (2)");

    columns.chunks[0].rowCount = 2;
    EXPECT_EQ(order(), (Rows { 1, 2, 0 }));
    columns.chunks[0].rowCount = 4;
    EXPECT_EQ(order(), (Rows { 1, 2, 0 }));
    columns.column.chunkCount = 0;
    EXPECT_EQ(order(), (Rows { 1, 2, 0 }));
}

TEST_F(GridOddColumnsTest, GivenRowsAreSortedByTheirCellsWhereTheColumnEndsBeforeTheTable)
{
    open("table T (a integer); rows T: (3), (1), (2), (0)");
    contents->fill({ contents->row(2), contents->row(3) });

    EXPECT_EQ(order(), (Rows { 1, 0 })) << "the fourth row is beyond the column's three";
}

TEST_F(GridOddColumnsTest, TextsAreFoundInTheirCellsWhereChunksAreTooShort)
{
    open("table T (a text); rows T: ('uno'), ('due'), ('tre')");
    const gis::DictionaryEntry other { "x", 1 };
    columns.values[0] = columns.values[1] = columns.values[2] = 0;
    columns.column.kind = gis::ColumnKind::Dictionary;
    columns.column.dictionary = &other;
    columns.column.dictionarySize = 1;
    ASSERT_EQ(rowWith("x"), 0) << "the column is believed as long as it fits";

    columns.chunks[0].rowCount = 2;

    EXPECT_EQ(rowWith("tre"), 2);
    EXPECT_EQ(rowWith("x"), -1);
}

} // namespace
