// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/Dates.h"

#include <array>
#include <atomic>
#include <charconv>
#include <ctime>

namespace orv {

namespace {

constexpr std::int32_t FirstDay = -719162; // 1 January of year 1
constexpr std::int32_t LastDay = 2932896; // 31 December of year 9999
constexpr std::int64_t SecondsPerDay = 86400;

/// Days since 1970-01-01 of a proleptic Gregorian date.
/// Source: Howard Hinnant, "chrono-Compatible Low-Level Date Algorithms", days_from_civil.
std::int32_t dayNumberOf(int year, int month, int day)
{
    const int y = month <= 2 ? year - 1 : year;
    const int era = (y >= 0 ? y : y - 399) / 400;
    const int yearOfEra = y - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

bool isLeap(int year)
{
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int daysIn(int month, int year)
{
    constexpr int Days[] = { 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31 };
    return month == 2 && isLeap(year) ? 29 : Days[month - 1];
}

std::int64_t askMidnight(std::int32_t dayNumber)
{
    const CalendarDay day = DayFromNumber(dayNumber);
    std::tm parts {};
    parts.tm_mday = day.day;
    parts.tm_mon = day.month - 1;
    parts.tm_year = day.year - 1900;
    parts.tm_isdst = -1; // the day's own summer time, not that of the moment asked for
    return std::mktime(&parts);
}

/// Midnights already asked for. The zone code of the C library takes a lock and some 200 ns; a
/// table of a million dates has a few thousand days. One slot holds a day and its midnight in one
/// word, so that threads need no lock: the day's distance from midnight UTC fits 18 bits, the day
/// the rest.
class MidnightCache final {
public:
    std::int64_t midnight(std::int32_t dayNumber)
    {
        std::atomic<std::int64_t>& slot
            = m_slots[static_cast<std::uint32_t>(dayNumber) % SlotCount];
        const std::int64_t kept = slot.load(std::memory_order_relaxed);
        if (kept != Free && (kept >> OffsetBits) == dayNumber)
            return dayNumber * SecondsPerDay + (kept & OffsetMask) - OffsetBias;
        const std::int64_t asked = askMidnight(dayNumber);
        const std::int64_t offset = asked - dayNumber * SecondsPerDay + OffsetBias;
        if (offset >= 0 && offset <= OffsetMask)
            slot.store((std::int64_t(dayNumber) << OffsetBits) | offset, std::memory_order_relaxed);
        return asked;
    }
    void clear()
    {
        for (auto& slot : m_slots)
            slot.store(Free, std::memory_order_relaxed);
    }

private:
    static constexpr std::uint32_t SlotCount = 8192;
    static constexpr int OffsetBits = 18;
    static constexpr std::int64_t OffsetMask = (std::int64_t(1) << OffsetBits) - 1;
    static constexpr std::int64_t OffsetBias = 131072;
    static constexpr std::int64_t Free = INT64_MIN;
    std::array<std::atomic<std::int64_t>, SlotCount> m_slots;

public:
    MidnightCache() { clear(); }
};

MidnightCache& cache()
{
    static MidnightCache midnights;
    return midnights;
}

bool readNumber(std::string_view& text, std::size_t mostDigits, int& value)
{
    std::size_t digits = 0;
    while (
        digits < text.size() && digits < mostDigits && text[digits] >= '0' && text[digits] <= '9')
        ++digits;
    if (digits == 0)
        return false;
    std::from_chars(text.data(), text.data() + digits, value);
    text.remove_prefix(digits);
    return true;
}

bool skipSlash(std::string_view& text)
{
    if (text.empty() || text.front() != '/')
        return false;
    text.remove_prefix(1);
    return true;
}

} // namespace

bool DayNumber(const CalendarDay& day, std::int32_t& dayNumber)
{
    if (day.year < 1 || day.year > 9999 || day.month < 1 || day.month > 12 || day.day < 1
        || day.day > daysIn(day.month, day.year))
        return false;
    dayNumber = dayNumberOf(day.year, day.month, day.day);
    return true;
}

CalendarDay DayFromNumber(std::int32_t dayNumber)
{
    // Source: as dayNumberOf, civil_from_days.
    const std::int64_t z = std::int64_t(dayNumber) + 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const int dayOfEra = static_cast<int>(z - era * 146097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shifted = (5 * dayOfYear + 2) / 153;
    const int month = shifted < 10 ? shifted + 3 : shifted - 9;
    const int year = static_cast<int>(yearOfEra + era * 400) + (month <= 2 ? 1 : 0);
    return { dayOfYear - (153 * shifted + 2) / 5 + 1, month, year };
}

bool LocalDayNumber(std::int64_t moment, std::int32_t& dayNumber)
{
    if (moment < (std::int64_t(FirstDay) - 1) * SecondsPerDay
        || moment > (std::int64_t(LastDay) + 2) * SecondsPerDay)
        return false;
    // The local day is the UTC day or a neighbour of it: the last one that has begun.
    const std::int64_t floored
        = moment >= 0 ? moment / SecondsPerDay : (moment - SecondsPerDay + 1) / SecondsPerDay;
    for (int shift = 1; shift >= -1; --shift) {
        const auto day = static_cast<std::int32_t>(floored + shift);
        if (LocalMidnightOfDay(day) <= moment) {
            dayNumber = day;
            return day >= FirstDay && day <= LastDay;
        }
    }
    return false;
}

std::int64_t LocalMidnightOfDay(std::int32_t dayNumber)
{
    return cache().midnight(dayNumber);
}

bool LocalMidnight(std::int64_t moment, std::int64_t& midnight)
{
    std::int32_t day = 0;
    if (!LocalDayNumber(moment, day)) {
        midnight = moment;
        return false;
    }
    midnight = LocalMidnightOfDay(day);
    return true;
}

std::string DateText(std::int64_t moment)
{
    std::int32_t number = 0;
    if (!LocalDayNumber(moment, number))
        return {};
    const CalendarDay day = DayFromNumber(number);
    std::string text { static_cast<char>('0' + day.day / 10), static_cast<char>('0' + day.day % 10),
        '/', static_cast<char>('0' + day.month / 10), static_cast<char>('0' + day.month % 10),
        '/' };
    char year[8];
    text.append(year, std::to_chars(year, year + sizeof year, day.year).ptr);
    return text;
}

bool ParseDateText(std::string_view text, std::int64_t& midnight)
{
    CalendarDay day;
    std::int32_t number = 0;
    if (!readNumber(text, 2, day.day) || !skipSlash(text) || !readNumber(text, 2, day.month)
        || !skipSlash(text) || text.size() != 4 || !readNumber(text, 4, day.year) || !text.empty()
        || !DayNumber(day, number))
        return false;
    midnight = LocalMidnightOfDay(number);
    return true;
}

void ForgetTimeZone()
{
    tzset();
    cache().clear();
}

} // namespace orv
