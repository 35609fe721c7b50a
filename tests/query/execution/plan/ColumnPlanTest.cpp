// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/ColumnPlan.h"

#include "host/gis/Columns.h"
#include "query/execution/FieldSymbols.h"
#include "query/language/FilterParser.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// When the plan is used and when it steps back for the walk.

namespace {

constexpr const char* Data = "table T (a integer, b decimal 2, c text, d date);"
                             "rows T: (1, 1.5, 'x', 05/03/2016), (2, 2.5, 'y', -), (-, -, -, -);"
                             "theme S: points on T; ents S: 0 [], 1 [], 2 []";

/// Number of entities found over columns; -1 where the plan steps back.
int planned(gis::CLibGis& library, const std::string& filter)
{
    gis::CTheme* const theme = library.GetTheme(0);
    gis::CDBTable* const table = library.GetTable(theme);
    const query::FieldSymbols symbols = query::makeFieldSymbols(&library, table);
    const query::QuerySource source { library, theme, table, *symbols.table, symbols.fields };
    const auto outcome = query::parseFilter(filter, query::ErrorReport::Silent);
    EXPECT_EQ(outcome.status, 0) << filter;
    std::vector<gis::CEnt*> found;
    if (!query::plan::selectByColumns(source, *outcome.root, found))
        return -1;
    return static_cast<int>(found.size());
}

TEST(ColumnPlanTest, NoCellIsReadWhereTheHostOffersColumns)
{
    support::CRecordingLibrary library(Data);
    library.offerColumns();

    EXPECT_EQ(planned(library, "a >= 1 AND b * 2 > 3 AND c LIKE 'y%' AND d IS NULL"), 1);
    EXPECT_EQ(library.countOf("GetRowValue"), 0);
    EXPECT_EQ(library.countOf("GetEnt"), 0);
}

TEST(ColumnPlanTest, WithoutColumnsItStepsBack)
{
    support::CRecordingLibrary library(Data);

    EXPECT_EQ(planned(library, "a = 1"), -1);
}

TEST(ColumnPlanTest, ADateMadeFromCellsIsLeftToTheWalk)
{
    const auto library = support::makeLibrary(Data);

    EXPECT_EQ(planned(*library, "Date(a, 1, 2016) < d"), -1);
    EXPECT_EQ(planned(*library, "Date(1, 1, 2016) < d"), 1);
}

TEST(ColumnPlanTest, PartsOfDatesAreComputedOverColumns)
{
    const auto library = support::makeLibrary(Data);

    EXPECT_EQ(planned(*library, "Year(d) = 2016 AND Month(d) + Day(d) = 8"), 1);
}

/// Columns of another shape than the fields', as a host might give them by mistake.
class OddColumns final : public gis::IColumns {
public:
    explicit OddColumns(gis::IColumns& base)
        : m_base(base)
    {
    }
    bool GetColumn(gis::CDBTable* table, int fieldIndex, gis::ColumnView& view) override
    {
        if (!m_base.GetColumn(table, exchange ? 1 - fieldIndex : fieldIndex, view))
            return false;
        view.rowCount -= missingRows;
        return !refuseColumns;
    }
    bool GetEntityRuns(gis::CTheme* theme, gis::EntityRunsView& view) override
    {
        if (!m_base.GetEntityRuns(theme, view))
            return false;
        view.entityCount += wrongCount;
        return !refuseRuns;
    }
    bool exchange = false;
    bool refuseColumns = false;
    bool refuseRuns = false;
    int missingRows = 0;
    int wrongCount = 0;

private:
    gis::IColumns& m_base;
};

class OddColumnsTest : public testing::Test {
protected:
    OddColumnsTest()
        : m_library(Data)
        , m_columns(*static_cast<gis::IColumns*>(
              m_library.gis::CLibGis::Extension(gis::ColumnsExtension)))
    {
        m_library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&m_columns));
    }
    support::CRecordingLibrary m_library;
    OddColumns m_columns;
};

TEST_F(OddColumnsTest, AsTheyShouldBeTheyAreUsed)
{
    EXPECT_EQ(planned(m_library, "a = 1"), 1);
}

TEST_F(OddColumnsTest, OfAnotherKindThanTheFieldTheyAreNotUsed)
{
    m_columns.exchange = true;
    EXPECT_EQ(planned(m_library, "a = 1"), -1);
}

TEST_F(OddColumnsTest, RefusedOnesAreNotUsed)
{
    m_columns.refuseColumns = true;
    EXPECT_EQ(planned(m_library, "a = 1"), -1);
    EXPECT_EQ(planned(m_library, "1 = 1"), 3); // needs none
}

TEST_F(OddColumnsTest, RefusedRunsAreNotUsed)
{
    m_columns.refuseRuns = true;
    EXPECT_EQ(planned(m_library, "1 = 1"), -1);
}

TEST_F(OddColumnsTest, ColumnsShorterThanTheRowsAreNotUsed)
{
    m_columns.missingRows = 1;
    EXPECT_EQ(planned(m_library, "a = 1"), -1);
}

TEST_F(OddColumnsTest, RunsThatDoNotAddUpAreNotUsed)
{
    m_columns.wrongCount = 1;
    EXPECT_EQ(planned(m_library, "1 = 1"), -1);
}

} // namespace
