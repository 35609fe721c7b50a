// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstring>
#include <limits>

namespace {

constexpr double UnsetNumber = 1.7e200;
constexpr double LargestSetNumber = 8.5e199;

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
char lower(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string_view withoutBlanks(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Length of the number at the beginning of `text`: sign, digits, point, digits, exponent; 0
/// without digits.
std::size_t numberLength(std::string_view text)
{
    std::size_t at = 0;
    std::size_t digits = 0;
    const auto skipDigits = [&] {
        for (; at < text.size() && isDigit(text[at]); ++at)
            ++digits;
    };
    if (at < text.size() && (text[at] == '+' || text[at] == '-'))
        ++at;
    skipDigits();
    if (at < text.size() && text[at] == '.') {
        ++at;
        skipDigits();
    }
    if (digits == 0)
        return 0;
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::size_t exponent = at + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
            ++exponent;
        if (exponent < text.size() && isDigit(text[exponent])) {
            for (at = exponent; at < text.size() && isDigit(text[at]); ++at) { }
        }
    }
    return at;
}

/// Value of a text that `numberLength` accepted. What does not fit a double is infinite, what is
/// too small is 0.
double numberValue(std::string_view number)
{
    const bool negative = number.front() == '-';
    if (number.front() == '+')
        number.remove_prefix(1);
    double value = 0;
    const auto [end, problem]
        = std::from_chars(number.data(), number.data() + number.size(), value);
    if (problem != std::errc::result_out_of_range)
        return value;
    // from_chars leaves the value alone here; the exponent's sign, or else the length of the
    // digits, tells which way.
    const std::size_t exponent = number.find_first_of("eE");
    const std::size_t significant = number.find_first_of("123456789");
    const bool tiny = exponent != std::string_view::npos ? number[exponent + 1] == '-'
                                                         : number.find('.') < significant;
    const double magnitude = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    return negative ? -magnitude : magnitude;
}

} // namespace

bool UgualeA(double left, double right)
{
    return std::abs(left - right) <= 1e-9 * std::max({ 1.0, std::abs(left), std::abs(right) });
}

double DoubleDaString(const std::string& text)
{
    std::string number(withoutBlanks(text));
    const std::size_t comma = number.find(',');
    if (comma != std::string::npos && number.find('.') == std::string::npos)
        number[comma] = '.';
    if (number.empty() || numberLength(number) != number.size())
        return UnsetNumber;
    return numberValue(number);
}

std::string StringDaDouble(double value, int, int decimals)
{
    std::string text;
    if (value < LargestSetNumber)
        orv::AppendFixed(text, value, decimals);
    return text;
}

long LongRound(double value)
{
    if (std::isnan(value))
        return 0;
    const double rounded = std::round(value);
    if (rounded >= 9223372036854775808.0)
        return std::numeric_limits<long>::max();
    if (rounded < -9223372036854775808.0)
        return std::numeric_limits<long>::min();
    return static_cast<long>(rounded);
}

double orv_atof(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    const std::size_t length = numberLength(text);
    return length == 0 ? 0.0 : numberValue(text.substr(0, length));
}
double orv_atof(const char* text)
{
    return text ? orv_atof(std::string_view(text)) : 0.0;
}

int orv_atoi(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '+' || text.front() == '-'))
        text.remove_prefix(1);
    std::int64_t value = 0;
    constexpr std::int64_t Most = std::int64_t(std::numeric_limits<int>::max()) + 1;
    for (char c : text) {
        if (!isDigit(c))
            break;
        value = std::min(value * 10 + (c - '0'), Most);
    }
    return static_cast<int>(negative ? -value : std::min(value, Most - 1));
}
int orv_atoi(const char* text)
{
    return text ? orv_atoi(std::string_view(text)) : 0;
}

namespace orv {

std::string ShortestText(double value)
{
    if (!std::isfinite(value))
        return std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
    char digits[64];
    const auto scientific
        = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::scientific);
    const std::string_view text(digits, static_cast<std::size_t>(scientific.ptr - digits));
    int exponent = 0;
    const std::size_t e = text.find('e');
    const char* first = digits + e + (text[e + 1] == '+' ? 2 : 1);
    std::from_chars(first, scientific.ptr, exponent);
    if (exponent < -5 || exponent > 15)
        return std::string(text);
    char plain[64];
    const auto end
        = std::to_chars(plain, plain + sizeof plain, value, std::chars_format::fixed).ptr;
    return { plain, end };
}

void AppendFixed(std::string& out, double value, int decimals)
{
    if (!std::isfinite(value))
        return;
    char digits[400]; // 309 digits, a sign, a point and 60 decimals
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed,
        std::clamp(decimals, 0, 60))
                         .ptr;
    out.append(digits, end);
}

double RoundedByText(double value, int decimals)
{
    static constexpr double Powers[] = { 1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10 };
    if (!std::isfinite(value))
        return 0.0; // its text is empty, and an empty text reads as 0
    if (decimals >= 0 && decimals <= 10) {
        // n / 10^d with n below 2^53 is what reading the text of n with d decimals gives, since
        // both are the one correctly rounded quotient. The scaled value is off by an ulp at most,
        // so unless it lies next to a half, n is certain.
        const double power = Powers[decimals];
        const double scaled = std::abs(value) * power;
        if (scaled < 4503599627370496.0) { // 2^52
            const double whole = std::floor(scaled);
            const double rest = scaled - whole;
            const double doubt = scaled * 4.5e-16 + 1e-300;
            if (std::abs(rest - 0.5) > doubt)
                return std::copysign((rest > 0.5 ? whole + 1 : whole) / power, value);
        }
    }
    char digits[400];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed,
        std::clamp(decimals, 0, 60))
                         .ptr;
    double rounded = 0;
    std::from_chars(digits, end, rounded);
    return rounded;
}

bool ParseDouble(std::string_view text, double& value)
{
    const std::string_view number = withoutBlanks(text);
    if (number.empty() || numberLength(number) != number.size())
        return false;
    value = numberValue(number);
    return true;
}

int CompareIgnoreAsciiCase(std::string_view left, std::string_view right)
{
    const std::size_t common = std::min(left.size(), right.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto a = static_cast<unsigned char>(lower(left[i]));
        const auto b = static_cast<unsigned char>(lower(right[i]));
        if (a != b)
            return a < b ? -1 : 1;
    }
    return left.size() == right.size() ? 0 : left.size() < right.size() ? -1 : 1;
}

std::string FoldAsciiCase(std::string_view text)
{
    std::string folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), lower);
    return folded;
}

} // namespace orv
