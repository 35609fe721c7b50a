// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The import of one shapefile, apart from the wizard in which it is chosen.

#include "entry/ExportRun.h"

#include "host/gis/Exchange.h"

namespace entry {

/// What the import wizard gives.
struct ImportChoice {
    orv::String path;
    TOpzImportShape options;
};

using ImportFunction = decltype(&FImportFileShape);

/// Imports the file by the host's function; says when the table had to be renamed and when a file
/// is missing, and nothing of any other failure.
void importShapefile(gis::CLibGis& library, gis::ILinkImportedEnt* link, gis::IGisMerger& merger,
    ImportChoice choice, const Warn& warn, ImportFunction import = &FImportFileShape);

} // namespace entry
