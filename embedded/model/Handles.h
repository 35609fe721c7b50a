// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <cstdint>

// What handles of rows, entities and parts are in this host. Only embedded/model looks inside.

namespace orv {

class CResultRow final {
public:
    gis::CEnt* entity = nullptr;
};

} // namespace orv

namespace gis {

class CEnt final {
public:
    orv::CResultRow* row = nullptr;
    std::int32_t firstPart = 0;
    std::int32_t partCount = 0;
};

class CEntPart final {
public:
    double* coordinates = nullptr;
    std::int32_t vertexCount = 0;
    std::int32_t block = 0; // of the store's vertex memory
};

} // namespace gis
