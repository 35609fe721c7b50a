// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Theme.h"
#include "embedded/shapefile/OutputFiles.h"
#include "embedded/shapefile/Shapefile.h"

#include <atomic>
#include <cstdint>

namespace embedded {

/// How a theme's shapes are written.
struct ShapeLayout {
    std::int32_t type = 0; // of the .shp
    bool hasZ = false;
    bool hasM = false;
};

/// The layout for a theme; what is dropped or added goes to `report`. Points of which one entity
/// has several make a file of multipoints.
ShapeLayout shapeLayout(gis::CTheme& theme, ExportCoordinates coordinates, Report& report);

/// Writes the entities of a theme, in order; entities without vertices as null shapes.
/// Thread: any that nobody changes the theme beside. Gives up when `stop` becomes true; counts what
/// it wrote in `done`. Returns how many shapes have coordinates that are no numbers; they are
/// written as null shapes too.
std::int64_t writeShapes(const EntityStore& entities, const ShapeLayout& layout, OutputFile& shp,
    OutputFile& shx, const std::atomic<bool>& stop, std::atomic<std::int64_t>& done);

} // namespace embedded
