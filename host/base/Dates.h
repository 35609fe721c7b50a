// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Calendar days and the moments at which they begin in the process's time zone.
// Whatever compares days uses these functions, so that summer time cannot shift a day.

#include "host/base/Export.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

/// A day of the proleptic Gregorian calendar.
struct CalendarDay {
    int day = 0;
    int month = 0;
    int year = 0;
    friend bool operator==(const CalendarDay&, const CalendarDay&) = default;
};

/// Days since 1970-01-01 of a real calendar day of the years 1 to 9999; false for any other.
TEMATICA_HOST_API bool DayNumber(const CalendarDay& day, std::int32_t& dayNumber);
TEMATICA_HOST_API CalendarDay DayFromNumber(std::int32_t dayNumber);

/// Local day of a moment; false when the moment is outside the calendar.
/// Units: seconds since 1970-01-01 00:00 UTC. Thread: any; the zone's answers are kept per day.
TEMATICA_HOST_API bool LocalDayNumber(std::int64_t moment, std::int32_t& dayNumber);

/// First moment of a local day (`tm_isdst` -1, so right on days on which the clock changes).
TEMATICA_HOST_API std::int64_t LocalMidnightOfDay(std::int32_t dayNumber);

/// Local midnight of the day of a moment; false, with `midnight` = `moment`, outside the calendar.
TEMATICA_HOST_API bool LocalMidnight(std::int64_t moment, std::int64_t& midnight);

/// "%02d/%02d/%d" of the local day; empty outside the calendar.
TEMATICA_HOST_API std::string DateText(std::int64_t moment);

/// d/m/yyyy with one or two digits for day and month, real days only; false for any other text.
TEMATICA_HOST_API bool ParseDateText(std::string_view text, std::int64_t& midnight);

/// For a process that changed its time zone (TZ): the days' beginnings are asked for anew.
/// Thread: no other may use days meanwhile.
TEMATICA_HOST_API void ForgetTimeZone();

} // namespace orv
