// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The inner loops of the plan: rows in, a bit a row out. They look at every row of a block, also at
// those without a value, whose answers the caller masks out.

#include "query/execution/plan/Block.h"

namespace query::plan {

/// `low <= value && value <= high`.
void insideBits(
    const std::int32_t* values, int count, std::int32_t low, std::int32_t high, Bits& inside);

struct DecimalBounds {
    double low;
    double high;
};
/// `inside`: within `bounds`; `odd`: not within `ordinary`, as NaN always is.
void insideBits(const double* values, int count, const DecimalBounds& bounds,
    const DecimalBounds& ordinary, Bits& inside, Bits& odd);

void equalBits(const std::uint32_t* codes, int count, std::uint32_t code, Bits& equal);
void trueBits(const std::uint8_t* values, int count, Bits& isTrue);

/// The bit of `members` at each code; codes from `memberCount` on are in no set.
void memberBits(const std::uint32_t* codes, int count, const std::uint64_t* members,
    std::uint32_t memberCount, Bits& isMember);

/// Every value as its text with `digits` decimals reads back; `doubtful`: rows that are better
/// left to orv::RoundedByText.
void roundDecimals(const double* values, int count, int digits, double* rounded, Bits& doubtful);

/// Comparison or arithmetic code of host/expr, row by row.
void compareBits(int code, const double* left, const double* right, int count, Bits& holds);
void compareBits(int code, const double* left, double right, int count, Bits& holds);
void calculate(int code, const double* left, const double* right, int count, double* out);
void calculate(int code, const double* left, double right, int count, double* out);
void calculate(int code, double left, const double* right, int count, double* out);
/// Neither infinite nor NaN.
void finiteBits(const double* values, int count, Bits& isFinite);

} // namespace query::plan
