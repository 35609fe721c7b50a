// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/CtrlDlgTableList.h"

#include "tables/list/TableNameRules.h"

#include <algorithm>

namespace tables {

std::vector<CCtrlDlgTableList::Row> CCtrlDlgTableList::rows() const
{
    std::vector<Row> rows;
    const int count = m_library ? m_library->GetNumTables() : 0;
    for (int i = 0; i < count; ++i) {
        gis::CDBTable* table = m_library->GetTable(i);
        rows.push_back({ m_library->GetTableName(table), table });
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row& left, const Row& right) {
        return left.name.CompareIgnoreCase(right.name) < 0;
    });
    return rows;
}

void CCtrlDlgTableList::create(const orv::String& name)
{
    m_library->CreateTable(name);
    m_library->SetModifiedFlag(true);
}

std::optional<kit::Message> CCtrlDlgTableList::rename(gis::CDBTable* table, const orv::String& name)
{
    if (auto refusal = refusalOfTableName(*m_library, m_library->GetTableName(table), name))
        return refusal;
    m_library->SetTableName(table, name);
    m_library->SetModifiedFlag(true);
    return std::nullopt;
}

kit::Message CCtrlDlgTableList::deleteQuestion()
{
    return { texts::DeleteTable, std::nullopt, kit::BoxButtons::YesNo, texts::Attention,
        kit::BoxIcon::Information };
}

std::optional<kit::Message> CCtrlDlgTableList::remove(gis::CDBTable* table)
{
    if (m_library->IsTableUsedByThemes(table))
        return kit::Message { texts::TableInUse };
    m_library->DeleteTable(table);
    m_library->SetModifiedFlag(true);
    return std::nullopt;
}

} // namespace tables
