// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace shapetest {

/// Imports a small shapefile, one file of which has these bytes, and what was imported is exported
/// and imported again: the same number of entities must come back.
void importFuzzed(const char* extension, std::string_view bytes);

} // namespace shapetest
