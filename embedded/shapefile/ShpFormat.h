// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Layout of .shp and .shx files, after the ESRI Shapefile Technical Description (July 1998):
// file code, lengths and record headers are big-endian, all else little-endian; lengths and
// offsets count 16-bit words.

#include "host/gis/Types.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace embedded::shp {

inline constexpr std::size_t HeaderBytes = 100;
inline constexpr std::size_t RecordHeaderBytes = 8;
inline constexpr std::int32_t FileCode = 9994;
inline constexpr std::int32_t Version = 1000;
/// Measures below this stand for "no measure"; written as -1e39.
inline constexpr double NoMeasureLimit = -1e38;
inline constexpr double NoMeasure = -1e39;

enum ShapeType : std::int32_t {
    Null = 0,
    Point = 1,
    PolyLine = 3,
    Polygon = 5,
    MultiPoint = 8,
    PointZ = 11,
    PolyLineZ = 13,
    PolygonZ = 15,
    MultiPointZ = 18,
    PointM = 21,
    PolyLineM = 23,
    PolygonM = 25,
    MultiPointM = 28,
};

/// The type without its coordinates: 1, 3, 5 or 8; 0 for null, multipatch and unknown types.
constexpr std::int32_t familyOf(std::int32_t type)
{
    const std::int32_t family = type % 10;
    const bool isKnown
        = type > 0 && type < 30 && (family == 1 || family == 3 || family == 5 || family == 8);
    return isKnown ? family : 0;
}
constexpr bool hasZ(std::int32_t type)
{
    return familyOf(type) != 0 && type / 10 == 1;
}
constexpr bool isMType(std::int32_t type)
{
    return familyOf(type) != 0 && type / 10 == 2;
}
constexpr gis::EntType entTypeOf(std::int32_t type)
{
    const std::int32_t family = familyOf(type);
    return family == MultiPoint ? gis::EntType::Points : static_cast<gis::EntType>(family);
}
constexpr gis::EntTypeCoords coordsOf(std::int32_t type)
{
    return hasZ(type) ? gis::EntTypeCoords::XYZ
                      : (isMType(type) ? gis::EntTypeCoords::XYM : gis::EntTypeCoords::XY);
}

inline std::uint32_t loadLittle32(const unsigned char* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8
        | static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}
inline std::int32_t little32(const unsigned char* bytes)
{
    return static_cast<std::int32_t>(loadLittle32(bytes));
}
inline std::uint64_t loadLittle64(const unsigned char* bytes)
{
    return loadLittle32(bytes) | static_cast<std::uint64_t>(loadLittle32(bytes + 4)) << 32;
}
inline std::int32_t big32(const unsigned char* bytes)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(bytes[0]) << 24
        | static_cast<std::uint32_t>(bytes[1]) << 16 | static_cast<std::uint32_t>(bytes[2]) << 8
        | static_cast<std::uint32_t>(bytes[3]));
}
inline double littleDouble(const unsigned char* bytes)
{
    return std::bit_cast<double>(loadLittle64(bytes));
}

} // namespace embedded::shp
