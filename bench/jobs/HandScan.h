// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "bench/data/PointData.h"

#include <vector>

namespace gis {
class CEnt;
}

namespace bench {

/// The bound for the query engine: the measured queries 'a' to 'e' written by hand over typed
/// arrays, with two threads, giving the same ordered vector of entity handles. `first` and
/// `strideBytes` say where the handles lie.
void handScan(char query, const PointArrays& points, char* first, std::ptrdiff_t strideBytes,
    std::vector<gis::CEnt*>& result);

} // namespace bench
