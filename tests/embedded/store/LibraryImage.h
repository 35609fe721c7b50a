// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <string>

namespace storetest {

/// Everything that a library holds as text, doubles to the bit, days as calendar days: two
/// libraries are the same when their images are. Reads all columns and shapes.
std::string imageOf(gis::CLibGis& library);

} // namespace storetest
