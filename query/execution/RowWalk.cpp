// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/RowWalk.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"
#include "host/gis/LibGis.h"

#include <algorithm>

namespace query {

void normaliseCell(gis::FieldFormat format, int decimalDigits, orv::CPolyValue& value)
{
    if (value.IsEmpty())
        return;
    if (format == gis::FieldFormat::Decimal) {
        value = orv::RoundedByText(value.GetDoubleValue(), decimalDigits);
    } else if (format == gis::FieldFormat::Date) {
        std::int64_t midnight = 0;
        if (orv::LocalMidnight(value.GetDateValue(), midnight))
            value.SetDateValue(midnight);
    }
}

int decimalDigitsOf(gis::CLibGis& library, gis::CField* field)
{
    std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
    library.GetFieldConstraints(field, constraints.data());
    return std::clamp(constraints[3].GetInt32Value(), 0, gis::MaxDecimalDigits);
}

RowSymbols::RowSymbols(const QuerySource& source)
    : m_source(source)
    , m_fieldCount(std::min(
          source.library.GetNumFields(source.table), static_cast<int>(source.fieldSymbols.size())))
{
    // Fields that went since the query was made have no value, not the one they had last.
    orv::CPolyValue none;
    for (std::size_t i = static_cast<std::size_t>(m_fieldCount); i < source.fieldSymbols.size();
         ++i)
        source.fieldSymbols[i]->SetElemValue(none);
}

void RowSymbols::moveTo(orv::CResultRow* row)
{
    m_row = row;
    for (Entry& entry : m_entries)
        entry.isRead = false;
}

RowSymbols::Entry* RowSymbols::find(const std::string& name)
{
    // Names come in the same order for every row: the next entry is nearly always the one sought.
    const std::size_t count = m_entries.size();
    for (std::size_t step = 1; step <= count; ++step) {
        std::size_t at = m_lastFound + step;
        at = at >= count ? at - count : at;
        if (m_entries[at].name == name) {
            m_lastFound = at;
            return &m_entries[at];
        }
    }
    return nullptr;
}

RowSymbols::Entry& RowSymbols::learn(orv::String& name)
{
    Entry entry;
    entry.name = name.Bytes();
    entry.symbol = m_source.symbols.GetSymbol(name);
    const auto end = m_source.fieldSymbols.begin() + m_fieldCount;
    const auto found = std::find(m_source.fieldSymbols.begin(), end, entry.symbol);
    if (entry.symbol && found != end) {
        entry.variable = *found;
        entry.fieldIndex = static_cast<int>(found - m_source.fieldSymbols.begin());
        gis::CField* const field = m_source.library.GetField(m_source.table, entry.fieldIndex);
        entry.format = m_source.library.GetFieldFormat(field);
        if (entry.format == gis::FieldFormat::Decimal)
            entry.decimalDigits = decimalDigitsOf(m_source.library, field);
    }
    m_lastFound = m_entries.size();
    return m_entries.emplace_back(std::move(entry));
}

CEESymbol* RowSymbols::read(Entry& entry)
{
    if (entry.variable && !entry.isRead) {
        m_value.SetToEmpty();
        m_source.library.GetRowValue(m_row, entry.fieldIndex, m_value);
        normaliseCell(entry.format, entry.decimalDigits, m_value);
        entry.variable->SetElemValue(m_value);
        entry.isRead = true;
    }
    return entry.symbol;
}

CEESymbol* RowSymbols::GetSymbol(orv::String& name)
{
    Entry* const entry = find(name.Bytes());
    return read(entry ? *entry : learn(name));
}

CEESymbol* RowSymbols::GetFunction(orv::String& name)
{
    return m_source.symbols.GetFunction(name);
}

void walkRows(const QuerySource& source, CEEExpression& filter, std::vector<gis::CEnt*>& result)
{
    result.clear();
    RowSymbols symbols(source);
    const int entityCount = source.library.GetNoEnts(source.theme);
    for (int i = 0; i < entityCount; ++i) {
        gis::CEnt* const entity = source.library.GetEnt(source.theme, i);
        symbols.moveTo(source.library.GetRow(entity));
        CEEResult value;
        if (filter.Eval(&symbols, value) && value.GetElemBool())
            result.push_back(entity);
    }
}

} // namespace query
