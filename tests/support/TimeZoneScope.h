// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/Dates.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace support {

/// The process's time zone for a scope; the one before comes back after it.
class TimeZoneScope final {
public:
    explicit TimeZoneScope(const char* zone)
    {
        if (const char* before = std::getenv("TZ"))
            m_before = before;
        setenv("TZ", zone, 1);
        orv::ForgetTimeZone();
    }
    TimeZoneScope(const TimeZoneScope&) = delete;
    TimeZoneScope& operator=(const TimeZoneScope&) = delete;
    ~TimeZoneScope()
    {
        if (m_before)
            setenv("TZ", m_before->c_str(), 1);
        else
            unsetenv("TZ");
        orv::ForgetTimeZone();
    }

private:
    std::optional<std::string> m_before;
};

} // namespace support
