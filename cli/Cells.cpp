// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Cells.h"

#include "cli/Utf8.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

bool isIn(std::uint32_t character, const Range* begin, const Range* end)
{
    return std::any_of(begin, end, [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

/// Source: Unicode 15, general categories Mn, Me and Cf, the blocks met in names.
constexpr Range Combining[] = { { 0x0300, 0x036F }, { 0x0483, 0x0489 }, { 0x0591, 0x05BD },
    { 0x0610, 0x061A }, { 0x064B, 0x065F }, { 0x0E31, 0x0E31 }, { 0x0E34, 0x0E3A },
    { 0x0E47, 0x0E4E }, { 0x1AB0, 0x1AFF }, { 0x1DC0, 0x1DFF }, { 0x200B, 0x200F },
    { 0x202A, 0x202E }, { 0x2060, 0x2064 }, { 0x20D0, 0x20FF }, { 0xFE00, 0xFE0F },
    { 0xFE20, 0xFE2F }, { 0xFEFF, 0xFEFF } };
/// Source: Unicode 15, East Asian Width W and F.
constexpr Range Wide[]
    = { { 0x1100, 0x115F }, { 0x231A, 0x231B }, { 0x2329, 0x232A }, { 0x23E9, 0x23EC },
          { 0x2E80, 0x303E }, { 0x3041, 0x33FF }, { 0x3400, 0x4DBF }, { 0x4E00, 0x9FFF },
          { 0xA000, 0xA4CF }, { 0xA960, 0xA97F }, { 0xAC00, 0xD7A3 }, { 0xF900, 0xFAFF },
          { 0xFE30, 0xFE6F }, { 0xFF00, 0xFF60 }, { 0xFFE0, 0xFFE6 }, { 0x1F300, 0x1F64F },
          { 0x1F680, 0x1F6FF }, { 0x1F900, 0x1F9FF }, { 0x1FA70, 0x1FAFF }, { 0x20000, 0x3FFFD } };

std::string isoDate(std::int64_t moment)
{
    std::int32_t dayNumber = 0;
    if (!orv::LocalDayNumber(moment, dayNumber))
        return {};
    const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
    return fmt::format("{:04}-{:02}-{:02}", day.year, day.month, day.day);
}

} // namespace

OutputColumn columnOf(gis::CLibGis& library, gis::CField* field)
{
    OutputColumn column { validText(library.GetFieldName(field).View()),
        library.GetFieldFormat(field), 0 };
    if (column.format == gis::FieldFormat::Decimal) {
        std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
        library.GetFieldConstraints(field, constraints.data());
        column.digits = std::clamp(constraints[3].GetInt32Value(), 0, gis::MaxDecimalDigits);
    }
    return column;
}

std::string shownText(const orv::CPolyValue& value, const OutputColumn& column)
{
    if (value.GetType() == orv::PolyString)
        return validText(value.TextView());
    if (value.GetType() != orv::PolyDouble)
        return value.GetStringValue().Bytes();
    std::string text;
    orv::AppendFixed(text, value.GetDoubleValue(), column.digits);
    return text;
}

void appendJson(std::string& out, const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyEmpty:
        out += "null";
        break;
    case orv::PolyBool:
        out += value.GetBoolValue() ? "true" : "false";
        break;
    case orv::PolyInt32:
        out += fmt::format_int(value.GetInt32Value()).str();
        break;
    case orv::PolyDouble:
        appendJsonNumber(out, value.GetDoubleValue());
        break;
    case orv::PolyDate:
        appendJsonText(out, isoDate(value.GetDateValue()));
        break;
    default:
        appendJsonText(out, value.GetStringValue().View());
    }
}

void appendJsonText(std::string& out, std::string_view text)
{
    out += '"';
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        const std::uint32_t character = nextCharacter(text, position);
        if (character == '"' || character == '\\') {
            out += '\\';
            out += static_cast<char>(character);
        } else if (character < 0x20 || character == 0x7F) {
            out += fmt::format("\\u{:04x}", character);
        } else if (character == 0xFFFD) {
            out += "\xEF\xBF\xBD";
        } else {
            out += text.substr(start, position - start);
        }
    }
    out += '"';
}

void appendJsonNumber(std::string& out, double value)
{
    out += std::isfinite(value) ? orv::ShortestText(value) : "null";
}

std::string validText(std::string_view text)
{
    if (std::all_of(
            text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
        return std::string(text);
    std::string valid;
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        if (nextCharacter(text, position) == 0xFFFD)
            valid += "\xEF\xBF\xBD";
        else
            valid += text.substr(start, position - start);
    }
    return valid;
}

std::string plainText(std::string_view text)
{
    std::string plain = validText(text);
    std::replace_if(
        plain.begin(), plain.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return plain;
}

int terminalWidth(std::string_view text)
{
    int width = 0;
    for (std::size_t position = 0; position < text.size();) {
        const std::uint32_t character = nextCharacter(text, position);
        if (character < 0x300)
            ++width;
        else if (isIn(character, std::begin(Wide), std::end(Wide)))
            width += 2;
        else if (!isIn(character, std::begin(Combining), std::end(Combining)))
            ++width;
    }
    return width;
}

} // namespace cli
