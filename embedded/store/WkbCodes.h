// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// Codes of the shapes in ISO WKB; Z adds 1000, M adds 2000.
namespace embedded::store::wkb {

inline constexpr std::uint32_t Point = 1;
inline constexpr std::uint32_t LineString = 2;
inline constexpr std::uint32_t Polygon = 3;
inline constexpr std::uint32_t MultiPoint = 4;
inline constexpr std::uint32_t MultiLineString = 5;
inline constexpr std::uint32_t MultiPolygon = 6;
inline constexpr std::uint32_t Collection = 7;

} // namespace embedded::store::wkb
