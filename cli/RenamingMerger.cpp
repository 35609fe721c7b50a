// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/RenamingMerger.h"

#include "embedded/model/Library.h"

namespace cli {

void RenamingMerger::OnBeforeLoadTable(const orv::String& name, gis::CLibGis*& library,
    gis::CDBTable*& existing, gis::CDBTable*& loaded)
{
    library = &m_library;
    existing = nullptr;
    loaded = m_library.CreateTable(embedded::Library::of(&m_library)->freeTableName(name));
}

void RenamingMerger::OnAfterLoadTable(gis::CLibGis* /*library*/, gis::CDBTable* /*existing*/,
    gis::CDBTable* loaded, std::vector<int>& /*mapping*/)
{
    m_tables.push_back(loaded);
}

void RenamingMerger::GetTable(int index, gis::CDBTable*& table, int& rowOffset)
{
    const auto position = static_cast<std::size_t>(index);
    table = position < m_tables.size() ? m_tables[position] : nullptr;
    rowOffset = 0;
}

gis::CTheme* RenamingMerger::OnLoadTheme(const orv::String& name, gis::CDBTable* table,
    gis::EntType type, gis::EntTypeCoords coords, std::int64_t targetDrawing)
{
    // Without one where a theme of this name, which would keep its own, is there already.
    const std::int64_t drawing = targetDrawing != 0 ? targetDrawing : m_library.GetTargetDrawing();
    return m_library.CreateTheme(
        table, embedded::Library::of(&m_library)->freeThemeName(name), type, coords, drawing);
}

} // namespace cli
