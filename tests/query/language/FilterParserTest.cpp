// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/FilterParser.h"
#include "tests/query/support/CaseFile.h"
#include "tests/query/support/TreeText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using query::ErrorReport;
using query::ParseFailure;
using query::parseFilter;
using query::ParseOutcome;

ParseOutcome parsed(std::string_view text)
{
    return parseFilter(text, ErrorReport::Silent);
}

TEST(FilterParserTest, TextsBecomeTheTreesOfTheTable)
{
    for (const auto& line : testing_query::readCases("language/filters.txt", 4)) {
        const ParseOutcome outcome = parsed(line.columns[0]);
        SCOPED_TRACE("filters.txt:" + std::to_string(line.number));
        EXPECT_EQ(std::to_string(outcome.status), line.columns[1]);
        EXPECT_EQ(testing_query::treeText(outcome.root.get()), line.columns[2]);
        EXPECT_EQ(std::to_string(outcome.errorPosition), line.columns[3]);
    }
}

TEST(FilterParserTest, KeywordsAndNamesMayBeWrittenWithoutBlanks)
{
    const ParseOutcome outcome = parsed("(a=1)AND(b=2)OR'x'<>c");

    EXPECT_EQ(
        testing_query::treeText(outcome.root.get()), "(OR (AND (= [a] 1) (= [b] 2)) (<> 'x' [c]))");
}

TEST(FilterParserTest, ARefusedTextIsToldOnStandardErrorOnce)
{
    testing::internal::CaptureStderr();
    (void)parseFilter("A = 1 AND", ErrorReport::OnStandardError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Syntax error: parse error\n");

    testing::internal::CaptureStderr();
    (void)parseFilter(std::string(11000, '('), ErrorReport::OnStandardError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Syntax error: parser stack overflow\n");
}

TEST(FilterParserTest, ARefusedTextIsNotToldWhenSilenceIsAsked)
{
    testing::internal::CaptureStderr();
    (void)parsed("A = 1 AND");
    (void)parsed(std::string(11000, '('));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(FilterParserTest, AnAcceptedTextIsNotTold)
{
    testing::internal::CaptureStderr();
    (void)parseFilter("A = 1", ErrorReport::OnStandardError);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(FilterParserTest, TheTokensAtTheErrorAreGiven)
{
    const ParseOutcome outcome = parsed("Importo = 1,5");

    EXPECT_EQ(outcome.failure, ParseFailure::ParseError);
    EXPECT_EQ(outcome.unexpectedToken, ",");
    EXPECT_EQ(outcome.precedingToken, "1");
}

TEST(FilterParserTest, AtTheEndThereIsNoUnexpectedToken)
{
    const ParseOutcome outcome = parsed("A = 1 AND  ");

    EXPECT_EQ(outcome.errorPosition, 12);
    EXPECT_EQ(outcome.unexpectedToken, "");
    EXPECT_EQ(outcome.precedingToken, "AND");
}

TEST(FilterParserTest, TheBytesOfAShortenedConditionAreGiven)
{
    const std::string text = "NOT (Città = 1) OR";
    const ParseOutcome outcome = parsed(text);

    EXPECT_TRUE(outcome.isShortened());
    EXPECT_EQ(text.substr(static_cast<std::size_t>(outcome.conditionPosition - 1),
                  static_cast<std::size_t>(outcome.conditionBytes)),
        "Città = 1");
}

TEST(FilterParserTest, AnAcceptedConditionIsNotShortened)
{
    const ParseOutcome outcome = parsed(" A = 1 ");

    EXPECT_FALSE(outcome.isShortened());
    EXPECT_EQ(outcome.conditionPosition, 2);
    EXPECT_EQ(outcome.conditionBytes, 5);
}

TEST(FilterParserTest, LinesAreCounted)
{
    EXPECT_EQ(parsed("A = 1\nAND B = 2\n").line, 2);
}

/// The kinds that could stand after a text, by name.
std::string expectedText(const std::string& text)
{
    const query::ExpectedAt at = query::expectedAfter(text, static_cast<int>(text.size()));
    const std::pair<bool, const char*> kinds[]
        = { { at.condition, "condition" }, { at.value, "value" }, { at.comparison, "comparison" },
              { at.likeOrIs, "likeOrIs" }, { at.pattern, "pattern" }, { at.nullWord, "null" },
              { at.arithmetic, "arithmetic" }, { at.connective, "connective" },
              { at.comma, "comma" }, { at.closingParenthesis, "closing" }, { at.end, "end" } };
    std::string out;
    for (const auto& [holds, name] : kinds)
        if (holds)
            out += (out.empty() ? "" : " ") + std::string(name);
    return out;
}

TEST(FilterParserTest, WhatCouldStandAtAPlaceIsKnown)
{
    for (const auto& line : testing_query::readCases("language/expected.txt", 2))
        EXPECT_EQ(expectedText(line.columns[0]), line.columns[1]) << "expected.txt:" << line.number;
}

} // namespace
