// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/fields/FieldBounds.h"

#include "kit/texts/TextIds.h"

#include <gtest/gtest.h>

using tables::DecimalBounds;
using tables::IntegerBounds;
using tables::takeBounds;

namespace {

constexpr int No = orv::UnsetInteger;
constexpr double None = orv::UnsetDecimal;
using Messages = std::vector<int>;

struct IntegerCase {
    const char* what;
    IntegerBounds before;
    tables::BoundTexts texts;
    Messages messages;
    IntegerBounds after;
};

const IntegerCase IntegerCases[] = {
    { "all right", { No, No, No }, { "5", "1", "7" }, {}, { 5, 1, 7 } },
    { "bounds are inclusive", { No, No, No }, { "7", "1", "7" }, {}, { 7, 1, 7 } },
    { "empty clears", { 5, 1, 7 }, { "", "", "" }, {}, { No, No, No } },
    { "default above", { 2, No, No }, { "8", "1", "7" }, { texts::DefaultOutsideRange },
        { No, 1, 7 } },
    { "default below", { 2, No, No }, { "0", "1", "" }, { texts::DefaultOutsideRange },
        { No, 1, No } },
    { "range and default by what was typed", { 4, 0, 9 }, { "2", "3", "1" },
        { texts::RangeIncongruent, texts::DefaultOutsideRange }, { No, 0, 9 } },
    { "equal bounds are refused", { No, 0, 9 }, { "", "5", "5" }, { texts::RangeIncongruent },
        { No, 0, 9 } },
    { "wrong texts keep what was", { 4, 0, 9 }, { "abc", "+1", " 8" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "a sign, zeros, points", { 4, 0, 9 }, { "05", "5.0", "-0" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "beyond 32 bits", { 4, 0, 9 }, { "99999999999", "-2147483649", "2147483648" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "the smallest integer", { No, No, No }, { "", "-2147483648", "" }, {},
        { No, -2147483647 - 1, No } },
    { "the mark itself is no value", { 4, 0, 9 }, { "2147483647", "2147483647", "2147483647" }, {},
        { No, No, No } },
    { "one wrong bound, one that fits", { No, 0, 9 }, { "", "x", "5" }, { texts::MinimumInvalid },
        { No, 0, 5 } },
    { "one wrong bound, one that does not fit it", { No, 6, 9 }, { "", "x", "5" },
        { texts::MinimumInvalid }, { No, 6, 9 } },
    { "a default is not held against a bound that was kept", { No, 6, 9 }, { "3", "x", "" },
        { texts::MinimumInvalid }, { 3, 6, No } },
};

TEST(IntegerBoundsTest, AreTakenAsFarAsTheyAreRight)
{
    for (const IntegerCase& each : IntegerCases) {
        SCOPED_TRACE(each.what);
        IntegerBounds bounds = each.before;
        EXPECT_EQ(takeBounds(each.texts, bounds), each.messages);
        EXPECT_EQ(bounds.standard, each.after.standard);
        EXPECT_EQ(bounds.minimum, each.after.minimum);
        EXPECT_EQ(bounds.maximum, each.after.maximum);
    }
}

struct DecimalCase {
    const char* what;
    tables::BoundTexts texts;
    Messages messages;
    DecimalBounds after;
};

// Before: default 4, minimum 0, maximum 9.
const DecimalCase DecimalCases[] = {
    { "digits as written", { "1.50", "0.5", "2" }, {}, { 1.5, 0.5, 2 } },
    { "equal bounds are refused", { "", "5", "5" }, { texts::RangeIncongruent }, { None, 0, 9 } },
    { "a comma", { "1,5", "", "" }, { texts::DefaultInvalid }, { 4, None, None } },
    { "exponent, plus, no leading zero", { "1e3", "+1", ".5" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "minus zero prints as it is typed", { "-0", "", "" }, {}, { -0.0, None, None } },
    { "a point without digits", { "1.", "", "" }, { texts::DefaultInvalid }, { 4, None, None } },
    { "no number at all", { "%s", "<b>", "\xF0\x9F\x98\x80" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "not finite", { "inf", "nan", "1e999" },
        { texts::DefaultInvalid, texts::MinimumInvalid, texts::MaximumInvalid }, { 4, 0, 9 } },
    { "more digits than a number has", { "0.10000000000000000001", "", "" },
        { texts::DefaultInvalid }, { 4, None, None } },
};

TEST(DecimalBoundsTest, AreTakenAsFarAsTheyAreRight)
{
    for (const DecimalCase& each : DecimalCases) {
        SCOPED_TRACE(each.what);
        DecimalBounds bounds { 4, 0, 9 };
        EXPECT_EQ(takeBounds(each.texts, bounds), each.messages);
        EXPECT_EQ(bounds.standard, each.after.standard);
        EXPECT_EQ(bounds.minimum, each.after.minimum);
        EXPECT_EQ(bounds.maximum, each.after.maximum);
    }
}

TEST(DecimalBoundsTest, ATextOfTenThousandCharactersIsOnlyWrong)
{
    DecimalBounds bounds { 4, 0, 9 };
    const std::string digits(10'000, '7');
    EXPECT_EQ(takeBounds({ digits, "0." + digits, "" }, bounds),
        (Messages { texts::DefaultInvalid, texts::MinimumInvalid }));
    IntegerBounds integers { 4, 0, 9 };
    EXPECT_EQ(takeBounds({ digits, "", "" }, integers), (Messages { texts::DefaultInvalid }));
}

TEST(FieldDigitsTest, AreTenAtMost)
{
    int digits = -1;
    for (const auto& [text, expected, isTooMany] :
        { std::tuple { "", 0, false }, { "3", 3, false }, { "10", 10, false }, { "11", 10, true },
            { "25", 10, true }, { "99999999999999999999", 10, true }, { "007", 7, false } }) {
        EXPECT_EQ(tables::takeDigits(text, digits), isTooMany) << text;
        EXPECT_EQ(digits, expected) << text;
    }
}

TEST(BoundTextTest, NotSetShowsNothing)
{
    EXPECT_EQ(tables::boundText(No), orv::String());
    EXPECT_EQ(tables::boundText(-5), orv::String("-5"));
    EXPECT_EQ(tables::boundText(None, 2), orv::String());
    EXPECT_EQ(tables::boundText(1.5, 3), orv::String("1.500"));
}

} // namespace
