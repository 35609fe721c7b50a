// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/CellText.h"
#include "embedded/store/Names.h"
#include "tests/support/Describe.h"
#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace embedded::store;

TEST(CellTextTest, DaysReadBack)
{
    for (const int day : { -719162, -1, 0, 1, 11016, 16860, 2932896 }) {
        const auto text = isoDay(day);
        std::int32_t again = 1234567;
        bool hasTime = true;
        EXPECT_TRUE(parseIsoDay({ text.data(), text.size() }, again, hasTime));
        EXPECT_EQ(again, day);
        EXPECT_FALSE(hasTime);
    }
    EXPECT_EQ(std::string(isoDay(0).data(), 10), "1970-01-01");
}

TEST(CellTextTest, OnlyRealDaysAreDays)
{
    std::int32_t day = 0;
    bool hasTime = false;
    for (const char* text : { "", "2020", "2020-02-30", "2020-13-01", "20-01-01", "2020-1-1",
             "-020-01-01", "2020-01-01x", "01/01/2020" })
        EXPECT_FALSE(parseIsoDay(text, day, hasTime)) << text;
    EXPECT_TRUE(parseIsoDay("2020-02-29T00:00:00.000Z", day, hasTime));
    EXPECT_FALSE(hasTime);
    EXPECT_TRUE(parseIsoDay("2020-02-29 23:59:59", day, hasTime));
    EXPECT_TRUE(hasTime);
}

TEST(CellTextTest, ValuesOfEveryKindReadBack)
{
    orv::CPolyValue array, date;
    array.CreateArray(3, orv::PolyString);
    array.SetStringValue(0, "a:b");
    array.SetStringValue(2, orv::String(std::string_view("\0\n", 2)));
    date.SetDateValue(orv::LocalMidnightOfDay(17000) + 3600);
    const double infinity = std::numeric_limits<double>::infinity();
    for (const orv::CPolyValue& value : { orv::CPolyValue(), orv::CPolyValue(true),
             orv::CPolyValue(false), orv::CPolyValue(-2147483647 - 1), orv::CPolyValue(0.1),
             orv::CPolyValue(1.7e200), orv::CPolyValue(-infinity), orv::CPolyValue(""),
             orv::CPolyValue("testo: 5"), array, date }) {
        const orv::CPolyValue again = decodedValue(encodedValue(value));
        EXPECT_EQ(again.GetType(), value.GetType());
        EXPECT_EQ(support::describe(again), support::describe(value));
    }
    EXPECT_TRUE(
        std::isnan(decodedValue(encodedValue(orv::CPolyValue(std::nan("")))).GetDoubleValue()));
}

TEST(CellTextTest, ADateIsItsDayInAnotherZoneToo)
{
    std::string text;
    {
        const support::TimeZoneScope rome("Europe/Rome");
        orv::CPolyValue date;
        date.SetDateValue(orv::LocalMidnightOfDay(16887));
        text = encodedValue(date);
    }
    const support::TimeZoneScope newYork("America/New_York");
    EXPECT_EQ(decodedValue(text).GetDateValue(), orv::LocalMidnightOfDay(16887));
}

TEST(CellTextTest, OtherTextsAreNoValue)
{
    for (const char* text : { "x", "i", "ifive", "d", "D2020", "D2020-01-01", "M", "a",
             "a9999999:", "a1:5:abc", "a-1:" })
        EXPECT_TRUE(decodedValue(text).IsEmpty()) << text;
}

TEST(NamesTest, NamesAreFreeWhateverTheirCase)
{
    CNameSet names;
    EXPECT_EQ(names.takeFree("Strade"), "Strade");
    EXPECT_EQ(names.takeFree("STRADE"), "STRADE_2");
    EXPECT_EQ(names.takeFree("strade"), "strade_3");
    EXPECT_EQ(names.takeFree("È"), "È");
    EXPECT_EQ(names.takeFree("è"), "è") << "only ASCII letters have a case here";
    names.release("STRADE");
    EXPECT_EQ(names.takeFree("strade"), "strade");
}

TEST(NamesTest, NamesOfTheSystemAndUnreadableBytesAreAvoided)
{
    EXPECT_EQ(safeTableName("Strade"), "Strade");
    EXPECT_EQ(safeTableName("GPKG_contents"), "t_GPKG_contents");
    EXPECT_EQ(safeTableName("sqlite_master"), "t_sqlite_master");
    EXPECT_EQ(safeTableName("rtree_x"), "t_rtree_x");
    EXPECT_EQ(safeTableName("tematica_x"), "t_tematica_x");
    EXPECT_EQ(safeTableName(""), "senza_nome");
    EXPECT_EQ(safeTableName("Città"), "Città");
    EXPECT_EQ(safeTableName("a\xFF\nb"), "a__b");
    EXPECT_EQ(safeTableName(std::string_view("a\0b", 3)), "a_b");
    EXPECT_EQ(safeColumnName("\xE2\x82"), "__");
}
