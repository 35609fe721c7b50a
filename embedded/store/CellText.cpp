// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/CellText.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>

namespace embedded::store {
namespace {

bool takeDigits(std::string_view& text, std::size_t count, int& value)
{
    if (text.size() < count)
        return false;
    const auto [end, problem] = std::from_chars(text.data(), text.data() + count, value);
    if (problem != std::errc() || end != text.data() + count || text.front() == '-')
        return false;
    text.remove_prefix(count);
    return true;
}

bool takeMark(std::string_view& text, char mark)
{
    if (text.empty() || text.front() != mark)
        return false;
    text.remove_prefix(1);
    return true;
}

template <typename Number> std::string numberText(Number value)
{
    std::array<char, 40> buffer {};
    const auto [end, problem] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return { buffer.data(), problem == std::errc() ? end : buffer.data() };
}

template <typename Number> bool takeNumber(std::string_view& text, Number& value)
{
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (problem != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

std::string encodedDate(std::int64_t moment)
{
    std::int32_t day = 0;
    if (!orv::LocalDayNumber(moment, day))
        return "M" + numberText(moment);
    const auto text = isoDay(day);
    return "D" + std::string(text.data(), text.size()) + "+"
        + numberText(moment - orv::LocalMidnightOfDay(day));
}

orv::CPolyValue decodedDate(std::string_view text, bool isDay)
{
    orv::CPolyValue value;
    std::int32_t day = 0;
    bool hasTime = false;
    std::int64_t moment = 0;
    if (isDay) {
        if (!parseIsoDay(text.substr(0, 10), day, hasTime))
            return value;
        text.remove_prefix(10);
    }
    if ((isDay && !takeMark(text, '+')) || !takeNumber(text, moment))
        return value;
    value.SetDateValue(isDay ? orv::LocalMidnightOfDay(day) + moment : moment);
    return value;
}

std::string encodedArray(const orv::CPolyValue& value)
{
    const unsigned count = value.GetNoArrayElements();
    std::string out = "a" + numberText(count) + ":";
    for (unsigned i = 0; i < count; ++i) {
        const orv::String element = value.GetStringValue(i);
        out += numberText(element.Length()) + ":" + element.Bytes();
    }
    return out;
}

orv::CPolyValue decodedArray(std::string_view text)
{
    unsigned count = 0;
    if (!takeNumber(text, count) || !takeMark(text, ':') || count > text.size() / 2)
        return {};
    orv::CPolyValue value;
    value.CreateArray(count, orv::PolyString);
    for (unsigned i = 0; i < count; ++i) {
        std::size_t length = 0;
        if (!takeNumber(text, length) || !takeMark(text, ':') || length > text.size())
            return {};
        value.SetStringValue(i, orv::String(text.substr(0, length)));
        text.remove_prefix(length);
    }
    return value;
}

template <typename Number> orv::CPolyValue decodedNumber(std::string_view text)
{
    Number number {};
    return takeNumber(text, number) ? orv::CPolyValue(number) : orv::CPolyValue();
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::any_of(words.begin(), words.end(),
        [text](std::string_view word) { return orv::CompareIgnoreAsciiCase(text, word) == 0; });
}

} // namespace

std::array<char, 10> isoDay(std::int32_t dayNumber)
{
    const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
    std::array<char, 10> text { '0', '0', '0', '0', '-', '0', '0', '-', '0', '0' };
    const auto put = [&](std::size_t lastDigit, int number) {
        for (; number > 0; number /= 10)
            text[lastDigit--] = static_cast<char>('0' + number % 10);
    };
    put(3, day.year % 10000);
    put(6, day.month);
    put(9, day.day);
    return text;
}

std::optional<bool> booleanOf(std::string_view text)
{
    if (isOneOf(text, { "1", "true", "t", "yes", "y", "s\xC3\xAC", "si" }))
        return true;
    if (isOneOf(text, { "0", "false", "f", "no", "n" }))
        return false;
    return std::nullopt;
}

bool parseIsoDay(std::string_view text, std::int32_t& dayNumber, bool& hasTime)
{
    orv::CalendarDay day;
    if (!takeDigits(text, 4, day.year) || !takeMark(text, '-') || !takeDigits(text, 2, day.month)
        || !takeMark(text, '-') || !takeDigits(text, 2, day.day))
        return false;
    if (!text.empty() && text.front() != 'T' && text.front() != ' ')
        return false;
    // Midnight is what a day without a time of day looks like in a column of moments.
    hasTime = text.find_first_of("123456789") != std::string_view::npos;
    return orv::DayNumber(day, dayNumber);
}

std::string encodedValue(const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyBool:
        return value.GetBoolValue() ? "b1" : "b0";
    case orv::PolyInt32:
        return "i" + numberText(value.GetInt32Value());
    case orv::PolyDouble:
        return "d" + numberText(value.GetDoubleValue());
    case orv::PolyString:
        return "t" + std::string(value.TextView());
    case orv::PolyDate:
        return encodedDate(value.GetDateValue());
    case orv::PolyArray:
        return encodedArray(value);
    default:
        return {};
    }
}

orv::CPolyValue decodedValue(std::string_view text)
{
    if (text.empty())
        return {};
    const char kind = text.front();
    text.remove_prefix(1);
    switch (kind) {
    case 'b':
        return orv::CPolyValue(text == "1");
    case 'i':
        return decodedNumber<int>(text);
    case 'd':
        return decodedNumber<double>(text);
    case 't':
        return orv::CPolyValue(orv::String(text));
    case 'D':
    case 'M':
        return decodedDate(text, kind == 'D');
    case 'a':
        return decodedArray(text);
    default:
        return {};
    }
}

} // namespace embedded::store
