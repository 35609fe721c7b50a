// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/TableNameRules.h"

namespace tables {

std::optional<kit::Message> refusalOfTableName(
    gis::CLibGis& library, const orv::String& oldName, const orv::String& newName)
{
    if (newName.Length() == 0)
        return kit::Message { texts::TableNameMissing };
    if (newName.CompareIgnoreCase(oldName) != 0 && library.FindTable(newName))
        return kit::Message { texts::TableNameUsed };
    return std::nullopt;
}

} // namespace tables
