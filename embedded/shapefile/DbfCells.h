// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace embedded {

/// What a cell of a .dbf holds.
enum class CellState : std::uint8_t {
    Empty, // no value: blank, or filled with '*' by a program whose number did not fit
    Value,
    Unreadable,
};

/// A number as a cell writes it.
struct DbfNumber {
    CellState state = CellState::Empty;
    double value = 0.0;
    bool isWhole = true;
    bool isExact = true; // false: a whole number beyond 2^53
    int digits = 0; // written after the point
};

/// Whole numbers up to here are exact in a double.
inline constexpr std::int64_t LargestExactInteger = std::int64_t { 1 } << 53;

/// A point or one comma, an exponent; blanks and NULs around.
DbfNumber parseDbfNumber(std::string_view cell);
/// T t Y y, F f N n; blank or `?` is no value.
CellState parseDbfLogical(std::string_view cell, bool& value);
/// yyyymmdd, also yyyy-m-d and yyyy/m/d; blanks or zeros are no value.
CellState parseDbfDate(std::string_view cell, std::int32_t& dayNumber);

/// Numbers that FoxPro and dBASE 7 keep as bytes; the cell has the type's width (4 or 8).
DbfNumber parseFoxProInteger(std::string_view cell);
DbfNumber parseFoxProDouble(std::string_view cell);
DbfNumber parseFoxProMoney(std::string_view cell);
DbfNumber parseDBaseInteger(std::string_view cell);
DbfNumber parseDBaseDouble(std::string_view cell);

/// A cell without blanks and NULs around it.
std::string_view trimmedCell(std::string_view cell);

} // namespace embedded
