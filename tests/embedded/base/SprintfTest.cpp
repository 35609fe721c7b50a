// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Numbers.h"

#include "tests/support/LocaleScope.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {

template <typename... Arguments> std::string printed(const char* format, Arguments... arguments)
{
    char buffer[512];
    const int length = orv_sprintf(buffer, sizeof buffer, format, arguments...);
    EXPECT_EQ(length, static_cast<int>(std::string(buffer).size()));
    return buffer;
}

TEST(SprintfTest, Integers)
{
    EXPECT_EQ(printed("%d|%i|%u", -1, 2, 4000000000U), "-1|2|4000000000");
    EXPECT_EQ(printed("%02d/%02d/%d", 5, 3, 2016), "05/03/2016");
    EXPECT_EQ(printed("%5d|%-5d|%+d|% d", 42, 42, 42, 42), "   42|42   |+42| 42");
    EXPECT_EQ(printed("%.3d|%6.3d|%06d|%-06d", 7, 7, -7, 7), "007|   007|-00007|7     ");
    EXPECT_EQ(printed("%ld|%lld|%zu", LONG_MIN, LLONG_MAX, sizeof(int)),
        "-9223372036854775808|9223372036854775807|4");
    EXPECT_EQ(printed("%x|%X|%#x|%08x", 255, 255, 255, 48879), "ff|FF|0xff|0000beef");
    EXPECT_EQ(printed("%*d|%-*d|%*d", 4, 1, 4, 1, -4, 1), "   1|1   |1   ");
    EXPECT_EQ(printed("%d", INT_MIN), "-2147483648");
}

TEST(SprintfTest, Texts)
{
    EXPECT_EQ(printed("%s, %s", "Via", "Roma"), "Via, Roma");
    EXPECT_EQ(printed("[%6s|%-6s|%.2s]", "abc", "abc", "abc"), "[   abc|abc   |ab]");
    EXPECT_EQ(printed("%c%c", 'o', 'k'), "ok");
    EXPECT_EQ(printed("100%%"), "100%");
    EXPECT_EQ(printed("%s", static_cast<const char*>(nullptr)), "(null)");
    EXPECT_EQ(printed(""), "");
}

TEST(SprintfTest, DecimalsAlwaysHaveAPoint)
{
    EXPECT_EQ(printed("%f", 1.5), "1.500000");
    EXPECT_EQ(printed("%.2f|%.0f|%#.0f", 3.14159, 2.5, 2.5), "3.14|2|2.");
    EXPECT_EQ(printed("%8.2f|%-8.2f|%08.2f", -1.5, -1.5, -1.5), "   -1.50|-1.50   |-0001.50");
    EXPECT_EQ(printed("%e|%.1E", 12345.678, 12345.678), "1.234568e+04|1.2E+04");
    EXPECT_EQ(printed("%g|%g|%g|%g", 0.0001, 100000.0, 1000000.0, 1.5), "0.0001|100000|1e+06|1.5");
    EXPECT_EQ(printed("%+.1f|% .1f|%.1f", 1.0, 1.0, -0.0), "+1.0| 1.0|-0.0");
    EXPECT_EQ(printed("%05f", std::numeric_limits<double>::infinity()), "  inf");
}

TEST(SprintfTest, NumbersReadAsTheLibrarysOwnFunctionWritesThem)
{
    const support::LocaleScope plain("C");
    for (const double value : { 0.0, 0.1, -2.5, 1e-5, 123456.789, 1e15, 1e300 })
        for (int precision = 0; precision < 12; ++precision) {
            char expected[512];
            std::snprintf(expected, sizeof expected, "%.*f %.*e %.*g", precision, value, precision,
                value, precision, value);
            EXPECT_EQ(
                printed("%.*f %.*e %.*g", precision, value, precision, value, precision, value),
                expected);
        }
}

TEST(SprintfTest, ASmallBufferIsCutAndTheWholeLengthAnswered)
{
    char small[4] = "xxx";
    EXPECT_EQ(orv_sprintf(small, sizeof small, "%d", 123456), 6);
    EXPECT_STREQ(small, "123");
    EXPECT_EQ(orv_sprintf(nullptr, 0, "%d", 123456), 6);
    EXPECT_EQ(orv_sprintf(small, 0, "%d", 9), 1);
    EXPECT_STREQ(small, "123");
}

TEST(SprintfTest, WhatIsNotKnownIsRefused)
{
    char buffer[16] = "before";
    EXPECT_EQ(orv_sprintf(buffer, sizeof buffer, nullptr), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(orv_sprintf(buffer, sizeof buffer, "%n", nullptr), -1);
    EXPECT_EQ(orv_sprintf(buffer, sizeof buffer, "100%"), -1);
}

} // namespace
