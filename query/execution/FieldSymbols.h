// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Symbols.h"
#include "host/gis/Types.h"

#include <memory>
#include <vector>

namespace query {

/// The names that a filter over a table knows: one variable a field, then Year, Month, Day, Date
/// and Now.
struct FieldSymbols {
    std::unique_ptr<CEESymbolTable> table;
    std::vector<CEESymbolConstVar*> fields; ///< In field order; owned by the table.
};

/// Errors: only the functions when library or table are null.
[[nodiscard]] FieldSymbols makeFieldSymbols(gis::CLibGis* library, gis::CDBTable* table);

} // namespace query
