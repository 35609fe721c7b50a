// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/Readings.h"

#include "query/execution/FieldSymbols.h"
#include "query/execution/FilterNames.h"

#include "host/gis/LibGis.h"

#include <algorithm>

namespace query {
namespace {

class CStop final : public gis::IReadingStop {
public:
    CStop(const std::function<bool(double)>& goesOn, double fraction)
        : m_goesOn(goesOn)
        , m_fraction(fraction)
    {
    }
    bool IsStopped() override { return !m_goesOn(m_fraction); }

private:
    const std::function<bool(double)>& m_goesOn;
    double m_fraction;
};

} // namespace

bool isReadable(gis::CLibGis& library, gis::CDBTable* table, int fieldIndex)
{
    auto* readings = static_cast<gis::IReadings*>(library.Extension(gis::ReadingsExtension));
    return !readings || readings->IsReadable(table, fieldIndex);
}

std::vector<int> fieldsOf(gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter)
{
    gis::CDBTable* const table = library && theme ? library->GetTable(theme) : nullptr;
    std::vector<int> fields;
    if (!table)
        return fields;
    const FieldSymbols symbols = makeFieldSymbols(library, table);
    for (FilterName& name : filterNames(filter, *symbols.table)) {
        CEESymbol* const symbol = name.isFunction ? nullptr : symbols.table->GetSymbol(name.name);
        const auto found = std::find(symbols.fields.begin(), symbols.fields.end(), symbol);
        const int index = static_cast<int>(found - symbols.fields.begin());
        if (symbol && found != symbols.fields.end()
            && std::find(fields.begin(), fields.end(), index) == fields.end())
            fields.push_back(index);
    }
    return fields;
}

ColumnSource::ColumnSource(gis::CLibGis* library)
    : columns(
        library ? static_cast<gis::IColumns*>(library->Extension(gis::ColumnsExtension)) : nullptr)
    , readings(library ? static_cast<gis::IReadings*>(library->Extension(gis::ReadingsExtension))
                       : nullptr)
{
}

bool readColumns(const ColumnSource& source, gis::CDBTable* table, const std::vector<int>& fields,
    const std::function<bool(double)>& goesOn)
{
    for (std::size_t i = 0; table && i < fields.size(); ++i) {
        const double fraction = static_cast<double>(i) / static_cast<double>(fields.size());
        if (!goesOn(fraction))
            return false;
        CStop stop(goesOn, fraction);
        if (source.readings && !source.readings->Read(table, fields[i], &stop))
            return false;
        gis::ColumnView view; // made now, where that takes a while
        if (source.columns)
            static_cast<void>(source.columns->GetColumn(table, fields[i], view));
    }
    return true;
}

std::optional<orv::String> unreadableField(
    gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter)
{
    gis::CDBTable* const table = library && theme ? library->GetTable(theme) : nullptr;
    if (!table || !library->Extension(gis::ReadingsExtension))
        return std::nullopt;
    for (const int field : fieldsOf(library, theme, filter))
        if (!isReadable(*library, table, field))
            return library->GetFieldName(library->GetField(table, field));
    return std::nullopt;
}

} // namespace query
