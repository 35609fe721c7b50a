// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/PolyValue.h"

#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <vector>

namespace {

using orv::CPolyValue;
using orv::String;

CPolyValue dateOf(std::int64_t seconds)
{
    CPolyValue value;
    value.SetDateValue(seconds);
    return value;
}

CPolyValue arrayOf(const std::vector<const char*>& texts)
{
    CPolyValue value;
    value.CreateArray(static_cast<unsigned>(texts.size()), orv::PolyString);
    for (unsigned index = 0; index < texts.size(); ++index)
        value.SetStringValue(index, texts[index]);
    return value;
}

TEST(PolyValueTest, TagsAreThoseOfTheHost)
{
    EXPECT_EQ(CPolyValue().GetType(), 0);
    EXPECT_EQ(CPolyValue(true).GetType(), 1);
    EXPECT_EQ(CPolyValue(7).GetType(), 2);
    EXPECT_EQ(CPolyValue(7.0).GetType(), 3);
    EXPECT_EQ(CPolyValue("7").GetType(), 4);
    EXPECT_EQ(CPolyValue(String("7")).GetType(), 4);
    EXPECT_EQ(dateOf(7).GetType(), 7);
    EXPECT_EQ(arrayOf({ "7" }).GetType(), 8);
    EXPECT_TRUE(CPolyValue().IsEmpty());
    EXPECT_FALSE(CPolyValue("").IsEmpty());
}

TEST(PolyValueTest, AssignmentReplacesKindAndValue)
{
    CPolyValue value = arrayOf({ "a", "b" });

    value = 1.5;
    EXPECT_EQ(value, CPolyValue(1.5));
    EXPECT_EQ(value.GetNoArrayElements(), 0U);
    value = "text";
    EXPECT_EQ(value, CPolyValue("text"));
    value = 3;
    EXPECT_EQ(value, CPolyValue(3));
    EXPECT_EQ(value.TextView(), "");
    value = true;
    EXPECT_EQ(value, CPolyValue(true));
    value = String("x");
    EXPECT_EQ(value, CPolyValue("x"));
    value = dateOf(5);
    EXPECT_EQ(value, dateOf(5));
    value.SetToEmpty();
    EXPECT_EQ(value, CPolyValue());
    EXPECT_EQ(value.GetStringValue().View(), "");
}

TEST(PolyValueTest, CopiesKeepTheirValueWhenTheSourceChanges)
{
    for (const CPolyValue& original : { CPolyValue(), CPolyValue(true), CPolyValue(1),
             CPolyValue(1.5), CPolyValue("a text"), dateOf(86400), arrayOf({ "a", "b" }) }) {
        CPolyValue source(original);
        const CPolyValue copy(source);
        CPolyValue assigned("something else");
        assigned = source;
        source = "changed";

        EXPECT_EQ(copy, original) << original.GetType();
        EXPECT_EQ(assigned, original) << original.GetType();
    }
}

TEST(PolyValueTest, AMovedValueLeavesNoValueBehind)
{
    CPolyValue source = arrayOf({ "a", "b" });

    CPolyValue target(std::move(source));

    EXPECT_EQ(target, arrayOf({ "a", "b" }));
    EXPECT_TRUE(source.IsEmpty()); // NOLINT(bugprone-use-after-move): that is the question
    source = std::move(target);
    EXPECT_EQ(source, arrayOf({ "a", "b" }));
    EXPECT_TRUE(target.IsEmpty()); // NOLINT(bugprone-use-after-move)
}

TEST(PolyValueTest, NumbersAreReadAcrossAndOtherKindsAreNot)
{
    constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

    EXPECT_EQ(CPolyValue(7).GetDoubleValue(), 7.0);
    EXPECT_EQ(CPolyValue(7.9).GetInt32Value(), 7);
    EXPECT_EQ(CPolyValue(-7.9).GetInt32Value(), -7);
    EXPECT_EQ(CPolyValue(1e10).GetInt32Value(), INT_MAX);
    EXPECT_EQ(CPolyValue(-1e10).GetInt32Value(), INT_MIN);
    EXPECT_EQ(CPolyValue(NaN).GetInt32Value(), 0);
    for (const CPolyValue& other :
        { CPolyValue(), CPolyValue("7"), CPolyValue(true), dateOf(7), arrayOf({ "7" }) }) {
        EXPECT_EQ(other.GetInt32Value(), 0) << other.GetType();
        EXPECT_EQ(other.GetDoubleValue(), 0.0) << other.GetType();
    }
    for (const CPolyValue& other :
        { CPolyValue(), CPolyValue("1"), CPolyValue(1), CPolyValue(1.0) })
        EXPECT_FALSE(other.GetBoolValue()) << other.GetType();
    EXPECT_TRUE(CPolyValue(true).GetBoolValue());
    EXPECT_EQ(CPolyValue(7).GetDateValue(), 0);
    EXPECT_EQ(dateOf(-5000000000).GetDateValue(), -5000000000);
}

TEST(PolyValueTest, ValuesDifferByKindExceptNumbers)
{
    const std::vector<CPolyValue> different { CPolyValue(), CPolyValue(false), CPolyValue(true),
        CPolyValue(1), CPolyValue(2.5), CPolyValue("1"), CPolyValue("Sì"), dateOf(1), dateOf(2),
        arrayOf({}), arrayOf({ "a" }), arrayOf({ "b" }) };
    for (std::size_t left = 0; left < different.size(); ++left)
        for (std::size_t right = 0; right < different.size(); ++right)
            EXPECT_EQ(different[left] != different[right], left != right) << left << ' ' << right;

    EXPECT_FALSE(CPolyValue(1) != CPolyValue(1.0));
    EXPECT_FALSE(CPolyValue(1.0) != CPolyValue(1));
    EXPECT_TRUE(CPolyValue(1) != CPolyValue(1.5));
}

TEST(PolyValueTest, TheValueAsText)
{
    const support::TimeZoneScope zone("Europe/Rome");

    EXPECT_EQ(CPolyValue().GetStringValue().View(), "");
    EXPECT_EQ(CPolyValue(true).GetStringValue().View(), "S\xC3\xAC");
    EXPECT_EQ(CPolyValue(false).GetStringValue().View(), "No");
    EXPECT_EQ(CPolyValue(-12).GetStringValue().View(), "-12");
    EXPECT_EQ(CPolyValue(3.5).GetStringValue().View(), "3.5");
    EXPECT_EQ(CPolyValue("Via Roma").GetStringValue().View(), "Via Roma");
    EXPECT_EQ(dateOf(1457132400).GetStringValue().View(), "05/03/2016");
}

TEST(PolyValueTest, ArraysHoldTextsAndIgnoreIndexesOutside)
{
    CPolyValue list;
    list.CreateArray(2, orv::PolyString);
    EXPECT_EQ(list.GetNoArrayElements(), 2U);
    EXPECT_EQ(list.GetStringValue(1).View(), "");

    list.SetStringValue(0, "Asfalto");
    list.SetStringValue(2, "outside");

    EXPECT_EQ(list.GetStringValue(0).View(), "Asfalto");
    EXPECT_EQ(list.GetStringValue(2).View(), "");
    EXPECT_EQ(CPolyValue("text").GetNoArrayElements(), 0U);
    EXPECT_EQ(CPolyValue("text").GetStringValue(0).View(), "");
}

} // namespace
