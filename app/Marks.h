// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/drawing/MapPicture.h"

namespace app {

struct Highlight;

/// The layers that mark found, selected and current entities above the map, on a transparent
/// ground. `content` gives the snapshots, so that marks and map agree.
embedded::MapContent markContent(const embedded::MapContent& content, const Highlight& highlight);

} // namespace app
