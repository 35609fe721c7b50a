// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Days of a date column as the moments and calendar days that filters compare.

#include "host/base/Dates.h"

#include <cstdint>
#include <limits>

namespace query::plan {

/// Local midnight of a day as a cell gives it, after the rounding to midnight that filters do.
inline std::int64_t momentOfDay(std::int32_t day)
{
    std::int64_t midnight = orv::LocalMidnightOfDay(day);
    orv::LocalMidnight(midnight, midnight);
    return midnight;
}

/// Keeps the last day asked for: neighbouring rows often have the same one.
class DayMemory final {
public:
    std::int64_t momentOf(std::int32_t day)
    {
        if (day != m_day || !m_isKnown) {
            m_day = day;
            m_isKnown = true;
            m_moment = momentOfDay(day);
        }
        return m_moment;
    }

    /// False for a day outside the calendar.
    bool calendarDayOf(std::int32_t day, orv::CalendarDay& calendarDay)
    {
        std::int32_t local = 0;
        if (!orv::LocalDayNumber(momentOf(day), local))
            return false;
        calendarDay = orv::DayFromNumber(local);
        return true;
    }

private:
    std::int32_t m_day = 0;
    bool m_isKnown = false;
    std::int64_t m_moment = 0;
};

} // namespace query::plan
