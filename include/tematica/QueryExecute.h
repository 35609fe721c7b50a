// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tematica/Export.h"

#include "host/gis/Types.h"

#include <memory>
#include <vector>

class CEEExpression;
class CEESymbolTable;
class CEESymbolConstVar;

/// Selects the entities of one theme whose rows satisfy a filter (docs/filter-language.md).
/// Names of the filter: the table's fields as they are at construction, and Year, Month, Day, Date,
/// Now. Owner, thread: library and theme must outlive it; call on the library's thread. Copies
/// share filter and symbols until one of them is given a new filter.
class TEMATICA_API CQueryExecute {
public:
    CQueryExecute(gis::CLibGis* library, gis::CTheme* theme);
    CQueryExecute(const CQueryExecute& other);
    CQueryExecute& operator=(const CQueryExecute& other);
    virtual ~CQueryExecute();

    /// Replaces the filter; false, and no filter, when the text is refused.
    bool SetQueryFilter(const orv::String& text);
    /// The entities for which the filter is true, in entity order; returns their number. Entities
    /// for which the filter cannot be computed are not selected. Without a filter, and where the
    /// host says that a field of the filter cannot be read: none.
    int Execute(std::vector<gis::CEnt*>& result);

protected:
    void CreateSymbolTable();
    /// Owner: the caller. Null when the text is refused.
    CEEExpression* ParseFilter(const orv::String& text) const;

private:
    gis::CLibGis* m_library;
    gis::CTheme* m_theme;
    gis::CDBTable* m_table;
    std::shared_ptr<CEEExpression> m_filter;
    std::shared_ptr<CEESymbolTable> m_symbols;
    std::vector<CEESymbolConstVar*> m_fieldSymbols; // owned by the symbol table
};
