// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/FilterParser.h"
#include "tests/query/support/TreeText.h"

#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

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
        _exit(outcome.root ? 2 : outcome.status == 1 ? 0 : 3);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}
#endif

} // namespace
