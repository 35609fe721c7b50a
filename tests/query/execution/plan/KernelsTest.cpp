// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/Kernels.h"

#include "host/base/Numbers.h"
#include "host/expr/Expression.h"
#include "query/execution/plan/Answers.h"
#include "tests/query/support/RandomTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

// Each loop over many rows against the same question asked of one row, at lengths around those at
// which the loops change their stride.

namespace {

using query::plan::Bits;

constexpr int Lengths[] = { 0, 1, 3, 15, 16, 17, 63, 64, 65, 100, 127, 128, 4095, 4096 };
constexpr double Infinity = std::numeric_limits<double>::infinity();

bool bitAt(const Bits& bits, int row)
{
    return (bits[static_cast<std::size_t>(row / 64)] >> (row % 64) & 1) != 0;
}

class KernelsTest : public testing::Test {
protected:
    KernelsTest()
        : m_seed(testing_query::seedOfRun())
        , m_random(m_seed)
    {
        RecordProperty("seed", std::to_string(m_seed));
    }

    std::vector<double> decimals(int count)
    {
        const double special[] = { 0.0, -0.0, 1.5, 2.5, -2.5, 3.495, 0.005, 1e300, -1e300, Infinity,
            -Infinity, std::nan(""), 1e15, 2251799813685248.0, 22517998136852.475 };
        std::vector<double> values(static_cast<std::size_t>(count));
        for (double& value : values)
            value = m_random() % 2 == 0 ? special[m_random() % std::size(special)]
                                        : static_cast<double>(m_random() % 100000) / 1000.0 - 50.0;
        return values;
    }
    std::vector<std::int32_t> integers(int count)
    {
        std::vector<std::int32_t> values(static_cast<std::size_t>(count));
        for (std::int32_t& value : values)
            value = m_random() % 4 == 0 ? static_cast<std::int32_t>(m_random())
                                        : static_cast<std::int32_t>(m_random() % 10) - 5;
        return values;
    }

    unsigned m_seed;
    std::mt19937 m_random;
};

TEST_F(KernelsTest, IntegersInsideBounds)
{
    const std::int32_t least = std::numeric_limits<std::int32_t>::min();
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const std::pair<std::int32_t, std::int32_t> bounds[]
        = { { -2, 3 }, { 0, 0 }, { 1, 0 }, { least, most }, { least, 0 }, { 1, most } };
    for (const int length : Lengths)
        for (const auto& [low, high] : bounds) {
            const auto values = integers(length);
            Bits inside;
            query::plan::insideBits(values.data(), length, low, high, inside);
            for (int row = 0; row < length; ++row) {
                const std::int32_t value = values[static_cast<std::size_t>(row)];
                ASSERT_EQ(bitAt(inside, row), low <= value && value <= high) << m_seed;
            }
        }
}

TEST_F(KernelsTest, DecimalsInsideBounds)
{
    const std::pair<double, double> bounds[] = { { -2.5, 3.5 }, { 0.0, 0.0 },
        { Infinity, -Infinity }, { -1e301, 1e301 }, { 1.5, Infinity } };
    for (const int length : Lengths)
        for (const auto& [low, high] : bounds) {
            const auto values = decimals(length);
            Bits inside;
            Bits odd;
            query::plan::insideBits(
                values.data(), length, { low, high }, { -1e100, 1e100 }, inside, odd);
            for (int row = 0; row < length; ++row) {
                const double value = values[static_cast<std::size_t>(row)];
                ASSERT_EQ(bitAt(inside, row), low <= value && value <= high) << m_seed;
                ASSERT_EQ(bitAt(odd, row), !(-1e100 <= value && value <= 1e100)) << m_seed;
            }
        }
}

TEST_F(KernelsTest, CodesThatEqualOne)
{
    for (const int length : Lengths) {
        std::vector<std::uint32_t> codes(static_cast<std::size_t>(length));
        for (std::uint32_t& code : codes)
            code = m_random() % 3 == 0 ? 0xFFFFFFFFu : static_cast<std::uint32_t>(m_random() % 4);
        Bits equal;
        query::plan::equalBits(codes.data(), length, 2, equal);
        for (int row = 0; row < length; ++row)
            ASSERT_EQ(bitAt(equal, row), codes[static_cast<std::size_t>(row)] == 2) << m_seed;
    }
}

TEST_F(KernelsTest, CodesOfASet)
{
    const std::uint64_t members[] = { 0x5555555555555555u, 0x3u };
    for (const int length : Lengths) {
        std::vector<std::uint32_t> codes(static_cast<std::size_t>(length));
        for (std::uint32_t& code : codes)
            code = static_cast<std::uint32_t>(m_random() % 70);
        Bits isMember;
        query::plan::memberBits(codes.data(), length, members, 70, isMember);
        for (int row = 0; row < length; ++row) {
            const std::uint32_t code = codes[static_cast<std::size_t>(row)];
            ASSERT_EQ(bitAt(isMember, row), code < 64 ? code % 2 == 0 : code < 66) << m_seed;
        }
    }
}

TEST_F(KernelsTest, CodesOutOfRangeAreLookedUpNowhere)
{
    const std::uint64_t members[] = { 0 };
    const std::vector<std::uint32_t> codes(100, 0xFFFFFFFFu);
    Bits isMember;
    query::plan::memberBits(codes.data(), 100, members, 3, isMember);
    EXPECT_FALSE(bitAt(isMember, 0));
}

TEST_F(KernelsTest, RoundedDecimalsAreThoseOfTheText)
{
    std::int64_t trusted = 0;
    for (int digits = 0; digits <= 10; ++digits)
        for (const int length : Lengths) {
            const auto values = decimals(length);
            std::vector<double> rounded(values.size());
            Bits doubtful;
            query::plan::roundDecimals(values.data(), length, digits, rounded.data(), doubtful);
            for (int row = 0; row < length; ++row) {
                const auto at = static_cast<std::size_t>(row);
                if (bitAt(doubtful, row))
                    continue;
                ++trusted;
                ASSERT_EQ(rounded[at], orv::RoundedByText(values[at], digits))
                    << values[at] << " with " << digits << " digits, seed " << m_seed;
            }
        }
    EXPECT_GT(trusted, 10000);
}

TEST_F(KernelsTest, Comparisons)
{
    for (const int code :
        { EEEqual, EENotEqual, EEGreater, EELess, EEGreaterOrEqual, EELessOrEqual })
        for (const int length : Lengths) {
            auto left = decimals(length);
            auto right = decimals(length);
            for (double& value : left)
                value = std::isnan(value) ? 1.0 : std::round(value);
            for (double& value : right)
                value = std::isnan(value) ? 1.0 : std::round(value);
            Bits rows;
            Bits constant;
            query::plan::compareBits(code, left.data(), right.data(), length, rows);
            query::plan::compareBits(code, left.data(), 3.0, length, constant);
            for (int row = 0; row < length; ++row) {
                const auto at = static_cast<std::size_t>(row);
                using query::plan::comparisonHolds;
                using query::plan::orderOf;
                ASSERT_EQ(bitAt(rows, row), comparisonHolds(code, orderOf(left[at], right[at])));
                ASSERT_EQ(bitAt(constant, row), comparisonHolds(code, orderOf(left[at], 3.0)));
            }
        }
}

TEST_F(KernelsTest, FiniteNumbers)
{
    for (const int length : Lengths) {
        const auto values = decimals(length);
        Bits isFinite;
        query::plan::finiteBits(values.data(), length, isFinite);
        for (int row = 0; row < length; ++row)
            ASSERT_EQ(bitAt(isFinite, row), std::isfinite(values[static_cast<std::size_t>(row)]));
    }
}

} // namespace
