// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/Describe.h"

#include "host/base/Numbers.h"

#include <array>

namespace support {
namespace {

constexpr std::array<const char*, 6> FormatNames
    = { "text", "boolean", "integer", "decimal", "list", "date" };
constexpr std::array<const char*, 15> TypeNames
    = { "user", "name", "description", "area", "perimeter2d", "perimeter3d", "x", "y", "z",
          "sketch", "photo1", "photo2", "photo3", "photo4", "photo5" };

template <std::size_t N>
std::string nameOf(const std::array<const char*, N>& names, int value, const char* kind)
{
    if (value >= 0 && value < static_cast<int>(N))
        return names[static_cast<std::size_t>(value)];
    return kind + std::to_string(value);
}

} // namespace

std::string quoted(std::string_view text)
{
    std::string out = "'";
    for (const char c : text) {
        out += c;
        if (c == '\'')
            out += c;
    }
    return out + "'";
}

std::string describe(orv::CPolyValue* values)
{
    return values ? "values" : "null";
}

std::string describe(const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyEmpty:
        return "-";
    case orv::PolyBool:
        return describe(value.GetBoolValue());
    case orv::PolyInt32:
        return std::to_string(value.GetInt32Value());
    case orv::PolyDouble:
        return orv::ShortestText(value.GetDoubleValue());
    case orv::PolyString:
        return quoted(value.TextView());
    case orv::PolyArray: {
        std::string out = "[";
        for (unsigned i = 0; i < value.GetNoArrayElements(); ++i)
            out += (i ? ", " : "") + describe(value.GetStringValue(i));
        return out + "]";
    }
    default:
        return value.GetStringValue().Bytes();
    }
}

std::string describe(const orv::String& text)
{
    return quoted(text.View());
}

std::string describe(const char* text)
{
    return text ? quoted(text) : "null";
}

std::string describe(gis::EntType type)
{
    switch (type) {
    case gis::EntType::Points:
        return "points";
    case gis::EntType::Lines:
        return "lines";
    case gis::EntType::Polygons:
        return "polygons";
    }
    return "type" + std::to_string(static_cast<int>(type));
}

std::string describe(gis::EntTypeCoords coords)
{
    static constexpr std::array<const char*, 3> Names = { "2d", "m", "3d" };
    return nameOf(Names, static_cast<int>(coords), "coords");
}

std::string describe(gis::FieldFormat format)
{
    return nameOf(FormatNames, static_cast<int>(format), "format");
}

std::string describe(gis::FieldType type)
{
    return nameOf(TypeNames, static_cast<int>(type), "type");
}

std::string describe(bool value)
{
    return value ? "yes" : "no";
}

std::string describe(int value)
{
    return std::to_string(value);
}

std::string describe(std::int64_t value)
{
    return std::to_string(value);
}

std::string describe(double value)
{
    return orv::ShortestText(value);
}

} // namespace support
