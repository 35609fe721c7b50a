// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/DistinctValues.h"

#include "embedded/model/Library.h"
#include "host/base/Dates.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using query::distinctValues;
using query::distinctValuesByCell;

namespace {

std::string print(const std::optional<query::DistinctValues>& distinct)
{
    if (!distinct)
        return "none";
    std::string text;
    for (const auto& [value, count] : distinct->values)
        text += support::describe(value) + " x" + std::to_string(count) + ", ";
    return text + "missing x" + std::to_string(distinct->missing);
}

class DistinctValuesTest : public testing::Test {
protected:
    std::unique_ptr<gis::CLibGis> m_library;

    /// The values of a field both ways, which must agree to the bit.
    std::string valuesOf(int fieldIndex)
    {
        gis::CTheme* theme = m_library->GetTheme(0);
        const auto byColumn = distinctValues(*m_library, theme, fieldIndex);
        const auto byCell = distinctValuesByCell(*m_library, theme, fieldIndex);
        EXPECT_EQ(print(byColumn), print(byCell)) << "field " << fieldIndex;
        return print(byColumn);
    }
};

TEST_F(DistinctValuesTest, ValuesAscendWithTheirCountsAndMissingOnesApart)
{
    m_library = support::makeLibrary(
        "table T (a text, b boolean, c integer, d decimal 2, e date, f list ('x', 'y'));"
        "rows T: ('b', yes, 10, 2.5, 01/02/2020, 'y') ('B', no, 9, -1, 31/12/1969, 'x')"
        "       (-, -, -, -, -, -) ('b', no, -3, 2.5, 01/02/2020, 'y') ('ab', yes, 10, 10, -, 'y');"
        "theme S: points on T;"
        "ents S: 0 [0 0], 1 [0 0], 2 [0 0], 3 [0 0], 4 []");

    EXPECT_EQ(valuesOf(0), "'B' x1, 'ab' x1, 'b' x2, missing x1");
    EXPECT_EQ(valuesOf(1), "no x2, yes x2, missing x1");
    EXPECT_EQ(valuesOf(2), "-3 x1, 9 x1, 10 x2, missing x1");
    EXPECT_EQ(valuesOf(3), "-1 x1, 2.5 x2, 10 x1, missing x1");
    EXPECT_EQ(valuesOf(4), "31/12/1969 x1, 01/02/2020 x2, missing x2");
    EXPECT_EQ(valuesOf(5), "'x' x1, 'y' x3, missing x1");
}

TEST_F(DistinctValuesTest, OnlyRowsOfTheThemesEntitiesCount)
{
    m_library = support::makeLibrary("table T (a integer); rows T: (1) (2) (3) (4);"
                                     "theme S: points on T; ents S: 1 [0 0], 3 [0 0];"
                                     "theme R: points on T; ents R: 0 [0 0]");

    EXPECT_EQ(valuesOf(0), "2 x1, 4 x1, missing x0");
}

TEST_F(DistinctValuesTest, AThemeWithoutEntitiesHasNone)
{
    m_library = support::makeLibrary("table T (a integer); rows T: (1); theme S: points on T");

    EXPECT_EQ(valuesOf(0), "missing x0");
}

TEST_F(DistinctValuesTest, UnknownFieldsAndThemesGiveNothing)
{
    m_library = support::makeLibrary("table T (a integer); theme S: points on T");
    gis::CTheme* theme = m_library->GetTheme(0);

    for (const int field : { -1, 1, std::numeric_limits<int>::max() }) {
        EXPECT_FALSE(distinctValues(*m_library, theme, field));
        EXPECT_FALSE(distinctValuesByCell(*m_library, theme, field));
    }
    EXPECT_FALSE(distinctValues(*m_library, nullptr, 0));
}

TEST_F(DistinctValuesTest, EqualDecimalsAreOneValueAndNanComesLast)
{
    m_library
        = support::makeLibrary("table T (a decimal 2); rows T: (1) (1) (1) (1) (1) (1);"
                               "theme S: points on T;"
                               "ents S: 0 [0 0], 1 [0 0], 2 [0 0], 3 [0 0], 4 [0 0], 5 [0 0]");
    const double values[] = { -0.0, std::nan(""), 0.0, 1e300, -std::nan("1"), -0.0 };
    embedded::Column& column = m_library->GetTable(0)->columnForWriting(0);
    for (int row = 0; row < 6; ++row)
        column.setDecimal(row, values[row]);

    valuesOf(0);
    const auto distinct = distinctValues(*m_library, m_library->GetTheme(0), 0);

    ASSERT_EQ(distinct->values.size(), 3u);
    EXPECT_EQ(distinct->values[0].count, 3);
    EXPECT_TRUE(std::signbit(distinct->values[0].value.GetDoubleValue())) << "the first stands";
    EXPECT_EQ(distinct->values[1].value.GetDoubleValue(), 1e300);
    EXPECT_TRUE(std::isnan(distinct->values[2].value.GetDoubleValue()));
    EXPECT_EQ(distinct->values[2].count, 2);
}

/// More rows than a chunk holds, in two themes whose runs lie across the chunks' borders.
TEST_F(DistinctValuesTest, BothWaysAgreeOnRandomTables)
{
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto below
        = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    m_library = support::makeLibrary(
        "table T (a text, b boolean, c integer, d decimal 3, e date); theme S: points on T");
    gis::CDBTable* table = m_library->GetTable(0);
    gis::CTheme* theme = m_library->GetTheme(0);
    const int rowCount = gis::ColumnChunkRows + 3000 + below(1000);
    table->addRows(rowCount);
    for (int row = 0; row < rowCount; ++row) {
        if (below(10) > 0)
            table->columnForWriting(0).setText(row, "t" + std::to_string(below(500)));
        if (below(10) > 0)
            table->columnForWriting(1).setBoolean(row, below(2) == 1);
        if (below(10) > 0)
            table->columnForWriting(2).setInteger(row, below(1000) - 500);
        if (below(10) > 0)
            table->columnForWriting(3).setDecimal(row, (below(2000) - 1000) / 8.0);
        if (below(10) > 0)
            table->columnForWriting(4).setInteger(row, below(40000) - 20000);
        if (below(100) > 0)
            theme->entities().addEntity(table->row(row));
    }

    for (int field = 0; field < 5; ++field)
        EXPECT_NE(valuesOf(field), "none");
}

TEST(DistinctValuesOfOddHostsTest, ValuesOfKindsWithoutAnOrderAreEachKept)
{
    support::CRecordingLibrary library(
        "table T (a text); rows T: ('x') ('y') ('z'); theme S: points on T;"
        "ents S: 0 [0 0], 1 [0 0], 2 [0 0], 0 [0 0], 1 [0 0]");
    library.answerCells([](orv::CResultRow*, int, orv::CPolyValue& value) {
        value.CreateArray(2, orv::PolyString);
        return true;
    });

    const auto distinct = distinctValues(library, library.GetTheme(0), 0);

    ASSERT_TRUE(distinct.has_value());
    EXPECT_EQ(distinct->values.size(), 5U) << print(distinct);
    EXPECT_EQ(distinct->missing, 0);
}

TEST(DistinctValueOrderTest, KindsAreOrderedByThemselvesAndMixedOnesByText)
{
    orv::CPolyValue day;
    day.SetDateValue(0);
    const orv::CPolyValue empty;

    EXPECT_TRUE(query::isValueBefore(empty, orv::CPolyValue(1)));
    EXPECT_FALSE(query::isValueBefore(orv::CPolyValue(1), empty));
    EXPECT_FALSE(query::isValueBefore(empty, empty));
    EXPECT_TRUE(query::isValueBefore(orv::CPolyValue(9), orv::CPolyValue(10)));
    EXPECT_FALSE(query::isValueBefore(orv::CPolyValue(9), orv::CPolyValue(10.0)));
    EXPECT_TRUE(query::isValueBefore(orv::CPolyValue("10"), orv::CPolyValue(9)));
    EXPECT_TRUE(query::isValueBefore(orv::CPolyValue("Z"), orv::CPolyValue("a")));
}

} // namespace
