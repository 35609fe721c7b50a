// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/Readings.h"

#include "query/execution/FieldSymbols.h"
#include "query/execution/FilterNames.h"

#include "host/gis/LibGis.h"
#include "host/gis/Readings.h"

#include <algorithm>

namespace query {

bool isReadable(gis::CLibGis& library, gis::CDBTable* table, int fieldIndex)
{
    auto* readings = static_cast<gis::IReadings*>(library.Extension(gis::ReadingsExtension));
    return !readings || readings->IsReadable(table, fieldIndex);
}

std::optional<orv::String> unreadableField(
    gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter)
{
    gis::CDBTable* const table = library && theme ? library->GetTable(theme) : nullptr;
    if (!table || !library->Extension(gis::ReadingsExtension))
        return std::nullopt;
    const FieldSymbols symbols = makeFieldSymbols(library, table);
    for (FilterName& name : filterNames(filter, *symbols.table)) {
        CEESymbol* const symbol = name.isFunction ? nullptr : symbols.table->GetSymbol(name.name);
        const auto found = std::find(symbols.fields.begin(), symbols.fields.end(), symbol);
        if (symbol && found != symbols.fields.end()
            && !isReadable(*library, table, static_cast<int>(found - symbols.fields.begin())))
            return name.name;
    }
    return std::nullopt;
}

} // namespace query
