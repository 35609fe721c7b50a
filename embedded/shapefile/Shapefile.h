// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"
#include "embedded/model/Library.h"

#include <memory>
#include <string>
#include <vector>

namespace gis {
class IGisMerger;
}

namespace embedded {

struct ShapefileImportOptions {
    std::string encoding; // overrides what the files say; empty: decided by the files
    TOpzImportShape points;
    bool strict = false; // any warning refuses the file
};

struct ShapefileImportResult {
    gis::CDBTable* table = nullptr;
    gis::CTheme* theme = nullptr;
    bool tableRenamed = false;
};

/// Reads a shapefile into a library. The table and theme are named after the file; `merger` settles
/// clashes (null: a clash is refused with NameClash). Errors: FileNotFound, NotAFile, NoPermission,
/// EmptyFile, NoShapeHeader, UnknownShapeType, NoDbf, BadDbf, UnknownEncoding (one that was asked
/// for), StrictFinding, NameClash, Cancelled; the library is then as before. Findings go to
/// `report`. One undo step.
Result<ShapefileImportResult> importShapefile(gis::CLibGis& library, const std::string& path,
    const ShapefileImportOptions& options, gis::IGisMerger* merger, gis::ILinkImportedEnt* link,
    Report& report);

enum class ExportCoordinates { AsTheme = 0, XY = 1, XYZ = 2 };

struct ShapefileExportOptions {
    int maxTextBytes = 254;
    ExportCoordinates coordinates = ExportCoordinates::AsTheme;
};

/// True when a file of the shapefile that the theme would be written to exists. `path` receives the
/// path without extension.
bool shapefileExists(gis::CTheme& theme, const std::string& folder, std::string& path);

/// Writes a theme as a shapefile named after it (characters that a file name cannot have become
/// '_'); existing files are replaced together at the end. Errors: FolderNotFound,
/// FolderNotAbsolute, WriteFailed, DiskFull, Cancelled, with `errorFlags` (1 .shp, 2 .dbf); nothing
/// half written stays.
Result<void> exportShapefile(gis::CTheme& theme, const std::string& folder,
    const ShapefileExportOptions& options, int& errorFlags, Report& report);

/// The names of a .dbf's fields, decoded as an import decodes them. `encoding` as in the options of
/// the import. Errors: FileNotFound, NotAFile, NoPermission, EmptyFile, BadDbf, UnknownEncoding.
Result<std::vector<std::string>> dbfFieldNamesOf(
    const std::string& path, const std::string& encoding);

/// Entity type of a .shp (1, 3, 5) and coordinates of its shapes; -1 when unreadable or of another
/// type.
int shapefileEntityType(const std::string& path, gis::EntTypeCoords* coords = nullptr);

} // namespace embedded
