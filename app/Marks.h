// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/drawing/MapPicture.h"

namespace app {

struct Highlight;

/// The layers that mark found and selected entities above the map, on a transparent ground.
/// `content` gives the snapshots, so that marks and map agree.
embedded::MapContent lastingMarks(const embedded::MapContent& content, const Highlight& highlight);

/// The same with the current entity's mark on top; null: none.
embedded::MapContent withCurrentMark(
    embedded::MapContent marks, const embedded::MapContent& content, gis::CEnt* current);

} // namespace app
