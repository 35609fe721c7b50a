// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Numbers as text and back, never by the process locale: the decimal sign is always a point.

#include "host/base/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Equal within 1e-9 of the larger magnitude (at least 1).
TEMATICA_HOST_API bool UgualeA(double left, double right);

/// The whole text as a number: blanks around, a sign, digits, a point or one comma, an exponent.
/// Errors: 1.7e200 for a text that is empty or not a number.
TEMATICA_HOST_API double DoubleDaString(const std::string& text);

/// `value` with exactly `decimals` digits after the point; the empty text for values from 8.5e199
/// up. `flag` is 0 in every call and has no further meaning.
TEMATICA_HOST_API std::string StringDaDouble(double value, int flag, int decimals);

/// Nearest integer, halves away from zero; values outside the 64-bit range are clamped, NaN is 0.
TEMATICA_HOST_API long LongRound(double value);

/// Leading number of a text; no "inf", "nan" or hexadecimal; 0 without digits.
TEMATICA_HOST_API double orv_atof(const char* text);
TEMATICA_HOST_API double orv_atof(std::string_view text);

/// Leading integer of a text, clamped to 32 bits; 0 without digits.
TEMATICA_HOST_API int orv_atoi(const char* text);
TEMATICA_HOST_API int orv_atoi(std::string_view text);

/// As snprintf for %d %i %u %x %c %s %f %e %g %% with flags, width and precision, always with a
/// point.
TEMATICA_HOST_API int orv_sprintf(char* buffer, std::size_t sizeBytes, const char* format, ...);

namespace orv {

/// The shortest digits that read back: plain notation for exponents -5 to 15, else "1e+20"; minus
/// zero is "-0".
TEMATICA_HOST_API std::string ShortestText(double value);

/// `value` in fixed notation as `String::ValueOf`, appended to `out` (no allocation beyond it).
TEMATICA_HOST_API void AppendFixed(std::string& out, double value, int decimals);

/// `value` rounded as its text with `decimals` digits reads back; what the query engine compares.
TEMATICA_HOST_API double RoundedByText(double value, int decimals);

/// Whole text (blanks around allowed) as a number with a point; false when it is none.
TEMATICA_HOST_API bool ParseDouble(std::string_view text, double& value);

/// ASCII letters folded to lower case, other bytes as they are.
TEMATICA_HOST_API int CompareIgnoreAsciiCase(std::string_view left, std::string_view right);
TEMATICA_HOST_API std::string FoldAsciiCase(std::string_view text);

} // namespace orv
