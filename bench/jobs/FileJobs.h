// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "bench/support/Jobs.h"

#include <string>

namespace bench {

/// The measured points as a shapefile and as a library, made once in the bench's folder; their
/// paths.
std::string pointsShapefile(const Jobs& jobs, int rows);
std::string pointsLibrary(const Jobs& jobs, int rows);

/// Wall times of the command line in milliseconds: import into a new library, export as a
/// shapefile, `query (e) --count`.
double importMs(const Jobs& jobs, const std::string& shapefile, int repetitions);
double exportMs(const Jobs& jobs, const std::string& library, int repetitions);
double countMs(const Jobs& jobs, const std::string& library, int repetitions);

} // namespace bench
