// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Numbers.h"

#include "host/base/PolyValue.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <limits>
#include <system_error>

namespace {

bool isBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::size_t skipDigits(std::string_view text, std::size_t position)
{
    while (position < text.size() && isDigit(text[position]))
        ++position;
    return position;
}

/// Length of the number that `text` begins with; 0 when it begins with none. Written out, since
/// std::from_chars also knows "inf" and "nan" and refuses a plus sign.
std::size_t numberLength(std::string_view text)
{
    const std::size_t first = !text.empty() && (text[0] == '+' || text[0] == '-') ? 1 : 0;
    std::size_t end = skipDigits(text, first);
    std::size_t digits = end - first;
    if (end < text.size() && text[end] == '.') {
        const std::size_t afterFraction = skipDigits(text, end + 1);
        digits += afterFraction - end - 1;
        if (digits > 0)
            end = afterFraction;
    }
    if (digits == 0)
        return 0;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
            ++exponent;
        const std::size_t afterExponent = skipDigits(text, exponent);
        if (afterExponent > exponent)
            end = afterExponent;
    }
    return end;
}

/// True when a number that std::from_chars cannot hold is too large rather than too small.
bool isTooLarge(std::string_view number)
{
    long magnitude = 0; // power of ten of the first digit that is not zero
    bool pastPoint = false;
    bool pastZeros = false;
    std::size_t position = 0;
    for (; position < number.size() && number[position] != 'e' && number[position] != 'E';
         ++position) {
        const char byte = number[position];
        if (byte == '.')
            pastPoint = true;
        else if (isDigit(byte)) {
            pastZeros = pastZeros || byte != '0';
            if (pastZeros && !pastPoint)
                ++magnitude;
            else if (!pastZeros && pastPoint)
                --magnitude;
        }
    }
    if (position == number.size())
        return magnitude > 0;
    const bool isDown = position + 1 < number.size() && number[position + 1] == '-';
    long exponent = 0;
    for (const char byte : number.substr(position))
        if (isDigit(byte))
            exponent = std::min(exponent * 10 + (byte - '0'), LONG_MAX / 20);
    return magnitude + (isDown ? -exponent : exponent) > 0;
}

/// Reads a text that `numberLength` found. Errors: false for a number beyond the doubles, with the
/// largest one of its sign in `value`.
bool readNumber(std::string_view number, double& value)
{
    const bool isNegative = number.front() == '-';
    if (number.front() == '+' || isNegative)
        number.remove_prefix(1);
    double read = 0.0;
    const auto end = std::from_chars(number.data(), number.data() + number.size(), read);
    const bool isOutOfRange = end.ec == std::errc::result_out_of_range;
    const bool isAbove = isOutOfRange ? isTooLarge(number) : !std::isfinite(read);
    if (isAbove)
        read = std::numeric_limits<double>::max();
    else if (isOutOfRange)
        read = 0.0;
    value = isNegative ? -read : read;
    return !isAbove;
}

/// [sign] digits [. digits] [exponent], as users write numbers: no bare point at either end.
bool isWrittenNumber(std::string_view text)
{
    if (text.empty() || numberLength(text) != text.size())
        return false;
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos)
        return true;
    return point > 0 && isDigit(text[point - 1]) && point + 1 < text.size()
        && isDigit(text[point + 1]);
}

} // namespace

bool UgualeA(double left, double right)
{
    if (left == right)
        return true;
    const double scale = std::max({ 1.0, std::fabs(left), std::fabs(right) });
    return std::isfinite(scale) && std::fabs(left - right) <= 1e-9 * scale;
}

double DoubleDaString(const std::string& text)
{
    std::string number(trimmed(text));
    if (number.find('.') == std::string::npos) {
        const auto comma = number.find(',');
        if (comma != std::string::npos)
            number[comma] = '.';
    }
    double value = 0.0;
    if (!isWrittenNumber(number) || !orv::ParseDouble(number, value))
        return orv::UnsetDecimal;
    return value;
}

std::string StringDaDouble(double value, int /*flag*/, int decimals)
{
    constexpr double FirstUndefined = 8.5e199;
    std::string text;
    if (!(value >= FirstUndefined))
        orv::AppendFixed(text, value, decimals);
    return text;
}

long LongRound(double value)
{
    constexpr double FirstAbove = 9223372036854775808.0;
    if (std::isnan(value))
        return 0;
    const double rounded = std::round(value);
    if (rounded >= FirstAbove)
        return LONG_MAX;
    return rounded <= -FirstAbove ? LONG_MIN : static_cast<long>(rounded);
}

double orv_atof(const char* text)
{
    return text ? orv_atof(std::string_view(text)) : 0.0;
}

double orv_atof(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    double value = 0.0;
    if (const std::size_t length = numberLength(text))
        readNumber(text.substr(0, length), value);
    return value;
}

int orv_atoi(const char* text)
{
    return text ? orv_atoi(std::string_view(text)) : 0;
}

int orv_atoi(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+'))
        text.remove_prefix(1);
    long long value = 0;
    for (const char byte : text) {
        if (!isDigit(byte))
            break;
        value = std::min(value * 10 + (byte - '0'), 1LL + INT_MAX);
    }
    return static_cast<int>(isNegative ? -value : std::min<long long>(value, INT_MAX));
}

namespace orv {

bool ParseDouble(std::string_view text, double& value)
{
    // Most texts are a plain number from end to end, which need not be looked through first.
    const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
    if (text.size() > sign && isDigit(text[sign])) {
        double plain = 0.0;
        const char* const end = text.data() + text.size();
        if (const auto read = std::from_chars(text.data(), end, plain);
            read.ec == std::errc() && read.ptr == end) {
            value = plain;
            return true;
        }
    }
    text = trimmed(text);
    if (text.empty() || numberLength(text) != text.size())
        return false;
    double read = 0.0;
    if (!readNumber(text, read))
        return false;
    value = read;
    return true;
}

} // namespace orv
