// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Library.h"
#include "embedded/store/Connection.h"
#include "embedded/store/FileState.h"

namespace embedded::store {

/// Builds a library from another program's GeoPackage: each layer a theme with its table, each
/// attribute table a table. Formats need a look at all values, so everything is read once here;
/// cells and shapes themselves are read later, as of a library of ours.
void readForeignTables(Connection& connection, Library& library, FileState& state, Report& report);

} // namespace embedded::store
