// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace gis {
class CLibGis;
}

namespace samples {

/// Fills an empty library with the invented town of Borgofiore: streets, buildings, lamps, trees
/// and survey points, with the fields that a municipal office keeps. The same seed gives the same
/// town. Units: metres in UTM zone 32 (EPSG:32632), dates as calendar days. Thread: the library's.
void buildTown(gis::CLibGis& library, std::uint64_t seed);

} // namespace samples
