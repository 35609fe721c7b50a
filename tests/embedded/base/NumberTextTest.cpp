// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Numbers.h"
#include "host/base/String.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
const double NaN = std::nan("");

std::string fixedText(double value, int decimals)
{
    std::string text;
    orv::AppendFixed(text, value, decimals);
    return text;
}

/// What the rounding is defined by: write, then read.
double readBack(double value, int decimals)
{
    return orv_atof(orv::String::ValueOf(value, static_cast<unsigned>(decimals)).View());
}

bool isSameDouble(double left, double right)
{
    return std::memcmp(&left, &right, sizeof left) == 0;
}

TEST(NumberTextTest, FixedTextIsRoundedFromTheBinaryValue)
{
    const struct {
        double value;
        int decimals;
        const char* text;
    } cases[] = { { 2.5, 0, "2" }, { 3.5, 0, "4" }, { 0.25, 1, "0.2" }, { 0.35, 1, "0.3" },
        { 1.005, 2, "1.00" }, { 1.015, 2, "1.01" }, { 0.125, 2, "0.12" }, { 0.0, 2, "0.00" },
        { 12345.678, 0, "12346" }, { -1.5, 3, "-1.500" }, { -0.001, 2, "-0.00" },
        { 1e22, 1, "10000000000000000000000.0" }, { 0.1, 20, "0.10000000000000000555" } };
    for (const auto& [value, decimals, text] : cases)
        EXPECT_EQ(fixedText(value, decimals), text);
}

TEST(NumberTextTest, FixedTextIsEmptyForWhatIsNoNumber)
{
    EXPECT_EQ(fixedText(NaN, 2), "");
    EXPECT_EQ(fixedText(Infinity, 2), "");
    EXPECT_EQ(fixedText(-Infinity, 2), "");
}

TEST(NumberTextTest, FixedTextIsAppended)
{
    std::string text = "x";
    orv::AppendFixed(text, 1.5, 1);
    EXPECT_EQ(text, "x1.5");
    EXPECT_EQ(fixedText(std::numeric_limits<double>::max(), 60).size(), 309U + 61U);
}

TEST(NumberTextTest, ShortestTextIsPlainBetweenItsBoundsAndHasAnExponentOutside)
{
    const struct {
        double value;
        const char* text;
    } cases[] = { { 0.0, "0" }, { -0.0, "-0" }, { 1.0, "1" }, { -2.5, "-2.5" }, { 0.1, "0.1" },
        { 0.1 + 0.2, "0.30000000000000004" }, { 0.00001, "0.00001" }, { 0.000015, "0.000015" },
        { 0.000001, "1e-06" }, { 1e15, "1000000000000000" },
        { 1234567890123456.0, "1234567890123456" }, { 9007199254740991.0, "9007199254740991" },
        { 1e16, "1e+16" }, { 1e20, "1e+20" }, { 1.5e300, "1.5e+300" }, { -1e20, "-1e+20" },
        { 5e-324, "5e-324" }, { 1.7e200, "1.7e+200" } };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(orv::ShortestText(value), text);
}

TEST(NumberTextTest, ShortestTextReadsBack)
{
    std::mt19937_64 random(20160305);
    for (int count = 0; count < 20000; ++count) {
        const std::uint64_t bits = random();
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) {
            ASSERT_TRUE(isSameDouble(orv_atof(orv::ShortestText(value)), value))
                << orv::ShortestText(value);
        }
    }
}

TEST(NumberTextTest, RoundingGivesWhatTheTextReadsAs)
{
    const double values[] = { 0.0, -0.0, 0.5, 1.5, 2.5, -2.5, 0.125, 0.375, 1.005, 2.675, 0.285,
        1.115, 4503599627370495.5, 4503599627370496.5, 2251799813685247.5, 9007199254740991.0,
        9007199254740993.0, 1e22, 1e23, 1.7e200, 5e-324, 1e-7, -0.004, -0.3, 0.045, 0.145,
        99999.995, 22517998136852.475, NaN, Infinity };
    for (const double value : values)
        for (int decimals = 0; decimals <= 25; ++decimals)
            EXPECT_TRUE(
                isSameDouble(orv::RoundedByText(value, decimals), readBack(value, decimals)))
                << value << " with " << decimals;
}

TEST(NumberTextTest, RoundingOfRandomNumbersGivesWhatTheTextReadsAs)
{
    std::mt19937_64 random(27032016);
    std::uniform_real_distribution<double> mantissa(-10.0, 10.0);
    for (int count = 0; count < 200000; ++count) {
        const int decimals = static_cast<int>(random() % 12);
        const int exponent = static_cast<int>(random() % 24) - 6;
        const double value = mantissa(random) * std::pow(10.0, exponent);
        ASSERT_TRUE(isSameDouble(orv::RoundedByText(value, decimals), readBack(value, decimals)))
            << orv::ShortestText(value) << " with " << decimals;
    }
}

TEST(NumberTextTest, RoundingNextToHalvesGivesWhatTheTextReadsAs)
{
    std::mt19937_64 random(30102016);
    for (int count = 0; count < 200000; ++count) {
        const int decimals = static_cast<int>(random() % 11);
        const double units = static_cast<double>(random() % 2000000) + 0.5;
        double value = units / std::pow(10.0, decimals);
        for (std::uint64_t step = random() % 3; step > 0; --step)
            value = std::nextafter(value, random() % 2 ? 1e300 : -1e300);
        ASSERT_TRUE(isSameDouble(orv::RoundedByText(value, decimals), readBack(value, decimals)))
            << orv::ShortestText(value) << " with " << decimals;
    }
}

TEST(NumberTextTest, RoundingClampsTheDecimals)
{
    EXPECT_EQ(orv::RoundedByText(1.6, -5), 2.0);
    EXPECT_EQ(orv::RoundedByText(0.1, 2147483647), 0.1);
}

} // namespace
