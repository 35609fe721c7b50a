// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Filters parsed and evaluated by several threads at once. Run with the thread sanitizer these
// tests also tell that parsers share nothing, and that evaluating a tree writes nothing to it.
#include "query/language/FilterParser.h"
#include "tests/query/support/CaseFile.h"
#include "tests/query/support/TreeText.h"

#include "host/base/Dates.h"
#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using query::ErrorReport;
using query::parseFilter;

constexpr int Threads = 4;

/// All that a parse says.
std::string outcomeText(const std::string& text)
{
    const query::ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
    std::string said = std::to_string(outcome.status) + " " + std::to_string(outcome.errorPosition)
        + " " + std::to_string(outcome.line) + " " + std::to_string(outcome.conditionPosition)
        + " ";
    said += outcome.unexpectedToken;
    said += testing_query::treeText(outcome.root.get());
    if (outcome.status != 0)
        said += query::expectedAfter(text, outcome.errorPosition - 1).value ? " value" : "";
    return said;
}

void runTogether(const std::function<void(int)>& act)
{
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i)
        threads.emplace_back([&act, i] { act(i); });
}

TEST(ParserThreadsTest, SeveralParsesAtOnceSayWhatOneSays)
{
    std::vector<std::string> texts { std::string(9000, '(') + "A = 1" + std::string(9000, ')'),
        std::string(11000, '(') };
    for (const auto& line : testing_query::readCases("language/filters.txt", 4))
        texts.push_back(line.columns[0]);
    std::vector<std::string> expected;
    for (const std::string& text : texts)
        expected.push_back(outcomeText(text));
    std::vector<std::vector<std::string>> said(Threads);

    runTogether([&](int thread) {
        auto& own = said[static_cast<std::size_t>(thread)];
        own.resize(texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i) {
            // Each begins elsewhere, so that different texts are parsed at the same time.
            const std::size_t at = (i + static_cast<std::size_t>(thread) * 17) % texts.size();
            own[at] = outcomeText(texts[at]);
        }
    });

    for (const auto& own : said)
        EXPECT_EQ(own, expected);
}

/// A provider with values of its own.
struct Values {
    explicit Values(int row)
    {
        const auto add = [this](const char* name, const orv::CPolyValue& value) {
            auto* symbol = new CEESymbolConstVar;
            symbol->SetElemValue(value);
            symbols.AddSymbol(name, symbol);
        };
        add("A", orv::CPolyValue(row % 5));
        add("B", row % 7 == 0 ? orv::CPolyValue() : orv::CPolyValue(orv::String::ValueOf(row)));
        orv::CPolyValue day;
        day.SetDateValue(orv::LocalMidnightOfDay(row * 10));
        add("C", day);
        add("con spazio", orv::CPolyValue(row / 2.0));
        symbols.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
        symbols.AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));
    }
    CEESymbolTable symbols;
};

std::string valueText(CEEExpression& filter, int row)
{
    Values values(row);
    CEEResult result;
    if (!filter.Eval(&values.symbols, result))
        return "fails";
    return std::to_string(result.GetElemType()) + result.GetElemString().Bytes();
}

TEST(ParserThreadsTest, OneTreeIsEvaluatedByManyEachWithItsOwnValues)
{
    constexpr int Rows = 2000;
    const auto parsed = parseFilter("(A = 1 OR B LIKE '1%') AND NOT [con spazio] * 2 < A + 100"
                                    " OR Year(Date(1, A + 1, 1990 + A)) - Year(C) > A"
                                    " OR B IS NULL OR 1 / A > B",
        ErrorReport::Silent);
    ASSERT_EQ(parsed.status, 0);
    std::vector<std::string> expected;
    for (int row = 0; row < Rows; ++row)
        expected.push_back(valueText(*parsed.root, row));
    std::vector<std::vector<std::string>> found(Threads);

    runTogether([&](int thread) {
        auto& own = found[static_cast<std::size_t>(thread)];
        own.resize(Rows);
        for (int i = 0; i < Rows; ++i) {
            const int row = (i + thread * 31) % Rows;
            own[static_cast<std::size_t>(row)] = valueText(*parsed.root, row);
        }
        EXPECT_FALSE(parsed.root->ToString().Bytes().empty());
        const std::unique_ptr<CEEExpression> copy(parsed.root->Clone());
        EXPECT_EQ(valueText(*copy, 3), expected[3]);
    });

    for (const auto& own : found)
        EXPECT_EQ(own, expected);
    EXPECT_GT(std::count(expected.begin(), expected.end(), expected[1]), 1);
    EXPECT_NE(std::count(expected.begin(), expected.end(), expected[1]), Rows)
        << "else the threads' values would not matter";
}

} // namespace
