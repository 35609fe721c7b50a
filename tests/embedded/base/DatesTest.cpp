// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Dates.h"

#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <ctime>
#include <thread>
#include <vector>

namespace {

using support::TimeZoneScope;

constexpr std::int64_t Day = 86400;

std::int64_t midnightOf(std::int64_t moment)
{
    std::int64_t midnight = 0;
    EXPECT_TRUE(orv::LocalMidnight(moment, midnight)) << moment;
    return midnight;
}

std::int64_t midnightOf(int day, int month, int year)
{
    std::int32_t number = 0;
    EXPECT_TRUE(orv::DayNumber({ day, month, year }, number));
    return orv::LocalMidnightOfDay(number);
}

/// The C library's answer, in the way the day is defined by.
std::int64_t midnightByLibrary(std::int64_t moment)
{
    const std::time_t seconds = moment;
    std::tm local {};
    localtime_r(&seconds, &local);
    local.tm_hour = local.tm_min = local.tm_sec = 0;
    local.tm_isdst = -1;
    return std::mktime(&local);
}

TEST(DatesTest, ADayWhoseMidnightComesTwiceBeginsWithTheFirst)
{
    const TimeZoneScope zone("Europe/Rome");

    midnightOf(
        1, 8, 1970); // a summer and a winter day before: the C library leans on its last answer
    EXPECT_EQ(midnightOf(27, 9, 1970), 269 * Day - 2 * 3600);
    midnightOf(1, 12, 1972);
    EXPECT_EQ(midnightOf(1, 10, 1972), 1004 * Day - 2 * 3600);
}

TEST(DatesTest, DaysAreCountedFrom1970)
{
    const struct {
        orv::CalendarDay day;
        std::int32_t number;
    } cases[] = { { { 1, 1, 1970 }, 0 }, { { 31, 12, 1969 }, -1 }, { { 29, 2, 2016 }, 16860 },
        { { 1, 1, 1 }, -719162 }, { { 31, 12, 9999 }, 2932896 }, { { 29, 2, 2000 }, 11016 },
        { { 1, 3, 1900 }, -25508 } };
    for (const auto& [day, number] : cases) {
        std::int32_t counted = INT_MAX;
        EXPECT_TRUE(orv::DayNumber(day, counted));
        EXPECT_EQ(counted, number);
        EXPECT_EQ(orv::DayFromNumber(number), day);
    }
}

TEST(DatesTest, OnlyRealDaysHaveANumber)
{
    std::int32_t number = 77;
    for (const orv::CalendarDay& day :
        { orv::CalendarDay { 31, 2, 2016 }, { 29, 2, 2015 }, { 29, 2, 1900 }, { 0, 1, 2016 },
            { -1, 1, 2016 }, { 32, 1, 2016 }, { 257, 1, 2016 }, { 1, 0, 2016 }, { 1, 13, 2016 },
            { 1, 257, 2016 }, { 1, -1, 2016 }, { 1, 1, 0 }, { 1, 1, 10000 }, { 1, 1, -5 },
            { INT_MAX, INT_MAX, INT_MAX }, { INT_MIN, INT_MIN, INT_MIN } })
        EXPECT_FALSE(orv::DayNumber(day, number)) << day.day << '/' << day.month << '/' << day.year;
    EXPECT_EQ(number, 77);
}

TEST(DatesTest, EveryDayOfTheCalendarReadsBack)
{
    orv::CalendarDay previous = orv::DayFromNumber(-719163);
    EXPECT_EQ(previous.year, 0);
    for (std::int32_t number = -719162; number <= 2932896; ++number) {
        const orv::CalendarDay day = orv::DayFromNumber(number);
        std::int32_t counted = 0;
        ASSERT_TRUE(orv::DayNumber(day, counted));
        ASSERT_EQ(counted, number);
        ASSERT_NE(day, previous);
        previous = day;
    }
}

TEST(DatesTest, AfternoonsOfDaysOnWhichTheClockChangesBelongToTheirDay)
{
    const TimeZoneScope rome("Europe/Rome");

    // 27/03/2016 15:30 CEST and 30/10/2016 15:00 CET; both days begin in the other half of the
    // year.
    EXPECT_EQ(midnightOf(1459085400), 1459033200);
    EXPECT_EQ(midnightOf(1477836000), 1477778400);
    EXPECT_EQ(midnightOf(27, 3, 2016), 1459033200);
    EXPECT_EQ(midnightOf(30, 10, 2016), 1477778400);
    EXPECT_EQ(orv::DateText(1459085400), "27/03/2016");
    EXPECT_EQ(orv::DateText(1477836000), "30/10/2016");
}

TEST(DatesTest, FirstAndLastSecondOfADayBelongToIt)
{
    const TimeZoneScope rome("Europe/Rome");
    for (const std::int64_t midnight : { 1457132400, 1459033200, 1477778400, 1451602800 }) {
        std::int32_t before = 0;
        std::int32_t first = 0;
        EXPECT_TRUE(orv::LocalDayNumber(midnight - 1, before));
        EXPECT_TRUE(orv::LocalDayNumber(midnight, first));
        EXPECT_EQ(before + 1, first);
        EXPECT_EQ(midnightOf(midnight), midnight);
        EXPECT_EQ(midnightOf(midnight + 1), midnight);
    }
}

TEST(DatesTest, DaysBefore1970)
{
    const TimeZoneScope rome("Europe/Rome");

    EXPECT_EQ(orv::DateText(-1), "01/01/1970"); // already 00:59:59 in Rome
    EXPECT_EQ(midnightOf(0), -3600);
    EXPECT_EQ(orv::DateText(-3601), "31/12/1969");
    EXPECT_EQ(midnightOf(2, 6, 1946), -744256800);
    EXPECT_EQ(orv::DateText(midnightOf(2, 6, 1946)), "02/06/1946");
    EXPECT_EQ(orv::DateText(midnightOf(4, 10, 1582)), "04/10/1582");
}

TEST(DatesTest, ADayWhoseMidnightDoesNotExistBeginsWhereTheClockGoesOn)
{
    const TimeZoneScope saoPaulo("America/Sao_Paulo");

    // On 15/10/2017 the clock went from 00:00 to 01:00, at 03:00 UTC.
    constexpr std::int64_t Start = 1508036400;
    EXPECT_EQ(midnightOf(15, 10, 2017), Start);
    EXPECT_EQ(midnightOf(Start + 5 * 3600), Start);
    EXPECT_EQ(midnightOf(Start), Start);
    EXPECT_EQ(midnightOf(Start - 1), Start - Day);
    EXPECT_EQ(orv::DateText(Start), "15/10/2017");
    EXPECT_EQ(orv::DateText(midnightOf(15, 10, 2017)), "15/10/2017");
}

TEST(DatesTest, ADayThatAZoneLeftOutGivesTheNextOne)
{
    const TimeZoneScope apia("Pacific/Apia");

    EXPECT_EQ(orv::DateText(midnightOf(29, 12, 2011)), "29/12/2011");
    EXPECT_EQ(orv::DateText(midnightOf(31, 12, 2011)), "31/12/2011");
    EXPECT_EQ(midnightOf(30, 12, 2011), midnightOf(31, 12, 2011));
}

class DatesInZonesTest : public testing::TestWithParam<const char*> { };

TEST_P(DatesInZonesTest, AnyMomentOfADayGivesTheSameMidnightWhichIsOfThatDay)
{
    const TimeZoneScope zone(GetParam());
    // Every 31 hours, so that all hours of the day are met, over the years of changing rules.
    for (std::int64_t moment = -1000000000; moment < 2000000000; moment += 31 * 3600 + 11) {
        std::int32_t day = 0;
        std::int32_t dayOfMidnight = 0;
        ASSERT_TRUE(orv::LocalDayNumber(moment, day));
        const std::int64_t midnight = orv::LocalMidnightOfDay(day);
        ASSERT_TRUE(orv::LocalDayNumber(midnight, dayOfMidnight));
        ASSERT_EQ(dayOfMidnight, day) << moment;
        const std::time_t seconds = moment;
        std::tm local {};
        localtime_r(&seconds, &local);
        ASSERT_EQ(orv::DayFromNumber(day),
            (orv::CalendarDay { local.tm_mday, local.tm_mon + 1, local.tm_year + 1900 }))
            << moment;
        const std::int64_t byLibrary = midnightByLibrary(moment);
        const std::time_t librarySeconds = byLibrary;
        localtime_r(&librarySeconds, &local);
        if (local.tm_mday == orv::DayFromNumber(day).day) { // else the library left the day
            ASSERT_EQ(midnight, byLibrary) << moment;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, DatesInZonesTest,
    testing::Values("UTC", "Europe/Rome", "America/New_York", "America/Sao_Paulo",
        "America/St_Johns", "Atlantic/Azores", "Asia/Kathmandu", "Australia/Lord_Howe",
        "Pacific/Apia", "Africa/Cairo", "Asia/Beirut", "America/Havana"));

TEST(DatesTest, MomentsOutsideTheCalendarHaveNoDay)
{
    const TimeZoneScope utc("UTC");
    constexpr std::int64_t First = -62135596800; // 01/01/0001
    constexpr std::int64_t AfterLast = 253402300800; // 01/01/10000

    EXPECT_EQ(orv::DateText(First), "01/01/1");
    EXPECT_EQ(orv::DateText(AfterLast - 1), "31/12/9999");
    for (const std::int64_t moment : { First - 1, AfterLast, std::int64_t(INT64_MAX),
             std::int64_t(INT64_MIN), AfterLast * 1000 }) {
        std::int32_t day = 77;
        std::int64_t midnight = 0;
        EXPECT_FALSE(orv::LocalDayNumber(moment, day)) << moment;
        EXPECT_EQ(day, 77);
        EXPECT_FALSE(orv::LocalMidnight(moment, midnight)) << moment;
        EXPECT_EQ(midnight, moment);
        EXPECT_EQ(orv::DateText(moment), "");
    }
}

TEST(DatesTest, TheCalendarsEndsDependOnTheZone)
{
    const TimeZoneScope rome("Europe/Rome");

    EXPECT_EQ(orv::DateText(253402300800 - 3601), "31/12/9999");
    EXPECT_EQ(orv::DateText(253402300800 - 3600), "");
    EXPECT_EQ(orv::DateText(midnightOf(1, 1, 1)), "01/01/1");
    EXPECT_EQ(orv::DateText(midnightOf(1, 1, 1) - 1), "");
}

TEST(DatesTest, DateTextsAreRead)
{
    const TimeZoneScope rome("Europe/Rome");
    for (const char* text : { "05/03/2016", "5/3/2016", "05/3/2016", "5/03/2016" }) {
        std::int64_t midnight = 0;
        EXPECT_TRUE(orv::ParseDateText(text, midnight)) << text;
        EXPECT_EQ(midnight, 1457132400) << text;
    }
    std::int64_t early = 0;
    EXPECT_TRUE(orv::ParseDateText("01/01/0001", early));
    EXPECT_EQ(orv::DateText(early), "01/01/1");
}

TEST(DatesTest, OtherTextsAreNoDates)
{
    std::int64_t midnight = 77;
    for (const char* text : { "", "/", "//", "///", "05/03", "05/03/16", "05/03/02016", "5/3/2016 ",
             " 5/3/2016", "5/3/2016x", "31/02/2016", "29/02/2015", "00/01/2016", "01/00/2016",
             "01/13/2016", "001/1/2016", "1/001/2016", "-1/3/2016", "+1/3/2016", "1/-3/2016",
             "1/3/-201", "1/3/+201", "1/3/0000", "05-03-2016", "2016/03/05", "5/3/2016/1",
             "a/b/cdef", "1//2016", "/1/2016", "5 /3/2016" })
        EXPECT_FALSE(orv::ParseDateText(text, midnight)) << text;
    EXPECT_EQ(midnight, 77);
}

TEST(DatesTest, ManyThreadsGetTheSameAnswers)
{
    const TimeZoneScope rome("Europe/Rome");
    constexpr std::int64_t Start = 1262300400; // 01/01/2010
    constexpr int Days = 5000;
    std::vector<std::int64_t> expected;
    for (int day = 0; day < Days; ++day)
        expected.push_back(midnightByLibrary(Start + day * Day + 43200));
    orv::ForgetTimeZone();

    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&, thread] {
            for (int count = 0; count < 4 * Days; ++count) {
                const int day = (count * (thread + 1)) % Days;
                std::int64_t midnight = 0;
                const bool isFound = orv::LocalMidnight(Start + day * Day + 43200, midnight);
                if (!isFound || midnight != expected[static_cast<std::size_t>(day)])
                    ++wrong;
            }
        });
    for (auto& thread : threads)
        thread.join();

    EXPECT_EQ(wrong, 0);
}

TEST(DatesTest, ANewTimeZoneIsAskedAnew)
{
    std::int64_t inRome = 0;
    {
        const TimeZoneScope rome("Europe/Rome");
        inRome = midnightOf(5, 3, 2016);
    }
    const TimeZoneScope newYork("America/New_York");

    EXPECT_EQ(midnightOf(5, 3, 2016) - inRome, 6 * 3600);
}

} // namespace
