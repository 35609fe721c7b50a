// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/drawing/MapPicture.h"

#include <vector>

namespace app {

/// The entity nearest to a place within a tolerance, topmost layer first; null where there is none.
/// A polygon is hit inside. Units: drawing units.
gis::CEnt* entityAt(const embedded::MapContent& content, double x, double y, double tolerance);

/// Entities that a rectangle touches with a vertex, a segment or their inside, in drawing order.
std::vector<gis::CEnt*> entitiesIn(const embedded::MapContent& content, const embedded::Box& box);

} // namespace app
