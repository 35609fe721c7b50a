// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace orv {

namespace {

constexpr int MostDecimals = 60;
constexpr std::size_t LongestFixed = 400; // 309 digits, sign, point and MostDecimals

constexpr std::array<double, 23> ExactPowersOfTen { 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8,
    1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22 };

std::size_t writeFixed(char (&buffer)[LongestFixed], double value, int decimals)
{
    const int digits = std::clamp(decimals, 0, MostDecimals);
    const auto written
        = std::to_chars(buffer, buffer + LongestFixed, value, std::chars_format::fixed, digits);
    return static_cast<std::size_t>(written.ptr - buffer);
}

double roundedThroughText(double value, int decimals)
{
    char buffer[LongestFixed];
    return orv_atof(std::string_view(buffer, writeFixed(buffer, value, decimals)));
}

unsigned char foldedByte(char byte)
{
    const auto code = static_cast<unsigned char>(byte);
    return code >= 'A' && code <= 'Z' ? static_cast<unsigned char>(code + ('a' - 'A')) : code;
}

} // namespace

std::string ShortestText(double value)
{
    constexpr int LeastPlainExponent = -5;
    constexpr int MostPlainExponent = 15;
    if (!std::isfinite(value))
        return {};
    char buffer[40];
    const auto written
        = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific);
    const std::string_view text(buffer, static_cast<std::size_t>(written.ptr - buffer));
    const int exponent = orv_atoi(text.substr(text.find('e') + 1));
    if (exponent < LeastPlainExponent || exponent > MostPlainExponent)
        return std::string(text);
    const auto plain
        = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    return { buffer, plain.ptr };
}

void AppendFixed(std::string& out, double value, int decimals)
{
    if (!std::isfinite(value))
        return;
    char buffer[LongestFixed];
    out.append(buffer, writeFixed(buffer, value, decimals));
}

double RoundedByText(double value, int decimals)
{
    constexpr double FirstWithoutFraction = 9007199254740992.0; // 2^53
    constexpr double SafeScaled = 2251799813685248.0; // 2^51: halves are still exact
    constexpr double RoundingShift = 4503599627370496.0; // 2^52: adding it drops the fraction
    if (!std::isfinite(value))
        return 0.0; // what the empty text reads as
    if (std::fabs(value) >= FirstWithoutFraction)
        return value;
    const int digits = std::clamp(decimals, 0, MostDecimals);
    if (digits >= static_cast<int>(ExactPowersOfTen.size()))
        return roundedThroughText(value, digits);

    // The nearest whole number of units of the last digit, divided by an exact power of ten, is
    // the double nearest to the text's decimal number: the same as writing and reading it. Only
    // next to a half could the rounding of the product decide wrongly; there the text decides.
    const double power = ExactPowersOfTen[static_cast<std::size_t>(digits)];
    const double scaled = std::fabs(value) * power;
    if (!(scaled < SafeScaled))
        return roundedThroughText(value, digits);
    const double units = (scaled + RoundingShift) - RoundingShift;
    if (std::fabs(scaled - units) == 0.5)
        return roundedThroughText(value, digits);
    return std::copysign(units / power, value);
}

int CompareIgnoreAsciiCase(std::string_view left, std::string_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t position = 0; position < common; ++position) {
        const unsigned char leftByte = foldedByte(left[position]);
        const unsigned char rightByte = foldedByte(right[position]);
        if (leftByte != rightByte)
            return leftByte < rightByte ? -1 : 1;
    }
    return (left.size() > right.size()) - (left.size() < right.size());
}

std::string FoldAsciiCase(std::string_view text)
{
    std::string folded(text);
    for (char& byte : folded)
        byte = static_cast<char>(foldedByte(byte));
    return folded;
}

} // namespace orv
