// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Filters where a host's columns are not what its table is: its cells are asked then.
#include "tematica/QueryExecute.h"

#include "tests/support/HeapColumns.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

namespace {

class OddColumnPlanTest : public testing::Test {
protected:
    OddColumnPlanTest()
        : m_library("table T (a integer); rows T: (1), (2), (2); theme S: points on T;"
                    "ents S: 0 [0 0], 1 [0 0], 2 [0 0]")
    {
        m_library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&m_columns));
    }
    int found(const char* filter)
    {
        CQueryExecute query(&m_library, m_library.GetTheme(0));
        EXPECT_TRUE(query.SetQueryFilter(filter));
        std::vector<gis::CEnt*> entities;
        return query.Execute(entities);
    }
    void expectByCells()
    {
        EXPECT_EQ(found("a = 2"), 2);
        EXPECT_EQ(found("a >= 40"), 0);
        EXPECT_EQ(found("a IS NULL"), 0);
        EXPECT_EQ(found("a * 2 + a / 2 > 0"), 3);
    }

    support::CRecordingLibrary m_library;
    support::CHeapColumns m_columns;
};

TEST_F(OddColumnPlanTest, ColumnsThatFitAreBelieved)
{
    EXPECT_EQ(found("a >= 50"), 2) << "else the tests below would say nothing";
}

TEST_F(OddColumnPlanTest, AColumnThatSaysMoreThanItsChunkHoldsIsNot)
{
    m_columns.chunks[0].rowCount = 2;
    expectByCells();
    m_columns.chunks[0].rowCount = 0;
    expectByCells();
}

TEST_F(OddColumnPlanTest, AColumnWithoutTheChunksOfItsRowsIsNot)
{
    m_columns.column.chunkCount = 0;
    expectByCells();

    m_columns.column.chunkCount = 1; // and rows of a second one
    m_columns.column.rowCount = gis::ColumnChunkRows + 3;
    m_columns.runs[0].firstRow = gis::ColumnChunkRows;
    expectByCells();
}

TEST_F(OddColumnPlanTest, AColumnWhoseChunkSaysMoreThanItIsNot)
{
    m_columns.chunks[0].rowCount = 4;
    expectByCells();
}

} // namespace
