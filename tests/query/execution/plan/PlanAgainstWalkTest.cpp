// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/Columns.h"
#include "query/execution/FieldSymbols.h"
#include "query/execution/plan/ColumnPlan.h"
#include "query/language/FilterParser.h"
#include "tests/query/support/RandomTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// The plan over columns must find the very entities that the walk finds, whatever the filter and
// the data.

namespace {

using testing_query::EntityOrder;
using testing_query::makeRandomLibrary;
using testing_query::randomFilter;
using testing_query::RandomTableSettings;
using testing_query::seedOfRun;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int Slowness = 10;
#else
constexpr int Slowness = 1;
#endif

class BothWays final {
public:
    explicit BothWays(gis::CLibGis& library)
        : m_library(library)
        , m_theme(library.GetTheme(0))
        , m_table(library.GetTable(m_theme))
        , m_symbols(query::makeFieldSymbols(&library, m_table))
    {
    }

    /// Compares both ways; counts what the plan took.
    void check(const std::string& filter)
    {
        const auto outcome = query::parseFilter(filter, query::ErrorReport::Silent);
        ASSERT_EQ(outcome.status, 0) << filter;
        const query::QuerySource source { m_library, m_theme, m_table, *m_symbols.table,
            m_symbols.fields };
        std::vector<gis::CEnt*> walked;
        query::walkRows(source, *outcome.root, walked);
        std::vector<gis::CEnt*> found(3); // what was there before must not matter
        ++filters;
        if (!query::plan::selectByColumns(source, *outcome.root, found))
            return;
        ++planned;
        nonEmpty += walked.empty() ? 0 : 1;
        EXPECT_EQ(found, walked) << filter << "\n" << firstDifference(found, walked);
    }

    int filters = 0;
    int planned = 0;
    int nonEmpty = 0;

private:
    std::string firstDifference(
        const std::vector<gis::CEnt*>& found, const std::vector<gis::CEnt*>& walked)
    {
        for (int i = 0; i < m_library.GetNoEnts(m_theme); ++i) {
            gis::CEnt* const entity = m_library.GetEnt(m_theme, i);
            const bool isFound = std::find(found.begin(), found.end(), entity) != found.end();
            const bool isWalked = std::find(walked.begin(), walked.end(), entity) != walked.end();
            if (isFound == isWalked)
                continue;
            std::string text = isFound ? "only the plan finds" : "only the walk finds";
            for (int field = 0; field < m_library.GetNumFields(m_table); ++field) {
                orv::CPolyValue value;
                m_library.GetRowValue(m_library.GetRow(entity), field, value);
                text += " | " + m_library.GetFieldName(m_library.GetField(m_table, field)).Bytes()
                    + "=" + value.GetStringValue().Bytes();
            }
            return text;
        }
        return "other order";
    }

    gis::CLibGis& m_library;
    gis::CTheme* m_theme;
    gis::CDBTable* m_table;
    query::FieldSymbols m_symbols;
};

class PlanAgainstWalkTest : public testing::TestWithParam<EntityOrder> { };

TEST_P(PlanAgainstWalkTest, RandomFiltersFindTheSameEntities)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    int filters = 0;
    int planned = 0;
    int nonEmpty = 0;
    for (int round = 0; round < 40 / Slowness + 1 && !HasFailure(); ++round) {
        const auto library = makeRandomLibrary(random, { 150, 20, GetParam() });
        BothWays ways(*library);
        for (int i = 0; i < 150 && !HasFailure(); ++i)
            ways.check(randomFilter(random, 3));
        filters += ways.filters;
        planned += ways.planned;
        nonEmpty += ways.nonEmpty;
    }
    // Else the test would compare the walk with itself, or nothing with nothing.
    EXPECT_GT(planned, filters * 9 / 10);
    EXPECT_GT(nonEmpty, filters / 10);
}

TEST_P(PlanAgainstWalkTest, SeveralChunksOfRowsFindTheSameEntities)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto library
        = makeRandomLibrary(random, { gis::ColumnChunkRows * 2 / Slowness + 777, 10, GetParam() });
    BothWays ways(*library);
    for (int i = 0; i < 25 / Slowness + 2 && !HasFailure(); ++i)
        ways.check(randomFilter(random, 2));
    EXPECT_GT(ways.planned, 0);
}

INSTANTIATE_TEST_SUITE_P(Orders, PlanAgainstWalkTest,
    testing::Values(EntityOrder::AsRows, EntityOrder::Reversed, EntityOrder::EveryThird,
        EntityOrder::Shuffled));

TEST(PlanAgainstWalkTest, EverySmallFilterFindsTheSameEntities)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto library = makeRandomLibrary(random, { 90, 25, EntityOrder::AsRows });
    BothWays ways(*library);
    const std::vector<std::string> values { "T", "A", "N", "D", "G", "X", "1", "2.5", "'a'", "TRUE",
        "Date(5,3,2016)", "1/0", "N+1", "D*2", "3-N", "N/0", "D/D", "T+1", "Year(G)", "Now()" };
    const std::vector<std::string> comparisons { "=", "<>", "<", ">", "<=", ">=" };
    std::vector<std::string> predicates;
    for (const std::string& left : values)
        for (const std::string& comparison : comparisons)
            for (const std::string& right : values)
                predicates.push_back(left + " " + comparison + " " + right);
    for (const std::string field : { "T", "A", "N", "D", "G", "X", "Now" })
        for (const std::string test : { " LIKE '%'", " LIKE '_%1'", " IS NULL", " IS NOT NULL" })
            predicates.push_back(field + test);
    for (const std::string& predicate : predicates) {
        ways.check(predicate);
        ways.check("NOT " + predicate);
    }
    // One of each kind of answer on both sides of each connective.
    const std::vector<std::string> sides { "N = 1", "D > 1", "A = TRUE", "N = 'a'", "X = 1",
        "1 = 1", "1 = 2", "T LIKE 'a%'", "G IS NULL", "D/N > 0" };
    for (const std::string& left : sides)
        for (const std::string& right : sides)
            for (const std::string connective : { " AND ", " OR " })
                for (const std::string negation : { "", "NOT " })
                    ways.check(negation + "(" + left + connective + right + ")");
    EXPECT_EQ(ways.planned, ways.filters);
}

TEST(PlanAgainstWalkTest, NoRowsAndAFewRowsFindTheSameEntities)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (const int rowCount : { 0, 1, 2, 63, 64, 65, 127, 4095, 4096, 4097 }) {
        const auto library = makeRandomLibrary(random, { rowCount, 30, EntityOrder::AsRows });
        BothWays ways(*library);
        for (int i = 0; i < 30 && !HasFailure(); ++i)
            ways.check(randomFilter(random, 2));
        EXPECT_GT(ways.planned, 0) << rowCount;
    }
}

TEST(PlanAgainstWalkTest, LongChainsFindTheSameEntities)
{
    std::mt19937 random(1);
    const auto library = makeRandomLibrary(random, { 10, 20, EntityOrder::AsRows });
    BothWays ways(*library);
    for (const std::string connective : { " OR ", " AND " }) {
        std::string filter = "N = 1";
        for (int i = 1; i < 200000 / Slowness; ++i)
            filter += connective + (i % 2 == 0 ? "N = 1" : "D = " + std::to_string(i));
        ways.check(filter);
    }
    std::string sum = "N";
    for (int i = 1; i < 200000 / Slowness; ++i)
        sum += i % 2 == 0 ? "+1" : "-1";
    ways.check(sum + " >= 1");
    ways.check("M <= " + sum);
    EXPECT_EQ(ways.planned, 4);
}

} // namespace
