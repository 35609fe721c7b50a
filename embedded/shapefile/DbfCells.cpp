// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfCells.h"

#include "host/base/Dates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace embedded {

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isBlank(char c)
{
    return c == ' ' || c == '\0';
}
bool consistsOf(std::string_view text, char c)
{
    return text.find_first_not_of(c) == std::string_view::npos;
}

/// Digits alone, at most 18 of them after leading zeros.
bool parseShortInteger(std::string_view text, DbfNumber& number)
{
    const bool isNegative = text[0] == '-';
    if (isNegative || text[0] == '+')
        text.remove_prefix(1);
    while (text.size() > 1 && text[0] == '0')
        text.remove_prefix(1);
    if (text.empty() || text.size() > 18)
        return false;
    std::int64_t value = 0;
    for (const char c : text) {
        if (!isDigit(c))
            return false;
        value = value * 10 + (c - '0');
    }
    number.state = CellState::Value;
    number.isExact = value <= LargestExactInteger;
    number.value = isNegative ? -static_cast<double>(value) : static_cast<double>(value);
    return true;
}

/// Digits after the point, an exponent counted in.
int digitsWritten(std::string_view text)
{
    const auto exponentAt = text.find_first_of("eE");
    const std::string_view mantissa = text.substr(0, exponentAt);
    const auto point = mantissa.find('.');
    int digits
        = point == std::string_view::npos ? 0 : static_cast<int>(mantissa.size() - point - 1);
    if (exponentAt != std::string_view::npos) {
        std::string_view exponent = text.substr(exponentAt + 1);
        if (exponent.starts_with('+'))
            exponent.remove_prefix(1);
        int shift = 0;
        std::from_chars(exponent.data(), exponent.data() + exponent.size(), shift);
        digits -= std::clamp(shift, -400, 400);
    }
    return std::max(digits, 0);
}

DbfNumber parseGeneralNumber(std::string_view text)
{
    DbfNumber number;
    number.state = CellState::Unreadable;
    std::array<char, 256> buffer {};
    if (text.starts_with('+'))
        text.remove_prefix(1);
    if (text.size() > buffer.size() || text.starts_with('+'))
        return number;
    bool hasPoint = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i] == ',' ? '.' : text[i];
        if (!isDigit(c) && std::string_view("+-.eE").find(c) == std::string_view::npos)
            return number;
        if (c == '.' && std::exchange(hasPoint, true))
            return number;
        buffer[i] = c;
    }
    const std::string_view plain(buffer.data(), text.size());
    double value = 0.0;
    const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (result.ec != std::errc() || result.ptr != plain.data() + plain.size()
        || !std::isfinite(value))
        return number;
    number.state = CellState::Value;
    number.value = value;
    number.isWhole = value == std::trunc(value);
    number.isExact = !number.isWhole || std::abs(value) <= static_cast<double>(LargestExactInteger);
    number.digits = digitsWritten(plain);
    return number;
}

bool parseNumberOf(std::string_view text, int& number)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return !text.empty() && isDigit(text[0]) && result.ec == std::errc()
        && result.ptr == text.data() + text.size();
}

} // namespace

std::string_view trimmedCell(std::string_view cell)
{
    while (!cell.empty() && isBlank(cell.front()))
        cell.remove_prefix(1);
    while (!cell.empty() && isBlank(cell.back()))
        cell.remove_suffix(1);
    return cell;
}

DbfNumber parseDbfNumber(std::string_view cell)
{
    const std::string_view text = trimmedCell(cell);
    DbfNumber number;
    if (text.empty() || consistsOf(text, '*'))
        return number;
    if (parseShortInteger(text, number))
        return number;
    return parseGeneralNumber(text);
}

CellState parseDbfLogical(std::string_view cell, bool& value)
{
    const std::string_view text = trimmedCell(cell);
    if (text.empty() || text == "?")
        return CellState::Empty;
    if (text.size() != 1)
        return CellState::Unreadable;
    if (std::string_view("TtYy").find(text[0]) != std::string_view::npos) {
        value = true;
        return CellState::Value;
    }
    value = false;
    return std::string_view("FfNn").find(text[0]) != std::string_view::npos ? CellState::Value
                                                                            : CellState::Unreadable;
}

CellState parseDbfDate(std::string_view cell, std::int32_t& dayNumber)
{
    const std::string_view text = trimmedCell(cell);
    if (consistsOf(text, '0'))
        return CellState::Empty;
    std::string_view year = text.substr(0, std::min<std::size_t>(4, text.size()));
    std::string_view month;
    std::string_view day;
    const char separator = text.size() > 4 ? text[4] : '\0';
    if (separator == '-' || separator == '/') {
        const auto second = text.find(separator, 5);
        if (second == std::string_view::npos)
            return CellState::Unreadable;
        month = text.substr(5, second - 5);
        day = text.substr(second + 1);
    } else if (text.size() == 8) {
        month = text.substr(4, 2);
        day = text.substr(6, 2);
    }
    orv::CalendarDay date;
    const bool isDate = month.size() <= 2 && day.size() <= 2 && parseNumberOf(year, date.year)
        && parseNumberOf(month, date.month) && parseNumberOf(day, date.day)
        && orv::DayNumber(date, dayNumber);
    return isDate ? CellState::Value : CellState::Unreadable;
}

} // namespace embedded
