// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/String.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using orv::String;
using namespace std::string_view_literals;

TEST(StringTest, EmptyAndNullTextsHaveNoBytes)
{
    EXPECT_EQ(String().Length(), 0);
    EXPECT_EQ(String(static_cast<const char*>(nullptr)).Length(), 0);
    EXPECT_EQ(String(nullptr, 0, 5).Length(), 0);

    String assigned("x");
    assigned = static_cast<const char*>(nullptr);
    EXPECT_EQ(assigned.Length(), 0);
    EXPECT_STREQ(assigned.Data(), "");
}

TEST(StringTest, LengthsCountBytes)
{
    EXPECT_EQ(String("Sì").Length(), 3);
    EXPECT_EQ(String("Sì").View(), "S\xC3\xAC");
}

TEST(StringTest, AStartWithACountKeepsNulBytesAndPlainTextsEndAtThem)
{
    EXPECT_EQ(String("ab\0cd", 0, 5).View(), "ab\0cd"sv);
    EXPECT_EQ(String("abcdef", 2, 3).View(), "cde");
    EXPECT_EQ(String("ab\0cd").View(), "ab");
    EXPECT_EQ(String("abc", 0, -1).View(), "");
}

TEST(StringTest, ReadCharGivesNulOutside)
{
    const String text("abc");

    EXPECT_EQ(text.ReadChar(0), 'a');
    EXPECT_EQ(text.ReadChar(2), 'c');
    EXPECT_EQ(text.ReadChar(3), '\0');
    EXPECT_EQ(text.ReadChar(-1), '\0');
    EXPECT_EQ(text.ReadChar(INT_MAX), '\0');
}

TEST(StringTest, IndexOfSearchesForwardsAndClampsItsStart)
{
    const String path("a/b/c");

    EXPECT_EQ(path.IndexOf('/', 0), 1);
    EXPECT_EQ(path.IndexOf('/', 1), 1);
    EXPECT_EQ(path.IndexOf('/', 2), 3);
    EXPECT_EQ(path.IndexOf('/', 4), -1);
    EXPECT_EQ(path.IndexOf('/', -7), 1);
    EXPECT_EQ(path.IndexOf('/', INT_MAX), -1);
    EXPECT_EQ(path.IndexOf('x', 0), -1);
}

TEST(StringTest, LastIndexOfSearchesBackwardsFromItsStart)
{
    const String path("a/b/c");

    EXPECT_EQ(path.LastIndexOf('/', INT_MAX), 3);
    EXPECT_EQ(path.LastIndexOf('/', 3), 3);
    EXPECT_EQ(path.LastIndexOf('/', 2), 1);
    EXPECT_EQ(path.LastIndexOf('/', 0), -1);
    EXPECT_EQ(path.LastIndexOf('/', -1), -1);
    EXPECT_EQ(String().LastIndexOf('/', INT_MAX), -1);
}

TEST(StringTest, SubstringsAreClamped)
{
    const String text("abcdef");

    EXPECT_EQ(text.Substring(2).View(), "cdef");
    EXPECT_EQ(text.Substring(6).View(), "");
    EXPECT_EQ(text.Substring(99).View(), "");
    EXPECT_EQ(text.Substring(-3).View(), "abcdef");
    EXPECT_EQ(text.Substring(2, 2).View(), "cd");
    EXPECT_EQ(text.Substring(4, 99).View(), "ef");
    EXPECT_EQ(text.Substring(4, INT_MAX).View(), "ef");
    EXPECT_EQ(text.Substring(1, 0).View(), "");
    EXPECT_EQ(text.Substring(1, -1).View(), "");
}

TEST(StringTest, CompareIsByteWiseOverTheWholeLength)
{
    EXPECT_EQ(String("abc").Compare("abc"), 0);
    EXPECT_EQ(String("abc").Compare("abd"), -1);
    EXPECT_EQ(String("abd").Compare("abc"), 1);
    EXPECT_EQ(String("ab").Compare("abc"), -1);
    EXPECT_EQ(String("Abc").Compare("abc"), -1);
    EXPECT_EQ(String("\xC3\xAC").Compare("z"), 1);
    EXPECT_EQ(String("a\0b"sv).Compare(String("a\0c"sv)), -1);
    EXPECT_EQ(String("a\0b"sv).Compare("a"), 1);
    EXPECT_EQ(String("a").Compare(static_cast<const char*>(nullptr)), 1);
    EXPECT_EQ(String().Compare(static_cast<const char*>(nullptr)), 0);
}

TEST(StringTest, CompareIgnoreCaseFoldsAsciiLettersOnly)
{
    EXPECT_EQ(String("STRADE").CompareIgnoreCase("strade"), 0);
    EXPECT_EQ(String("a").CompareIgnoreCase("B"), -1);
    EXPECT_EQ(String("B").CompareIgnoreCase(String("a")), 1);
    EXPECT_NE(String("È").CompareIgnoreCase("è"), 0);
    EXPECT_NE(String("@").CompareIgnoreCase("`"), 0);
    EXPECT_NE(String("[").CompareIgnoreCase("{"), 0);
    EXPECT_EQ(String("x").CompareIgnoreCase(static_cast<const char*>(nullptr)), 1);
}

TEST(StringTest, TextsAreJoined)
{
    String grown("ab");
    grown += 'c';

    EXPECT_EQ(grown.View(), "abc");
    EXPECT_EQ(String("a").Concat(String("b")).View(), "ab");
    EXPECT_EQ(("a" + String("b")).View(), "ab");
    EXPECT_EQ((String("a") + "b").View(), "ab");
    EXPECT_EQ((String("a") + 'b').View(), "ab");
    EXPECT_EQ((String("a\0"sv) + String("b")).View(), "a\0b"sv);
    EXPECT_EQ((String("a") + static_cast<const char*>(nullptr)).View(), "a");
}

TEST(StringTest, ATextMayBeAssignedAPartOfItself)
{
    String text("a longer text than any that lies inside the object");
    text = text.Data() + 2;

    EXPECT_EQ(text.View(), "longer text than any that lies inside the object");
}

TEST(StringTest, ValueOfWritesWholeNumbers)
{
    EXPECT_EQ(String::ValueOf(0).View(), "0");
    EXPECT_EQ(String::ValueOf(INT_MAX).View(), "2147483647");
    EXPECT_EQ(String::ValueOf(INT_MIN).View(), "-2147483648");
}

TEST(StringTest, ValueOfClampsTheDecimals)
{
    EXPECT_EQ(String::ValueOf(1.5, 0U).View(), "2");
    EXPECT_EQ(String::ValueOf(1.5, 60U).Length(), 62);
    EXPECT_EQ(String::ValueOf(1.5, 61U).Length(), 62);
    EXPECT_EQ(String::ValueOf(1.5, UINT_MAX).Length(), 62);
}

} // namespace
