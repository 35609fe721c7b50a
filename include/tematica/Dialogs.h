// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tematica/Export.h"

#include "host/gis/Types.h"

class CDravoEng;
class CDocSymbolManager;
class CLibCmp;
class CLibGps;
class CLibPnt;

// The dialogs, one function each. Every function runs one dialog modally on the user-interface
// thread of a process that has a QApplication, over objects that stay the host's. Null where an
// object is needed, no application, or another thread: the "cancelled" value, and no dialog. No
// exception leaves them.

/// Tables of the library; true on OK (the dialog has none, so false), whatever was changed.
TEMATICA_API bool FDlgTableListGIS(gis::CLibGis* library);
/// Structure of a table; true when changes were confirmed.
TEMATICA_API bool FDlgTableEditGIS(gis::CLibGis* library, gis::CDBTable* table);
/// Attributes of one entity's row; true on OK.
TEMATICA_API bool FDlgCompileTableGIS(
    gis::CLibGis* library, gis::CTheme* theme, orv::CResultRow* row);
/// Rows of a table in a grid; always true.
TEMATICA_API bool FDlgShowTableGIS(gis::CLibGis* library, gis::CDBTable* table);
/// Themes of the library; the last three arguments are accepted and ignored.
TEMATICA_API bool FDlgThemeListGIS(CDravoEng* engine, CDocSymbolManager* symbols,
    gis::CLibGis* library, CLibCmp*, CLibGps*, CLibPnt*);
/// Query over a theme; always true. The engine may be null.
TEMATICA_API bool FDlgQuery(std::int64_t drawing, CDravoEng* engine, gis::CLibGis* library);
/// Export of themes as shapefiles; false when cancelled.
TEMATICA_API bool FExportEnt(gis::CLibGis* library);
/// Import of a shapefile; always true. The last argument has no effect.
TEMATICA_API bool FImportEnt(
    gis::CLibGis* library, gis::ILinkImportedEnt* link, bool reserved = false);

/// Display name of a field format; the empty text for any other value.
TEMATICA_API orv::String OrvFieldFormatToString(gis::FieldFormat format);
