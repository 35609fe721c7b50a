// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/PolyValue.h"

// The rules of single operators over values, apart from the nodes that hold them.
// Source: docs/filter-language.md, "Comparison" and "Arithmetic".

namespace embedded {

/// Three-way order of two values with a value each; false when their kinds cannot be compared.
/// `order` is 2 where a number is not comparable with itself (NaN).
bool compareValues(const orv::CPolyValue& left, const orv::CPolyValue& right, int& order);

/// Whether a comparison operator (codes 10 to 15) holds for an order.
bool comparisonHolds(int code, int order);

/// Sum, difference, product or quotient of two numbers (codes 1 to 4). Integers give an integer,
/// widened to a double where it does not fit; a quotient is always a double. False for other kinds,
/// a zero divisor, and results that are no number.
bool calculate(
    int code, const orv::CPolyValue& left, const orv::CPolyValue& right, orv::CPolyValue& result);

} // namespace embedded
