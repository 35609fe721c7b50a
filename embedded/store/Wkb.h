// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/EntityStore.h"

#include <string>
#include <string_view>
#include <vector>

namespace embedded::store {

/// How a layer's shapes are stored.
struct ShapeLayout {
    gis::EntType type = gis::EntType::Points;
    bool hasZ = false;
    bool hasM = false;
    /// Points only: every shape is a multipoint. Lines and polygons always are multi-shapes, as
    /// shapefiles' are.
    bool isMultiPoint = false;
    std::int32_t srsId = -1;
    [[nodiscard]] int stride() const { return 2 + (hasZ ? 1 : 0) + (hasM ? 1 : 0); }
};

/// Shapes of consecutive entities in flat arrays.
struct ShapeBuffer {
    std::vector<int> partCounts; // one an entity
    std::vector<int> partSizes; // vertices, one a part
    std::vector<double> coordinates;
};

enum class ShapeState {
    Taken,
    None, // no shape, or an empty one
    Unsupported, // curves, collections, another kind than the layer's
    Damaged,
};

/// Appends the GeoPackage form of an entity's shape to `out` (nothing for an entity without parts)
/// and returns its box. `hint` is emptied, or gets what the form cannot say: the parts' own order
/// or sizes.
/// Source: OGC 12-128 (GeoPackage), "BLOB format"; ISO WKB, little-endian.
Box encodeShape(const EntityStore& entities, int entityIndex, const ShapeLayout& layout,
    std::string& out, std::string& hint);

/// Reads one shape and appends it to `out` as one more entity (without parts unless taken). Rings
/// come out closed, outer ones clockwise, unless a hint says that they were otherwise. Missing Z
/// become 0, missing M become NaN.
ShapeState decodeShape(
    std::string_view blob, std::string_view hint, const ShapeLayout& layout, ShapeBuffer& out);

/// What a shape is, by its first bytes.
struct ShapeLook {
    int kind = -1; // of its members as gis::EntType: 1, 3, 5; 0 for an empty one, -1 for any other
    bool hasZ = false;
    bool hasM = false;
};
ShapeLook lookAtShape(std::string_view blob);

} // namespace embedded::store
