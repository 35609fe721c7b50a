// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/NumberChain.h"

#include "host/base/Numbers.h"
#include "host/expr/Expression.h"
#include "query/execution/plan/Answers.h"
#include "tests/query/support/RandomTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace {

using query::plan::ChainStep;
using query::plan::comparisonHolds;
using query::plan::doubleOfKey;
using query::plan::keyOfDouble;
using query::plan::KeyRange;
using query::plan::NumberChain;
using query::plan::orderOf;

constexpr int Comparisons[]
    = { EEEqual, EENotEqual, EEGreater, EELess, EEGreaterOrEqual, EELessOrEqual };
constexpr double Most = std::numeric_limits<double>::max();

/// What a range says of a key: "yes", "no", or "odd" where it does not answer.
std::string answerOf(const KeyRange& range, std::int64_t key)
{
    if (key < range.first || key > range.last)
        return "odd";
    const bool isInside = range.low <= key && key <= range.high;
    return isInside != range.isNegated ? "yes" : "no";
}

std::string answerOf(const NumberChain& chain, int code, double constant, double start)
{
    double value = 0.0;
    if (chain.eval(start, value) != NumberChain::Outcome::Value)
        return "odd";
    return comparisonHolds(code, orderOf(value, constant)) ? "yes" : "no";
}

TEST(NumberChainTest, KeysKeepTheOrderOfDoubles)
{
    const double ascending[]
        = { -Most, -1.0, -1e-300, -5e-324, 0.0, 5e-324, 1.0, 1.0000000000000002, Most };
    for (std::size_t i = 1; i < std::size(ascending); ++i)
        EXPECT_LT(keyOfDouble(ascending[i - 1]), keyOfDouble(ascending[i]));
    for (const double value : ascending)
        EXPECT_EQ(doubleOfKey(keyOfDouble(value)), value);
    EXPECT_EQ(keyOfDouble(-0.0), keyOfDouble(0.0));
}

TEST(NumberChainTest, AnEmptyChainIsItsStart)
{
    const NumberChain chain;
    double value = 0.0;

    EXPECT_EQ(chain.eval(3.5, value), NumberChain::Outcome::Value);
    EXPECT_EQ(value, 3.5);
    EXPECT_TRUE(chain.isRising());
}

TEST(NumberChainTest, ADivisionByZeroCanNeverBeComputed)
{
    NumberChain chain;
    chain.append({ EEDivide, 0.0, false });

    EXPECT_FALSE(chain.canBeComputed());
    const KeyRange range = query::plan::rangeOfChain(
        chain, EEEqual, 1.0, -10, 10, [](std::int64_t key) { return static_cast<double>(key); });
    EXPECT_GT(range.first, range.last);
}

TEST(NumberChainTest, RangesOfIntegersSayWhatTheChainSays)
{
    const unsigned seed = testing_query::seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const double constants[] = { 0.0, 1.0, -1.0, 0.5, 2.0, -2.5, 10.0, 1e308, -1e308, 7.0 };
    const int codes[] = { EEAdd, EESubtract, EEMultiply, EEDivide };
    const auto pick = [&](const auto& all) { return all[random() % std::size(all)]; };
    for (int i = 0; i < 20000 && !HasFailure(); ++i) {
        NumberChain chain;
        for (unsigned steps = random() % 4; steps > 0; --steps) {
            const int code = pick(codes);
            chain.append({ code, pick(constants), code == EESubtract && random() % 2 == 0 });
        }
        const int code = pick(Comparisons);
        const double constant = pick(constants);
        const KeyRange range = query::plan::rangeOfChain(chain, code, constant, -20, 20,
            [](std::int64_t key) { return static_cast<double>(key); });
        for (std::int64_t key = -20; key <= 20; ++key)
            EXPECT_EQ(
                answerOf(range, key), answerOf(chain, code, constant, static_cast<double>(key)))
                << "key " << key << " code " << code << " constant " << constant;
    }
}

TEST(NumberChainTest, RangesOfRoundedDecimalsAreRightToTheLastBit)
{
    const double constants[] = { 0.0, 3.5, -3.5, 0.01, 0.005, 2.67, 2.675, 1e15, 4.5e15, 1e200,
        -0.01, 0.1, 100.0, 1e-7, std::numeric_limits<double>::infinity() };
    for (const int digits : { 0, 1, 2, 10 }) {
        const auto rounded
            = [&](std::int64_t key) { return orv::RoundedByText(doubleOfKey(key), digits); };
        for (const double constant : constants)
            for (const int code : Comparisons) {
                const KeyRange range = query::plan::rangeOfChain(
                    NumberChain(), code, constant, keyOfDouble(-Most), keyOfDouble(Most), rounded);
                for (const std::int64_t edge : { range.low, range.high, keyOfDouble(constant) })
                    for (std::int64_t key = edge - 3; key <= edge + 3; ++key) {
                        if (!std::isfinite(doubleOfKey(key)))
                            continue;
                        EXPECT_EQ(answerOf(range, key),
                            answerOf(NumberChain(), code, constant, rounded(key)))
                            << digits << " " << code << " " << constant;
                    }
            }
    }
}

TEST(NumberChainTest, StartsWhoseResultLeavesTheDoublesAreNotAnswered)
{
    NumberChain chain;
    chain.append({ EEMultiply, -2.0, false });
    const KeyRange range = query::plan::rangeOfChain(
        chain, EELess, 0.0, keyOfDouble(-Most), keyOfDouble(Most), doubleOfKey);

    EXPECT_EQ(answerOf(range, keyOfDouble(Most)), "odd");
    EXPECT_EQ(answerOf(range, keyOfDouble(-Most)), "odd");
    EXPECT_EQ(answerOf(range, keyOfDouble(Most / 2)), "yes");
    EXPECT_EQ(answerOf(range, keyOfDouble(-Most / 2)), "no");
}

} // namespace
