// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterCount.h"

#include "query/execution/Readings.h"
#include "query/execution/plan/Compiler.h"
#include "query/execution/plan/EntitySelection.h"
#include "query/language/FilterParser.h"

#include "host/gis/LibGis.h"

#include <chrono>

namespace query {

std::unique_ptr<CFilterCount> CFilterCount::make(
    gis::CLibGis& library, gis::CTheme* theme, std::string_view filter)
{
    if (!theme || !library.GetTable(theme))
        return nullptr;
    std::unique_ptr<CFilterCount> count(new CFilterCount(library, theme, filter));
    return count->m_filter ? std::move(count) : nullptr;
}

CFilterCount::CFilterCount(gis::CLibGis& library, gis::CTheme* theme, std::string_view filter)
    : m_library(library)
    , m_theme(theme)
    , m_table(library.GetTable(theme))
    , m_symbols(makeFieldSymbols(&library, m_table))
    , m_filter(parseFilter(filter, ErrorReport::Silent).root)
    , m_source { library, theme, m_table, *m_symbols.table, m_symbols.fields }
    , m_total(library.GetNoEnts(theme))
{
    if (!m_filter)
        return;
    for (const FilterName& name : filterNames(*m_filter, *m_symbols.table))
        if (!name.isKnown)
            m_unknownNames.push_back(name.name);
    prepareColumns();
    m_unreadable = query::unreadableField(&library, theme, *m_filter);
}

CFilterCount::~CFilterCount() = default;

void CFilterCount::prepareColumns()
{
    auto* columns = static_cast<gis::IColumns*>(m_library.Extension(gis::ColumnsExtension));
    if (!columns || !columns->GetEntityRuns(m_theme, m_runs))
        return;
    const auto usedRows = plan::usedRowCount(m_runs);
    if (!usedRows)
        return;
    m_usedRows = *usedRows;
    plan::Compiler compiler(m_source, *columns, { m_runs.entityCount, m_usedRows });
    m_isByColumns = compiler.compile(*m_filter, m_program);
}

int CFilterCount::countColumns() const
{
    return plan::countEntities(m_program, m_runs, m_usedRows, m_isStopped);
}

bool CFilterCount::step(int milliseconds)
{
    using Clock = std::chrono::steady_clock;
    const auto end = Clock::now() + std::chrono::milliseconds(milliseconds);
    if (!m_rowSymbols)
        m_rowSymbols = std::make_unique<RowSymbols>(m_source);
    while (m_next < m_total) {
        m_rowSymbols->moveTo(m_library.GetRow(m_library.GetEnt(m_theme, m_next++)));
        CEEResult value;
        if (m_filter->Eval(m_rowSymbols.get(), value) && value.GetElemBool())
            ++m_found;
        if (m_next % 64 == 0 && Clock::now() >= end)
            return m_next == m_total;
    }
    return true;
}

} // namespace query
