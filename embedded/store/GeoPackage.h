// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"
#include "embedded/model/Library.h"

#include <memory>
#include <string>

namespace embedded {

enum class OpenMode {
    Read, // other programs may write meanwhile; never blocks them for long
    Write, // a second writer is refused, readers go on
};

/// Opens a GeoPackage: a library of ours, or another program's file (each feature table becomes a
/// theme with its table, each attribute table a table; such a file is never written to). Columns
/// and geometry are read on first use. Errors: FileNotFound, NotAFile, NoPermission, EmptyFile,
/// NotALibrary, NewerFormat, DamagedFile, LockedForWriting. Owner: the caller owns the library, the
/// library its connection. `changes` may be null and must outlive the library.
Result<std::unique_ptr<gis::CLibGis>> openLibrary(const std::string& path, OpenMode mode,
    orv::CChangeTransactionManager* changes, Report& report);

/// Writes what changed since the last save into the library's own file, as one transaction: after a
/// crash or on a full disk the file holds the old state or the new one. Errors: ReadOnly,
/// LockedForWriting, BusyReaders, WriteFailed, DiskFull, Cancelled; the library stays as it is,
/// still unsaved.
Result<void> saveLibrary(gis::CLibGis& library);

/// Writes the whole library to `path` (made beside it and put in its place at once) and works on
/// that file from then on.
Result<void> saveLibraryAs(gis::CLibGis& library, const std::string& path);
/// As `saveLibraryAs`, but the library goes on working on its own file and stays unsaved (recovery
/// copies).
Result<void> saveLibraryCopy(gis::CLibGis& library, const std::string& path);

/// The file the library works on; empty for one that was never saved or that another program's file
/// gave.
std::string libraryPath(gis::CLibGis& library);
/// True when `path` is a GeoPackage (by content).
bool isGeoPackage(const std::string& path);
/// The version of the library's own tables in the file.
inline constexpr int LibraryFormatVersion = 1;

} // namespace embedded
