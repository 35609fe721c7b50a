// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/FieldSymbols.h"

#include "host/gis/LibGis.h"

namespace query {

FieldSymbols makeFieldSymbols(gis::CLibGis* library, gis::CDBTable* table)
{
    FieldSymbols symbols;
    symbols.table = std::make_unique<CEESymbolTable>();
    const int fieldCount = library && table ? library->GetNumFields(table) : 0;
    symbols.fields.reserve(static_cast<std::size_t>(fieldCount));
    for (int i = 0; i < fieldCount; ++i) {
        auto symbol = std::make_unique<CEESymbolConstVar>();
        symbols.fields.push_back(symbol.get());
        symbols.table->AddSymbol(
            library->GetFieldName(library->GetField(table, i)), symbol.release());
    }
    symbols.table->AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
    symbols.table->AddSymbol("Month", new CEESymbolFunDate(EEFunctionMonth));
    symbols.table->AddSymbol("Day", new CEESymbolFunDate(EEFunctionDay));
    symbols.table->AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));
    symbols.table->AddSymbol("Now", new CEESymbolFunVarious(EEFunctionNow));
    return symbols;
}

} // namespace query
