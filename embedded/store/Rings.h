// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/EntityStore.h"

#include <vector>

namespace embedded::store {

/// Twice the signed area of a ring: positive when it runs counter-clockwise.
double doubledArea(const PartView& ring);

/// The rings of a polygon entity as polygons with holes.
struct RingGroups {
    std::vector<std::vector<int>> polygons; // part numbers: the outer ring, then its holes
    /// The groups, read one after another, give the parts in their own order, and every ring runs
    /// as its role asks: nothing but the shape itself needs to be stored.
    bool isPlain = true;
};

/// Outer rings run clockwise, holes counter-clockwise. A hole belongs to the smallest outer ring
/// that holds it; a ring without one stands as a polygon of its own.
RingGroups groupRings(const EntityStore& entities, int entityIndex);

} // namespace embedded::store
