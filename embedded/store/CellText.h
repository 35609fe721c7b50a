// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/PolyValue.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace embedded::store {

/// "YYYY-MM-DD" of a day number. A day of the calendar, not a moment: it reads the same in every
/// time zone.
std::array<char, 10> isoDay(std::int32_t dayNumber);

/// Yes or no as programs write it in texts ("true", "1", "sì" …); nothing for any other text.
std::optional<bool> booleanOf(std::string_view text);

/// A day as ISO 8601 writes it, with or without a time of day after it; false for any other text.
bool parseIsoDay(std::string_view text, std::int32_t& dayNumber, bool& hasTime);

/// A value of any kind as text that begins with its kind: b, i, d, t, a (texts with their lengths),
/// D (a day and the seconds since its local midnight).
std::string encodedValue(const orv::CPolyValue& value);
/// The value again; empty for a text that `encodedValue` does not make.
orv::CPolyValue decodedValue(std::string_view text);

} // namespace embedded::store
