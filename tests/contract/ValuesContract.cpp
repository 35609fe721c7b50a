// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Texts, values, numbers and settings: one implementation a host library, so not by case.
#include "tests/contract/Contract.h"

#include "host/base/Dates.h"
#include "host/base/IniFile.h"
#include "host/base/Numbers.h"
#include "host/base/PolyValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using orv::CPolyValue;
using orv::String;

TEST(ValuesContract, TextsAreBytesWithALength)
{
    const String accented("S\xC3\xAC");
    const char withNul[] = "xa\0b";
    const String kept(withNul, 1, 3);

    EXPECT_EQ(accented.Length(), 3);
    EXPECT_EQ(kept.Length(), 3);
    EXPECT_EQ(kept.ReadChar(1), '\0');
    EXPECT_EQ(String("a\0b").Length(), 1);
    EXPECT_EQ(String(static_cast<const char*>(nullptr)).Length(), 0);
    EXPECT_NE(kept.Compare("a"), 0);
}

TEST(ValuesContract, BadPositionsAreClampedOrNothing)
{
    const String text("abcb");

    EXPECT_EQ(text.ReadChar(4), '\0');
    EXPECT_EQ(text.ReadChar(-1), '\0');
    EXPECT_EQ(text.Substring(9), String());
    EXPECT_EQ(text.Substring(-2), text);
    EXPECT_EQ(text.Substring(1, 99), String("bcb"));
    EXPECT_EQ(text.Substring(1, 2), String("bc"));
    EXPECT_EQ(text.IndexOf('b', 2), 3);
    EXPECT_EQ(text.IndexOf('x', 0), -1);
    EXPECT_EQ(text.IndexOf('a', 99), -1);
    EXPECT_EQ(text.LastIndexOf('b', 2147483647), 3);
    EXPECT_EQ(text.LastIndexOf('b', 2), 1);
    EXPECT_EQ(text.LastIndexOf('c', 1), -1);
}

TEST(ValuesContract, TextsAreJoinedAndCompared)
{
    String text = "a" + String("b") + "c" + 'd';
    text += 'e';

    EXPECT_EQ(text, String("abcde"));
    EXPECT_EQ(String("a").Concat(String("b")), String("ab"));
    EXPECT_EQ(String("Strade").CompareIgnoreCase("STRADE"), 0);
    EXPECT_NE(String("Strade").Compare("STRADE"), 0);
    EXPECT_NE(String("\xC3\xA8").CompareIgnoreCase("\xC3\x88"), 0) << "only ASCII is folded";
}

TEST(ValuesContract, NumbersAsTextHaveFixedDigitsAndAPoint)
{
    EXPECT_EQ(String::ValueOf(-12), String("-12"));
    EXPECT_EQ(String::ValueOf(2.5, 0u), String("2"));
    EXPECT_EQ(String::ValueOf(0.25, 1u), String("0.2"));
    EXPECT_EQ(String::ValueOf(1.005, 2u), String("1.00"));
    EXPECT_EQ(String::ValueOf(1234.5, 3u), String("1234.500"));
    EXPECT_EQ(String::ValueOf(std::nan(""), 2u), String());
    EXPECT_EQ(String::ValueOf(std::numeric_limits<double>::infinity(), 2u), String());
    EXPECT_EQ(StringDaDouble(1.7e200, 0, 2), "");
    EXPECT_EQ(StringDaDouble(3.0, 0, 2), "3.00");
}

TEST(ValuesContract, TextsAreReadAsNumbersWithoutTheLocale)
{
    EXPECT_EQ(DoubleDaString(" -1.5e2 "), -150.0);
    EXPECT_EQ(DoubleDaString("1,5"), 1.5);
    for (const char* text : { "", "abc", "1.5 m", "1,000.5", "inf", "nan", "0x10" })
        EXPECT_GE(DoubleDaString(text), 8.5e199) << text;
    EXPECT_EQ(orv_atof("1.5abc"), 1.5);
    EXPECT_EQ(orv_atof("nan"), 0.0);
    EXPECT_EQ(orv_atof("x"), 0.0);
    EXPECT_EQ(orv_atoi("  -7x"), -7);
    EXPECT_EQ(orv_atoi("99999999999"), 2147483647);
    EXPECT_EQ(orv_atoi("-99999999999"), -2147483647 - 1);
    EXPECT_EQ(LongRound(2.5), 3);
    EXPECT_EQ(LongRound(-2.5), -3);
    EXPECT_TRUE(UgualeA(1e9, 1e9 + 0.5));
    EXPECT_FALSE(UgualeA(1.0, 1.0 + 1e-8));
}

TEST(ValuesContract, ValuesTellTheirKind)
{
    CPolyValue date;
    date.SetDateValue(0);
    CPolyValue array;
    array.CreateArray(2, 4);

    EXPECT_EQ(CPolyValue().GetType(), 0);
    EXPECT_EQ(CPolyValue(true).GetType(), 1);
    EXPECT_EQ(CPolyValue(1).GetType(), 2);
    EXPECT_EQ(CPolyValue(1.0).GetType(), 3);
    EXPECT_EQ(CPolyValue(String("x")).GetType(), 4);
    EXPECT_EQ(date.GetType(), 7);
    EXPECT_EQ(array.GetType(), 8);
    EXPECT_TRUE(CPolyValue().IsEmpty());
    EXPECT_FALSE(CPolyValue(String()).IsEmpty()) << "an empty text is a value of its own";
    date.SetToEmpty();
    EXPECT_TRUE(date.IsEmpty());
}

TEST(ValuesContract, ValuesReadAsOtherKindsAreConvertedOrNothing)
{
    EXPECT_EQ(CPolyValue(7).GetDoubleValue(), 7.0);
    EXPECT_EQ(CPolyValue(-2.9).GetInt32Value(), -2);
    EXPECT_EQ(CPolyValue(1e20).GetInt32Value(), 2147483647);
    EXPECT_EQ(CPolyValue().GetInt32Value(), 0);
    EXPECT_EQ(CPolyValue().GetDoubleValue(), 0.0);
    EXPECT_FALSE(CPolyValue(String("true")).GetBoolValue());
    EXPECT_EQ(CPolyValue(5).GetDateValue(), 0);
}

TEST(ValuesContract, ValuesAsText)
{
    CPolyValue date;
    std::int64_t midnight = 0;
    ASSERT_TRUE(orv::ParseDateText("5/3/2016", midnight));
    date.SetDateValue(midnight);

    EXPECT_EQ(CPolyValue().GetStringValue(), String());
    EXPECT_EQ(CPolyValue(true).GetStringValue(), String("S\xC3\xAC"));
    EXPECT_EQ(CPolyValue(false).GetStringValue(), String("No"));
    EXPECT_EQ(CPolyValue(-5).GetStringValue(), String("-5"));
    EXPECT_EQ(CPolyValue(0.1).GetStringValue(), String("0.1"));
    EXPECT_EQ(CPolyValue(1e20).GetStringValue(), String("1e+20"));
    EXPECT_EQ(CPolyValue(-0.0).GetStringValue(), String("-0"));
    EXPECT_EQ(date.GetStringValue(), String("05/03/2016"));
}

TEST(ValuesContract, ValuesDifferByKindExceptNumbers)
{
    CPolyValue date;
    date.SetDateValue(1);

    EXPECT_FALSE(CPolyValue() != CPolyValue());
    EXPECT_FALSE(CPolyValue(1) != CPolyValue(1.0));
    EXPECT_TRUE(CPolyValue(1) != CPolyValue(true));
    EXPECT_TRUE(CPolyValue(1) != date);
    EXPECT_TRUE(CPolyValue(String()) != CPolyValue());
    EXPECT_TRUE(CPolyValue(String("a")) != CPolyValue(String("A")));
}

TEST(ValuesContract, ArraysOfTexts)
{
    CPolyValue array;
    array.CreateArray(2, 4);
    array.SetStringValue(0, "a");
    array.SetStringValue(1, "b");
    array.SetStringValue(2, "outside");
    const CPolyValue copy(array);

    EXPECT_EQ(copy.GetNoArrayElements(), 2u);
    EXPECT_EQ(copy.GetStringValue(1u), String("b"));
    EXPECT_EQ(copy.GetStringValue(2u), String());
    EXPECT_EQ(CPolyValue(1).GetNoArrayElements(), 0u);
}

TEST(ValuesContract, DaysBeginAtLocalMidnight)
{
    for (const char* text : { "27/03/2016", "30/10/2016", "01/01/1950", "31/12/1969" }) {
        std::int64_t midnight = 0;
        std::int64_t again = 0;
        ASSERT_TRUE(orv::ParseDateText(text, midnight));
        for (const int hours : { 0, 1, 12, 22 }) {
            ASSERT_TRUE(orv::LocalMidnight(midnight + hours * 3600, again));
            EXPECT_EQ(again, midnight) << text << " + " << hours << " h";
        }
        EXPECT_EQ(orv::DateText(midnight), text);
    }
    std::int64_t nothing = 0;
    EXPECT_FALSE(orv::ParseDateText("31/02/2020", nothing));
    EXPECT_FALSE(orv::ParseDateText("1/1/20", nothing));
}

TEST(ValuesContract, SettingsAreKeptRaw)
{
    const auto path = contract::temporaryPath("contract.ini");
    std::filesystem::remove(path);
    const String file(path.c_str());
    {
        CIniFile missing(file);
        EXPECT_EQ(missing.GetLong("DatiDlgGIS", "DlgCompileTableWidth", 519), 519);
        EXPECT_EQ(missing.GetString("ExportGis", "FilePath", "C:\\"), String("C:\\"));
        EXPECT_TRUE(missing.WriteString("ExportGis", "FilePath", "C:\\nuova cartella\\t"));
        EXPECT_TRUE(missing.WriteLong("DatiDlgGIS", "DlgCompileTableWidth", -7));
    }
    CIniFile again(file);
    EXPECT_EQ(again.GetString("ExportGis", "FilePath", ""), String("C:\\nuova cartella\\t"));
    EXPECT_EQ(again.GetLong("DatiDlgGIS", "DlgCompileTableWidth", 0), -7);
    EXPECT_EQ(again.GetLong("ExportGis", "FilePath", 3), 3) << "unreadable numbers";
    std::filesystem::remove(path);
}

} // namespace
