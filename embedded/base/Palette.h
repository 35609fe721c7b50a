// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The drawing's colours by index, and those that a thematic map gives its classes.

#include <array>
#include <cstdint>

namespace embedded {

inline constexpr int PaletteSize = 256;
/// Drawn black on a light ground and white on a dark one.
inline constexpr int ForegroundColour = 7;
enum class Ground { Light, Dark };

/// 0xRRGGBB of a colour index: 1 red, 2 yellow, 3 green, 4 cyan, 5 blue, 6 magenta, 8 and 9 greys,
/// from 10 to 249 hues, from 250 to 255 greys. Any other index is the foreground.
std::uint32_t paletteColour(int index, Ground ground = Ground::Light);

/// Colours of classes by their order. The first eight differ for normal, deutan and protan sight
/// and in grey, and all stand out from light and dark grounds: computed by tools/class-colours.py.
inline constexpr std::array<std::uint8_t, 24> ClassColours = { 200, 62, 27, 55, 241, 203, 154, 147,
    151, 66, 202, 191, 232, 143, 145, 21, 165, 115, 36, 221, 112, 35, 224, 1 };

/// The colour index of the class of this order (from 0); begins anew after the last.
int classColour(int order);

} // namespace embedded
