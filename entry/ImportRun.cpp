// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ImportRun.h"

#include "kit/texts/TextIds.h"

namespace entry {

void importShapefile(gis::CLibGis& library, gis::ILinkImportedEnt* link, gis::IGisMerger& merger,
    ImportChoice choice, const Warn& warn, ImportFunction import)
{
    orv::String tableName;
    int resultCode = 0;
    const bool done
        = import(&library, choice.path, tableName, &resultCode, link, &merger, choice.options);
    if (done && resultCode == ImportTableRenamed)
        warn(texts::TableRenamed, tableName);
    else if (!done && resultCode == ImportFileNotFound)
        warn(texts::ImportFileMissing, tableName);
}

} // namespace entry
