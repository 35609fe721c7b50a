// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/FilterNames.h"
#include "query/language/FilterParser.h"
#include "tests/query/support/TreeText.h"
#include "tests/support/SmallStack.h"

#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using query::ErrorReport;
using query::ParseFailure;
using query::parseFilter;
using query::ParseOutcome;

/// The deepest nesting that the parser's stack of 10,000 entries holds.
constexpr std::size_t DeepestNesting = 9995;
constexpr std::size_t LongChain = 200000;
/// As deep as calls with an operator inside go: each takes four places of that stack.
constexpr int DeepestCalls = 2490;
/// Less than any thread of a host has.
constexpr std::size_t SmallStack = 512 * 1024;

std::string nested(std::size_t depth)
{
    return std::string(depth, '(') + "A = 1" + std::string(depth, ')');
}

std::string chainOf(const std::string& term, const std::string& connective, std::size_t count)
{
    std::string text = term;
    for (std::size_t i = 1; i < count; ++i)
        text += connective + term;
    return text;
}

TEST(ParserLimitsTest, NestingUpToTheStackIsAccepted)
{
    for (const std::size_t depth : { DeepestNesting - 1, DeepestNesting }) {
        const ParseOutcome outcome = parseFilter(nested(depth), ErrorReport::Silent);
        EXPECT_EQ(outcome.status, 0) << depth;
        EXPECT_EQ(testing_query::treeText(outcome.root.get()), "(= [A] 1)") << depth;
    }
}

TEST(ParserLimitsTest, DeeperNestingOverflows)
{
    for (const std::size_t depth :
        { DeepestNesting + 1, std::size_t(10000), std::size_t(100000) }) {
        const ParseOutcome outcome = parseFilter(nested(depth), ErrorReport::Silent);
        EXPECT_EQ(outcome.status, 1) << depth;
        EXPECT_EQ(outcome.failure, ParseFailure::StackOverflow) << depth;
        EXPECT_EQ(outcome.root, nullptr) << depth;
    }
}

TEST(ParserLimitsTest, EverySymbolThatWaitsToTheLeftCounts)
{
    struct Level {
        const char* opening; // closed by one parenthesis
        const char* inner;
        const char* end;
        std::size_t places;
    };
    const Level levels[] = {
        { "NOT (", "A = 1", "", 2 },
        { "Year(", "A", " = 1", 2 },
        { "1 + (", "A", " = 1", 3 },
        { "A = 1 AND (", "A = 1", "", 3 },
        { "A = 1 OR (", "A = 1", "", 3 },
        { "Year(1 + ", "A", " = 1", 4 },
        { "A = 1 AND NOT (", "A = 1", "", 4 },
        { "1 + 2 * (", "A", " = 1", 5 },
        { "A = 1 OR B = 2 AND (", "A = 1", "", 5 },
    };
    for (const Level& level : levels) {
        const auto parsed = [&](std::size_t depth) {
            return parseFilter(chainOf(level.opening, "", depth) + level.inner
                    + std::string(depth, ')') + level.end,
                ErrorReport::Silent);
        };
        EXPECT_EQ(parsed(DeepestNesting / level.places - 1).status, 0) << level.opening;
        EXPECT_EQ(parsed(DeepestNesting / level.places + 2).failure, ParseFailure::StackOverflow)
            << level.opening;
    }
}

TEST(ParserLimitsTest, AnOverflowAfterACompleteConditionAnswersWithIt)
{
    const ParseOutcome outcome = parseFilter("(B = 2) AND " + nested(20000), ErrorReport::Silent);

    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.failure, ParseFailure::StackOverflow);
    EXPECT_EQ(testing_query::treeText(outcome.root.get()), "(= [B] 2)");
}

TEST(ParserLimitsTest, LongChainsNeedNoDeepStack)
{
    for (const char* connective : { " OR ", " AND " }) {
        ParseOutcome outcome
            = parseFilter(chainOf("1=1", connective, LongChain), ErrorReport::Silent);
        ASSERT_EQ(outcome.status, 0);

        CEESymbolTable symbols;
        CEEResult result;
        EXPECT_TRUE(outcome.root->Eval(&symbols, result));
        EXPECT_TRUE(result.GetElemBool());
        const std::unique_ptr<CEEExpression> copy(outcome.root->Clone());
        outcome.root.reset();
        EXPECT_TRUE(copy->Eval(&symbols, result));
        EXPECT_TRUE(result.GetElemBool());
    }
}

TEST(ParserLimitsTest, LongSumsNeedNoDeepStack)
{
    const ParseOutcome outcome
        = parseFilter(chainOf("1", "+", LongChain) + " = 200000", ErrorReport::Silent);
    ASSERT_EQ(outcome.status, 0);

    CEESymbolTable symbols;
    CEEResult result;
    EXPECT_TRUE(outcome.root->Eval(&symbols, result));
    EXPECT_TRUE(result.GetElemBool());
}

TEST(ParserLimitsTest, AFailedLongChainIsGivenBackWhole)
{
    const ParseOutcome outcome
        = parseFilter("(" + chainOf("a=1", " OR ", LongChain) + ") AND NOT", ErrorReport::Silent);

    EXPECT_EQ(outcome.status, 1);
    ASSERT_NE(outcome.root, nullptr);
    EXPECT_EQ(static_cast<std::size_t>(outcome.conditionBytes), LongChain * 7 - 4);
}

TEST(ParserLimitsTest, ACallMayHaveManyArguments)
{
    const ParseOutcome outcome
        = parseFilter("f(" + chainOf("1", ",", LongChain) + ") = 0", ErrorReport::Silent);

    ASSERT_EQ(outcome.status, 0);
    const auto* comparison = dynamic_cast<CEEExpressionBinOp*>(outcome.root.get());
    ASSERT_NE(comparison, nullptr);
    const auto* call = dynamic_cast<CEEExpressionFun*>(comparison->GetLeft());
    ASSERT_NE(call, nullptr);
    EXPECT_EQ(call->GetArguments().size(), LongChain);
}

/// Year(1+Year(1+ ..., not closed.
std::string openCalls(int levels)
{
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "Year(1+";
    return text + "A";
}

TEST(ParserLimitsTest, CallsNestedAsDeepAsTheParserAllowsNeedNoDeepStack)
{
    for (const int levels : { 1000, DeepestCalls }) {
        const std::string text
            = openCalls(levels) + std::string(static_cast<std::size_t>(levels), ')') + " = 1";
        support::runOnStack(SmallStack, [&] {
            ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
            ASSERT_EQ(outcome.status, 0) << levels;
            CEESymbolTable symbols;
            auto* const variable = new CEESymbolConstVar;
            symbols.AddSymbol("A", variable);
            symbols.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
            CEEResult result(true);
            EXPECT_TRUE(outcome.root->Eval(&symbols, result)) << "no value, up to the top";
            EXPECT_EQ(result.GetElemType(), orv::PolyEmpty);
            const std::unique_ptr<CEEExpression> copy(outcome.root->Clone());
            outcome.root.reset();
            EXPECT_EQ(query::filterNames(*copy, symbols).size(), 2U);
            variable->SetElemValue(orv::CPolyValue(7));
            EXPECT_FALSE(copy->Eval(&symbols, result)) << "8 is no date";
        });
    }
    EXPECT_EQ(parseFilter(openCalls(DeepestCalls + 10), ErrorReport::Silent).failure,
        ParseFailure::StackOverflow);
}

TEST(ParserLimitsTest, ATextWhoseBytesCannotBeNumberedIsRefusedUnread)
{
    // Addresses without memory behind them, but for the page that is written to. Read to its first
    // NUL byte it would be a filter.
    constexpr std::size_t size = std::size_t(1) << 31;
    void* const pages = mmap(
        nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    std::memcpy(pages, "A = 1", 5);
    const auto* text = static_cast<const char*>(pages);

    for (const std::size_t tooMany : { size, size - 1 }) {
        const ParseOutcome outcome = parseFilter({ text, tooMany }, ErrorReport::Silent);
        EXPECT_EQ(outcome.status, 1) << tooMany;
        EXPECT_EQ(outcome.root, nullptr) << tooMany;
        EXPECT_EQ(outcome.failure, ParseFailure::OutOfMemory) << tooMany;
    }
    EXPECT_EQ(parseFilter({ text, size - 2 }, ErrorReport::Silent).status, 0);
    munmap(pages, size);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(ParserLimitsTest, ATextTooLongForTheMemoryIsRefusedAndEndsNoProcess)
{
    const std::string text = "Nome = '" + std::string(std::size_t(96) << 20, 'x') + "'";
    const pid_t child = fork();
    if (child == 0) {
        std::size_t pages = 0;
        if (std::FILE* statm = std::fopen("/proc/self/statm", "r")) {
            if (std::fscanf(statm, "%zu", &pages) != 1)
                pages = 0;
            std::fclose(statm);
        }
        // Room for some of the text, not for all of it a second time.
        const rlim_t most = pages * 4096 + (rlim_t(32) << 20);
        const rlimit limit { most, most };
        setrlimit(RLIMIT_AS, &limit);
        const ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
        const bool isTold = outcome.failure == ParseFailure::OutOfMemory;
        _exit(outcome.root ? 2 : outcome.status != 1 ? 3 : isTold ? 0 : 4);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
#endif

} // namespace
