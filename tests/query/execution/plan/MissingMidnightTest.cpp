// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Days that begin at one o'clock, since the clock goes forward at midnight: a date is still that
// day, whichever way a query goes.
#include "host/base/Dates.h"
#include "host/gis/LibGis.h"
#include "query/execution/FieldSymbols.h"
#include "query/execution/plan/ColumnPlan.h"
#include "query/language/FilterParser.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <vector>

namespace {

struct ZoneDay {
    const char* zone;
    orv::CalendarDay day;
};

std::ostream& operator<<(std::ostream& out, const ZoneDay& zoneDay)
{
    return out << zoneDay.zone << " " << zoneDay.day.day << "/" << zoneDay.day.month << "/"
               << zoneDay.day.year;
}

std::string textOf(std::int32_t day, const char* separator)
{
    const orv::CalendarDay date = orv::DayFromNumber(day);
    return std::to_string(date.day) + separator + std::to_string(date.month) + separator
        + std::to_string(date.year);
}

constexpr int DaysAround = 3;

class MissingMidnightTest : public testing::TestWithParam<ZoneDay> {
protected:
    MissingMidnightTest()
        : m_zone(GetParam().zone)
    {
        EXPECT_TRUE(orv::DayNumber(GetParam().day, m_day));
        std::string rows;
        std::string entities;
        for (int i = -DaysAround; i <= DaysAround; ++i) {
            rows += (rows.empty() ? "(" : ", (") + textOf(m_day + i, "/") + ")";
            entities += (entities.empty() ? "" : ", ") + std::to_string(i + DaysAround) + " []";
        }
        m_library = support::makeLibrary("table T (G date); rows T: " + rows
            + ", (-); theme S: points on T; ents S: " + entities + ", "
            + std::to_string(2 * DaysAround + 1) + " []");
    }

    /// The days found, as distances from the one that begins late, both ways alike.
    std::string found(const std::string& filter)
    {
        gis::CTheme* theme = m_library->GetTheme(0);
        gis::CDBTable* table = m_library->GetTable(theme);
        const query::FieldSymbols symbols = query::makeFieldSymbols(m_library.get(), table);
        const query::QuerySource source { *m_library, theme, table, *symbols.table,
            symbols.fields };
        const auto outcome = query::parseFilter(filter, query::ErrorReport::Silent);
        EXPECT_EQ(outcome.status, 0) << filter;
        std::vector<gis::CEnt*> planned;
        std::vector<gis::CEnt*> walked;
        EXPECT_TRUE(query::plan::selectByColumns(source, *outcome.root, planned)) << filter;
        query::walkRows(source, *outcome.root, walked);
        EXPECT_EQ(planned, walked) << filter;
        std::string text;
        for (int i = 0; i <= 2 * DaysAround; ++i)
            for (gis::CEnt* entity : walked)
                if (entity == m_library->GetEnt(theme, i))
                    text += (text.empty() ? "" : " ") + std::to_string(i - DaysAround);
        return text;
    }

    support::TimeZoneScope m_zone;
    std::int32_t m_day = 0;
    std::unique_ptr<gis::CLibGis> m_library;
};

TEST_P(MissingMidnightTest, TheDayBeginsLateAndIsStillThatDay)
{
    const std::int64_t first = orv::LocalMidnightOfDay(m_day);
    const std::time_t moment = first;
    std::tm local {};
    localtime_r(&moment, &local);
    EXPECT_EQ(local.tm_mday, GetParam().day.day);
    EXPECT_EQ(local.tm_hour, 1) << "else this zone tells nothing";
    std::int32_t day = 0;
    EXPECT_TRUE(orv::LocalDayNumber(first, day));
    EXPECT_EQ(day, m_day);
    EXPECT_TRUE(orv::LocalDayNumber(first - 1, day));
    EXPECT_EQ(day, m_day - 1);
    std::int64_t midnight = 0;
    EXPECT_TRUE(orv::LocalMidnight(first + 3600 * 5, midnight));
    EXPECT_EQ(midnight, first);
    std::int64_t again = 0;
    EXPECT_TRUE(orv::ParseDateText(orv::DateText(first), again));
    EXPECT_EQ(again, first) << "as it is shown and typed";
}

TEST_P(MissingMidnightTest, DateFiltersFindTheDaysThatTheyName)
{
    for (int i = -1; i <= 1; ++i) {
        const std::string date = "Date(" + textOf(m_day + i, ",") + ")";
        SCOPED_TRACE(date);
        std::string before;
        std::string after;
        for (int other = -DaysAround; other <= DaysAround; ++other)
            if (other != i)
                (other < i ? before : after)
                    += ((other < i ? before : after).empty() ? "" : " ") + std::to_string(other);
        const std::string same = std::to_string(i);

        EXPECT_EQ(found("G = " + date), same);
        EXPECT_EQ(found(date + " = G"), same);
        EXPECT_EQ(found("G <> " + date), before + " " + after);
        EXPECT_EQ(found("G < " + date), before);
        EXPECT_EQ(found("G <= " + date), before + " " + same);
        EXPECT_EQ(found("G > " + date), after);
        EXPECT_EQ(found("G >= " + date), same + " " + after);
        EXPECT_EQ(found("NOT G < " + date), same + " " + after);
    }
}

TEST_P(MissingMidnightTest, PartsOfTheDayAreItsOwn)
{
    const orv::CalendarDay day = GetParam().day;
    EXPECT_EQ(found("Day(G) = " + std::to_string(day.day) + " AND Month(G) = "
                  + std::to_string(day.month) + " AND Year(G) = " + std::to_string(day.year)),
        "0");
    EXPECT_EQ(found("Date(Day(" + ("Date(" + textOf(m_day, ",") + ")") + "), "
                  + std::to_string(day.month) + ", " + std::to_string(day.year) + ") = G"),
        "0");
}

INSTANTIATE_TEST_SUITE_P(Zones, MissingMidnightTest,
    testing::Values(ZoneDay { "America/Sao_Paulo", { 4, 11, 2018 } },
        ZoneDay { "America/Sao_Paulo", { 15, 10, 2017 } },
        ZoneDay { "Africa/Cairo", { 30, 4, 2010 } }, ZoneDay { "Africa/Cairo", { 16, 5, 2014 } },
        ZoneDay { "Asia/Beirut", { 29, 3, 2020 } }, ZoneDay { "Asia/Beirut", { 28, 3, 2010 } }));

} // namespace
