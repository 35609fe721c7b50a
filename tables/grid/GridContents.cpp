// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridContents.h"

#include <utility>

namespace tables {

namespace {

gis::IColumns* columnsOf(gis::CLibGis* library)
{
    return library ? static_cast<gis::IColumns*>(library->Extension(gis::ColumnsExtension))
                   : nullptr;
}

} // namespace

CGridContents::CGridContents(gis::CLibGis* library, gis::CDBTable* table)
    : m_library(library)
    , m_table(table)
    , m_columns(columnsOf(library))
    , m_fields(gridFields(library, table))
    , m_edits(m_fields.size())
{
}

void CGridContents::fill()
{
    m_rows.clear();
    m_entities = {};
    m_isWholeTable = true;
    m_tableRowCount = m_library && m_table ? m_library->GetNumRows(m_table) : 0;
    m_rowCount = m_tableRowCount;
    m_tableRows.reset();
    m_edits.assign(m_fields.size(), {});
}

void CGridContents::fill(std::vector<orv::CResultRow*> rows)
{
    m_rows = std::move(rows);
    m_entities = {};
    m_isWholeTable = false;
    m_tableRowCount = m_library && m_table ? m_library->GetNumRows(m_table) : 0;
    m_rowCount = static_cast<int>(m_rows.size());
    m_tableRows.reset();
    m_edits.assign(m_fields.size(), {});
}

void CGridContents::fill(std::span<gis::CEnt* const> entities)
{
    fill(std::vector<orv::CResultRow*>());
    m_entities = entities;
    m_rowCount = static_cast<int>(m_entities.size());
}

orv::CResultRow* CGridContents::row(int row) const
{
    if (row < 0 || row >= m_rowCount)
        return nullptr;
    if (m_isWholeTable)
        return m_library->GetRow(m_table, row);
    const auto index = static_cast<std::size_t>(row);
    return m_entities.empty() ? m_rows[index] : m_library->GetRow(m_entities[index]);
}

orv::CPolyValue CGridContents::storedValue(int row, int field) const
{
    orv::CPolyValue value;
    if (m_library)
        m_library->GetRowValue(this->row(row), field, value);
    return value;
}

orv::String CGridContents::storedText(int row, int field) const
{
    return cellText(storedValue(row, field), this->field(field).decimalDigits);
}

orv::String CGridContents::text(int row, int field) const
{
    const auto& edited = edits(field);
    if (!edited.empty())
        if (const auto found = edited.find(row); found != edited.end())
            return orv::String(found->second);
    return storedText(row, field);
}

CGridContents::Entry CGridContents::enter(int row, int field, const orv::String& text)
{
    if (text == this->text(row, field))
        return Entry::Unchanged;
    orv::String accepted = text;
    if (!acceptCellText(*m_library, this->field(field), accepted))
        return Entry::Refused;
    auto& edited = m_edits[static_cast<std::size_t>(field)];
    if (accepted == storedText(row, field))
        edited.erase(row);
    else
        edited[row] = accepted.Bytes();
    return Entry::Taken;
}

bool CGridContents::hasEditedDecimals() const
{
    for (int i = 0; i < fieldCount(); ++i)
        if (field(i).format == gis::FieldFormat::Decimal && !edits(i).empty())
            return true;
    return false;
}

std::optional<gis::ColumnView> CGridContents::column(int field) const
{
    gis::ColumnView view;
    if (!m_columns || !m_columns->GetColumn(m_table, field, view)
        || !gis::IsWhole(view, this->field(field).format) || view.rowCount != m_tableRowCount)
        return std::nullopt;
    return view;
}

const std::vector<int>* CGridContents::tableRows()
{
    if (!m_tableRows) {
        m_tableRows.emplace();
        m_tableRows->reserve(static_cast<std::size_t>(m_rowCount));
        int next = 0;
        orv::CResultRow* wanted = row(0);
        for (int i = 0; i < m_tableRowCount && next < m_rowCount; ++i)
            if (m_library->GetRow(m_table, i) == wanted) {
                m_tableRows->push_back(i);
                wanted = row(++next);
            }
    }
    return static_cast<int>(m_tableRows->size()) == m_rowCount ? &*m_tableRows : nullptr;
}

} // namespace tables
