// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/PolyValue.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tables {

/// Default, minimum and maximum of a number field, each with the mark for "not set".
template <typename Number> struct FieldBounds {
    Number standard; // the default value
    Number minimum;
    Number maximum;
};

using IntegerBounds = FieldBounds<std::int32_t>;
using DecimalBounds = FieldBounds<double>;

/// The texts of the page's edits.
struct BoundTexts {
    std::string standard;
    std::string minimum;
    std::string maximum;
};

/// Takes the texts into the bounds as far as they are right; the numbers of the messages about the
/// others, in the order in which they are shown.
///
/// A text is right only if it is exactly the text of the number that it reads as, so that nothing
/// that a user typed is silently read as another number. An empty text sets its bound to "not set".
/// A wrong one leaves its bound as it was. Minimum and maximum that do not fit each other are both
/// left as they were; a default outside the bounds just typed becomes "not set".
std::vector<int> takeBounds(const BoundTexts& texts, IntegerBounds& bounds);
std::vector<int> takeBounds(const BoundTexts& texts, DecimalBounds& bounds);

/// The number of digits of a text, 0 to 10; true when it was cut to 10.
[[nodiscard]] bool takeDigits(std::string_view text, int& digits);

/// What an edit shows: nothing for "not set".
[[nodiscard]] orv::String boundText(std::int32_t value);
[[nodiscard]] orv::String boundText(double value, int digits);

} // namespace tables
