// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <vector>

namespace gis {
class IGisMerger;

/// The host's link from imported entities into its drawing; handed through, never called by the
/// dialogs.
class TEMATICA_HOST_API ILinkImportedEnt {
public:
    virtual ~ILinkImportedEnt();
    virtual void OnEntImported(CTheme* theme, CEnt* ent) = 0;
};
} // namespace gis

/// Asked before an existing shapefile is overwritten. Has this one virtual operation.
class TEMATICA_HOST_API IExportFileCallback {
public:
    /// `path` is the shapefile's path without extension; true: overwrite.
    virtual bool AskOverwrite(const orv::String& path) = 0;

protected:
    ~IExportFileCallback();
};

/// Result codes of `FImportFileShape` that callers look at.
enum ImportResultCode : int {
    ImportFileNotFound = 1,
    ImportTableRenamed = 4,
};
/// Error flags of `FExportFileShape`.
enum ExportErrorFlag : int {
    ExportShpNotWritten = 1,
    ExportDbfNotWritten = 2,
};

/// Writes a theme as `folder`/theme name (.shp, .shx, .dbf, .cpg, .prj).
/// `maxTextBytes` limits the width of text columns; `coordinates`: 0 as the theme, 1 2D, 2 3D.
/// Errors: false with `errorFlags`; a "no" of the callback is no error (true, 0). Nothing is left
/// half written.
TEMATICA_HOST_API bool FExportFileShape(gis::CLibGis* library, gis::CTheme* theme,
    const orv::String& folder, int maxTextBytes, int coordinates, IExportFileCallback* callback,
    int& errorFlags);

/// Reads a shapefile into the library. `tableName` receives the resulting table's name, or the
/// missing file's. Errors: false with a result code (1 file not found); then the library is as
/// before. 4 with true: the table was renamed.
TEMATICA_HOST_API bool FImportFileShape(gis::CLibGis* library, const orv::String& path,
    orv::String& tableName, int* resultCode, gis::ILinkImportedEnt* link, gis::IGisMerger* merger,
    TOpzImportShape& options);

/// Entity type of a .shp file as a `gis::EntType` value; -1 when unreadable or of another type.
TEMATICA_HOST_API int FGetEntTypeFromFileShp(const orv::String& path);

/// Field names of a .dbf file in file order; false when it cannot be read.
TEMATICA_HOST_API bool FGetFieldFromFileDbf(
    gis::CLibGis* library, const orv::String& path, std::vector<orv::String>& names);
