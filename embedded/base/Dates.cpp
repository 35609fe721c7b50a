// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Dates.h"

#include "host/base/Numbers.h"

#include <array>
#include <atomic>
#include <charconv>
#include <chrono>
#include <ctime>

namespace {

constexpr std::int64_t SecondsPerDay = 86400;
constexpr std::int32_t FirstDay = -719162; // 1 January of year 1
constexpr std::int32_t LastDay = 2932896; // 31 December of year 9999

std::int64_t floorToDay(std::int64_t moment)
{
    const std::int64_t day = moment / SecondsPerDay;
    return moment % SecondsPerDay < 0 ? day - 1 : day;
}

/// A number of seconds for each day that was asked for. Read by any thread without a lock: an
/// entry is one word with its own key, so a reader sees a whole answer or computes it again.
/// 16384 days: a collision needs dates 44 years apart.
class DayCache {
public:
    bool find(std::int64_t day, std::int32_t& seconds) const
    {
        const std::uint64_t entry = slot(day).load(std::memory_order_relaxed);
        if (entry >> 32 != keyOf(day))
            return false;
        seconds = static_cast<std::int32_t>(static_cast<std::uint32_t>(entry));
        return true;
    }
    void keep(std::int64_t day, std::int32_t seconds)
    {
        const std::uint64_t entry = (keyOf(day) << 32) | static_cast<std::uint32_t>(seconds);
        m_slots[indexOf(day)].store(entry, std::memory_order_relaxed);
    }
    void clear()
    {
        for (auto& entry : m_slots)
            entry.store(0, std::memory_order_relaxed);
    }

private:
    static constexpr std::size_t Slots = 16384;
    // Days of the calendar and the few around it, as numbers from 1: 0 is a slot never written.
    static std::uint64_t keyOf(std::int64_t day)
    {
        return static_cast<std::uint64_t>(day - FirstDay + 16);
    }
    static std::size_t indexOf(std::int64_t day) { return static_cast<std::size_t>(day) % Slots; }
    [[nodiscard]] const std::atomic<std::uint64_t>& slot(std::int64_t day) const
    {
        return m_slots[indexOf(day)];
    }
    std::array<std::atomic<std::uint64_t>, Slots> m_slots {};
};

DayCache zoneOffsets; // by day in UTC: local time minus UTC
DayCache midnights; // by local day: local midnight minus midnight in UTC

std::int64_t daysOf(int year, int month, int day)
{
    using namespace std::chrono;
    const year_month_day date(std::chrono::year(year),
        std::chrono::month(static_cast<unsigned>(month)),
        std::chrono::day(static_cast<unsigned>(day)));
    return sys_days(date).time_since_epoch().count();
}

/// Local time minus UTC at a moment; false when the C library cannot say.
bool zoneOffsetAt(std::int64_t moment, std::int64_t& offset)
{
    std::tm local {};
    const std::time_t seconds = moment;
    if (!localtime_r(&seconds, &local))
        return false;
    const std::int64_t days = daysOf(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    const std::int64_t clock
        = (std::int64_t(local.tm_hour) * 60 + local.tm_min) * 60 + local.tm_sec;
    offset = days * SecondsPerDay + clock - moment;
    return true;
}

/// True when the clock does not change during a day in UTC. Asked every six hours, since no zone
/// has ever gone there and back within a day.
bool hasOneOffset(std::int64_t utcDay, std::int64_t offset)
{
    constexpr std::int64_t Step = SecondsPerDay / 4;
    const std::int64_t start = utcDay * SecondsPerDay;
    for (std::int64_t after : { std::int64_t(0), Step, 2 * Step, 3 * Step, SecondsPerDay - 1 }) {
        std::int64_t other = 0;
        if (!zoneOffsetAt(start + after, other) || other != offset)
            return false;
    }
    return true;
}

bool localOffset(std::int64_t moment, std::int64_t& offset)
{
    const std::int64_t utcDay = floorToDay(moment);
    std::int32_t kept = 0;
    if (zoneOffsets.find(utcDay, kept)) {
        offset = kept;
        return true;
    }
    if (!zoneOffsetAt(moment, offset))
        return false;
    if (hasOneOffset(utcDay, offset))
        zoneOffsets.keep(utcDay, static_cast<std::int32_t>(offset));
    return true;
}

/// First moment at which the local day is `dayNumber` or a later one, between two moments of which
/// the first lies before it and the second does not.
std::int64_t firstMomentOf(std::int32_t dayNumber, std::int64_t before, std::int64_t after)
{
    while (after - before > 1) {
        const std::int64_t middle = before + (after - before) / 2;
        std::int64_t offset = 0;
        zoneOffsetAt(middle, offset);
        (floorToDay(middle + offset) < dayNumber ? before : after) = middle;
    }
    return after;
}

std::int64_t computeMidnight(std::int32_t dayNumber)
{
    const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
    std::tm local {};
    local.tm_year = day.year - 1900;
    local.tm_mon = day.month - 1;
    local.tm_mday = day.day;
    local.tm_isdst = -1; // the flag of another hour would shift the days on which the clock changes
    std::int64_t midnight = std::mktime(&local);
    std::int64_t offset = 0;
    if (zoneOffsetAt(midnight, offset) && floorToDay(midnight + offset) == dayNumber) {
        // The clock put back to 00:00 shows it twice (Italy, 27/09/1970), and which of the two the
        // C library answers depends on what it was asked before: the day begins with the first.
        for (const std::int64_t step : { 3600, 1800, 7200 }) {
            const std::int64_t earlier = midnight - step;
            if (zoneOffsetAt(earlier, offset) && floorToDay(earlier + offset) == dayNumber) {
                midnight = earlier;
                break;
            }
        }
        return midnight;
    }
    // The clock was put forward at midnight, so that 00:00 does not exist, and the C library
    // answered with the evening before: the day begins where the clock went on.
    constexpr std::int64_t WidestZone = 2 * SecondsPerDay;
    const std::int64_t inUtc = dayNumber * SecondsPerDay;
    return firstMomentOf(dayNumber, inUtc - WidestZone, inUtc + WidestZone);
}

bool readNumberPart(std::string_view text, std::size_t mostDigits, int& number)
{
    if (text.empty() || text.size() > mostDigits)
        return false;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    return read.ec == std::errc() && read.ptr == text.data() + text.size() && text[0] != '-';
}

void appendTwoDigits(std::string& text, int number)
{
    text += static_cast<char>('0' + number / 10);
    text += static_cast<char>('0' + number % 10);
}

} // namespace

namespace orv {

bool DayNumber(const CalendarDay& day, std::int32_t& dayNumber)
{
    using namespace std::chrono;
    if (day.year < 1 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1)
        return false;
    const year_month_day date(std::chrono::year(day.year),
        std::chrono::month(static_cast<unsigned>(day.month)),
        std::chrono::day(static_cast<unsigned>(day.day > 31 ? 32 : day.day)));
    if (!date.ok())
        return false;
    dayNumber = static_cast<std::int32_t>(sys_days(date).time_since_epoch().count());
    return true;
}

CalendarDay DayFromNumber(std::int32_t dayNumber)
{
    using namespace std::chrono;
    const year_month_day date { sys_days(days(dayNumber)) };
    return { static_cast<int>(static_cast<unsigned>(date.day())),
        static_cast<int>(static_cast<unsigned>(date.month())), static_cast<int>(date.year()) };
}

bool LocalDayNumber(std::int64_t moment, std::int32_t& dayNumber)
{
    if (moment < (FirstDay - 2) * SecondsPerDay || moment > (LastDay + 2) * SecondsPerDay)
        return false;
    std::int64_t offset = 0;
    if (!localOffset(moment, offset))
        return false;
    const std::int64_t localDay = floorToDay(moment + offset);
    if (localDay < FirstDay || localDay > LastDay)
        return false;
    dayNumber = static_cast<std::int32_t>(localDay);
    return true;
}

std::int64_t LocalMidnightOfDay(std::int32_t dayNumber)
{
    const std::int64_t inUtc = dayNumber * SecondsPerDay;
    if (dayNumber < FirstDay || dayNumber > LastDay)
        return inUtc;
    std::int32_t difference = 0;
    if (!midnights.find(dayNumber, difference)) {
        difference = static_cast<std::int32_t>(computeMidnight(dayNumber) - inUtc);
        midnights.keep(dayNumber, difference);
    }
    return inUtc + difference;
}

bool LocalMidnight(std::int64_t moment, std::int64_t& midnight)
{
    std::int32_t dayNumber = 0;
    if (!LocalDayNumber(moment, dayNumber)) {
        midnight = moment;
        return false;
    }
    midnight = LocalMidnightOfDay(dayNumber);
    return true;
}

std::string DateText(std::int64_t moment)
{
    std::int32_t dayNumber = 0;
    if (!LocalDayNumber(moment, dayNumber))
        return {};
    const CalendarDay day = DayFromNumber(dayNumber);
    char digits[8];
    const auto year = std::to_chars(digits, digits + sizeof digits, day.year);
    std::string text;
    appendTwoDigits(text, day.day);
    text += '/';
    appendTwoDigits(text, day.month);
    text += '/';
    return text.append(digits, year.ptr);
}

bool ParseDateText(std::string_view text, std::int64_t& midnight)
{
    const std::size_t first = text.find('/');
    const std::size_t second = first == std::string_view::npos ? first : text.find('/', first + 1);
    if (second == std::string_view::npos || text.size() - second - 1 != 4)
        return false;
    CalendarDay day;
    std::int32_t dayNumber = 0;
    if (!readNumberPart(text.substr(0, first), 2, day.day)
        || !readNumberPart(text.substr(first + 1, second - first - 1), 2, day.month)
        || !readNumberPart(text.substr(second + 1), 4, day.year) || !DayNumber(day, dayNumber))
        return false;
    midnight = LocalMidnightOfDay(dayNumber);
    return true;
}

void ForgetTimeZone()
{
    tzset();
    zoneOffsets.clear();
    midnights.clear();
}

} // namespace orv
