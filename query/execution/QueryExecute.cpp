// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/QueryExecute.h"

#include "query/execution/FieldSymbols.h"
#include "query/execution/Readings.h"
#include "query/execution/RowWalk.h"
#include "query/execution/plan/ColumnPlan.h"
#include "query/language/FilterParser.h"

#include "host/gis/LibGis.h"

#include <new>

CQueryExecute::CQueryExecute(gis::CLibGis* library, gis::CTheme* theme)
    : m_library(library)
    , m_theme(theme)
    , m_table(library && theme ? library->GetTable(theme) : nullptr)
{
    CreateSymbolTable();
}

CQueryExecute::CQueryExecute(const CQueryExecute& other) = default;
CQueryExecute& CQueryExecute::operator=(const CQueryExecute& other) = default;
CQueryExecute::~CQueryExecute() = default;

void CQueryExecute::CreateSymbolTable()
{
    query::FieldSymbols symbols = query::makeFieldSymbols(m_library, m_table);
    m_symbols = std::move(symbols.table);
    m_fieldSymbols = std::move(symbols.fields);
}

CEEExpression* CQueryExecute::ParseFilter(const orv::String& text) const
{
    return query::parseFilter(text.View(), query::ErrorReport::OnStandardError).root.release();
}

bool CQueryExecute::SetQueryFilter(const orv::String& text)
{
    m_filter.reset();
    m_filter.reset(ParseFilter(text));
    return m_filter != nullptr;
}

int CQueryExecute::Execute(std::vector<gis::CEnt*>& result)
{
    if (!m_filter || !m_table) {
        result.clear();
        return 0;
    }
    try {
        const query::QuerySource source { *m_library, m_theme, m_table, *m_symbols,
            m_fieldSymbols };
        if (!query::plan::selectByColumns(source, *m_filter, result))
            query::walkRows(source, *m_filter, result);
        // What could not be read looks like no value: no answer is better than a wrong one.
        if (query::unreadableField(m_library, m_theme, *m_filter))
            result.clear();
    } catch (const std::bad_alloc&) {
        result.clear(); // an answer cut short would pass for the whole
    }
    return static_cast<int>(result.size());
}
