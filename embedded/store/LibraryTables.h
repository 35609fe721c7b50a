// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Library.h"
#include "embedded/store/Connection.h"
#include "embedded/store/FileState.h"

#include <cstdint>
#include <map>
#include <string>

namespace embedded::store {

/// The objects of a library by the numbers that they have, or will have, in the file.
struct ObjectIds {
    std::map<const gis::CDBTable*, std::int64_t> tables;
    std::map<const gis::CTheme*, std::int64_t> themes;
};

/// Makes the tables for what GeoPackage has no place for, and registers them as an extension.
void createLibraryTables(Connection& connection);

/// Writes what the library is apart from rows and shapes: tables and fields, themes with labels,
/// maps and classes, layers, linked points. Small, so it is written anew each time. `state`:
/// everything as it lies in the file now.
void writeLibraryTables(
    Connection& connection, Library& library, FileState& state, const ObjectIds& ids);

/// Number of the format of the library's own tables; 0 when there are none.
int libraryFormatOf(Connection& connection);

/// Builds the library's tables, fields and themes and the state of the file; rows and entities come
/// as handles, cells and shapes are read later. `report`: what other programs changed.
void readLibraryTables(Connection& connection, Library& library, FileState& state, Report& report);

/// A number for the linked points as they are, to tell whether they changed.
std::uint64_t linkedPointsMark(const Library& library);

} // namespace embedded::store
