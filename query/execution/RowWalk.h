// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A query row by row through the host's cells: the meaning of a filter, whatever faster ways there
// are.

#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"
#include "host/gis/Types.h"

#include <array>
#include <string>
#include <vector>

namespace query {

/// What a query runs over.
struct QuerySource {
    gis::CLibGis& library;
    gis::CTheme* theme;
    gis::CDBTable* table;
    CEESymbolTable& symbols;
    const std::vector<CEESymbolConstVar*>& fieldSymbols; ///< By field index.
};

/// A cell's value as filters compare it: decimals rounded to their field's digits, dates at local
/// midnight. No value stays no value.
void normaliseCell(gis::FieldFormat format, int decimalDigits, orv::CPolyValue& value);

/// Digits after the point of a field, as its constraints give them.
[[nodiscard]] int decimalDigitsOf(gis::CLibGis& library, gis::CField* field);

/// Names for the row that is looked at. A field's cell is read when its name is first asked for, so
/// that a row costs only the cells its evaluation needs.
class RowSymbols final : public CEESymbolProvider {
public:
    explicit RowSymbols(const QuerySource& source);
    void moveTo(orv::CResultRow* row);
    CEESymbol* GetSymbol(orv::String& name) override;
    CEESymbol* GetFunction(orv::String& name) override;

private:
    struct Entry {
        std::string name;
        CEESymbol* symbol = nullptr;
        CEESymbolConstVar* variable = nullptr; ///< Null for names that are no field's.
        int fieldIndex = -1;
        gis::FieldFormat format = gis::FieldFormat::Text;
        int decimalDigits = 0;
        bool isRead = false;
    };

    Entry* find(const std::string& name);
    Entry& learn(orv::String& name);
    CEESymbol* read(Entry& entry);

    const QuerySource& m_source;
    int m_fieldCount;
    orv::CResultRow* m_row = nullptr;
    orv::CPolyValue m_value;
    std::vector<Entry> m_entries;
    std::size_t m_lastFound = 0;
};

/// The entities for which the filter is true, in entity order. `result` is overwritten.
void walkRows(const QuerySource& source, CEEExpression& filter, std::vector<gis::CEnt*>& result);

} // namespace query
