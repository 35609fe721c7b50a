// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Distinct values where a host's columns are not what its table is: its cells are asked then.
#include "query/execution/DistinctValues.h"

#include "tests/support/Describe.h"
#include "tests/support/HeapColumns.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

class OddColumnValuesTest : public testing::Test {
protected:
    OddColumnValuesTest()
        : m_library("table T (a integer); rows T: (1), (2), (2); theme S: points on T;"
                    "ents S: 0 [0 0], 1 [0 0], 2 [0 0]")
    {
        m_library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&m_columns));
    }
    std::string values()
    {
        const auto distinct = query::distinctValues(m_library, m_library.GetTheme(0), 0);
        std::string text;
        for (const auto& [value, count] : distinct->values)
            text += support::describe(value) + " x" + std::to_string(count) + " ";
        return text + "- x" + std::to_string(distinct->missing);
    }

    static constexpr const char* ByCells = "1 x1 2 x2 - x0";
    support::CRecordingLibrary m_library;
    support::CHeapColumns m_columns;
};

TEST_F(OddColumnValuesTest, ColumnsThatFitAreBelieved)
{
    EXPECT_EQ(values(), "40 x1 50 x1 60 x1 - x0") << "else the tests below would say nothing";
}

TEST_F(OddColumnValuesTest, AColumnShorterThanTheRowsInUseIsNot)
{
    m_columns.column.rowCount = 2;
    EXPECT_EQ(values(), ByCells);
    m_columns.column.rowCount = -1;
    EXPECT_EQ(values(), ByCells);
}

TEST_F(OddColumnValuesTest, AColumnThatSaysMoreThanItsChunkHoldsIsNot)
{
    m_columns.chunks[0].rowCount = 2;
    EXPECT_EQ(values(), ByCells) << "two of the three rows would pass for all";
    m_columns.chunks[0].rowCount = 0;
    EXPECT_EQ(values(), ByCells);
}

TEST_F(OddColumnValuesTest, AColumnWithoutTheChunksOfItsRowsIsNot)
{
    m_columns.column.chunkCount = 0;
    EXPECT_EQ(values(), ByCells);

    m_columns.column.chunkCount = 1; // and rows of a second one
    m_columns.column.rowCount = gis::ColumnChunkRows + 1;
    m_columns.runs[0].firstRow = gis::ColumnChunkRows - 2;
    EXPECT_EQ(values(), ByCells);
}

TEST_F(OddColumnValuesTest, AColumnOfAnotherKindThanTheFieldIsNot)
{
    for (const auto kind :
        { gis::ColumnKind::Boolean, gis::ColumnKind::Decimal, gis::ColumnKind::Date,
            gis::ColumnKind::Dictionary, static_cast<gis::ColumnKind>(9) }) {
        m_columns.column.kind = kind; // decimals would be read beyond three integers
        EXPECT_EQ(values(), ByCells) << static_cast<int>(kind);
    }
}

TEST_F(OddColumnValuesTest, RunsThatContradictThemselvesAreNot)
{
    m_columns.entities.entityCount = 4;
    EXPECT_EQ(values(), ByCells) << "more entities than the runs have";
    m_columns.entities.entityCount = 2;
    EXPECT_EQ(values(), ByCells) << "fewer";
    m_columns.entities.entityCount = 3;

    m_columns.runs[0].firstRow = -1;
    EXPECT_EQ(values(), ByCells) << "an entity without a row";
    m_columns.runs[0].firstRow = 1;
    EXPECT_EQ(values(), ByCells) << "a row after the last";
    m_columns.runs[0].firstRow = std::numeric_limits<int>::max();
    EXPECT_EQ(values(), ByCells) << "a row number that cannot be counted on from";
    m_columns.runs[0].firstRow = 0;

    m_columns.runs[0].count = -3;
    m_columns.entities.entityCount = -3;
    EXPECT_EQ(values(), ByCells) << "runs backwards";
}

TEST_F(OddColumnValuesTest, NoRunsAreNoValues)
{
    m_columns.entities = {};
    m_columns.column.chunkCount = 0;
    m_columns.column.rowCount = 0;

    EXPECT_EQ(values(), "- x0");
}

TEST_F(OddColumnValuesTest, RowsThatNoEntityUsesNeedNotBeThere)
{
    m_columns.column.rowCount = 2;
    m_columns.chunks[0].rowCount = 2;
    m_columns.runs[0].count = 2;
    m_columns.entities.entityCount = 2;

    EXPECT_EQ(values(), "40 x1 50 x1 - x0");
}

} // namespace
