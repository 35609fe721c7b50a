// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
// Any bytes as the .shp of a shapefile whose other files are sound.

#include "tests/embedded/shapefile/fuzz/FuzzedImport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    shapetest::importFuzzed(".shp", { reinterpret_cast<const char*>(data), size });
    return 0;
}
