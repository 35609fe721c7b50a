// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Columns.h"
#include "host/gis/LibGis.h"

#include <string>
#include <vector>

namespace bench {

/// A measured query: as filter and for SQLite.
struct Query {
    char letter;
    const char* filter;
    const char* sql;
};

inline const Query Queries[] = {
    { 'a', "Tipo = 'Strada' AND (Larghezza >= 3.5 OR Corsie > 1) AND Nome IS NOT NULL",
        "Tipo = 'Strada' AND (Larghezza >= 3.5 OR Corsie > 1) AND Nome IS NOT NULL" },
    { 'b', "Nome LIKE 'Via R%a%'", "Nome GLOB 'Via R*a*'" },
    { 'c', "Larghezza * 2 + 1 > 40", "Larghezza * 2 + 1 > 40" },
    { 'd', "Rilievo >= Date(5,3,2016)", "Rilievo >= '2016-03-05'" },
    { 'e', "Corsie IS NULL", "Corsie IS NULL" },
};

/// A host without columns: the engine goes cell by cell.
class CellHost final : public gis::CLibGis {
public:
    void* Extension(const char* name) override
    {
        return std::string(name) == gis::ColumnsExtension ? nullptr : gis::CLibGis::Extension(name);
    }
};

/// Runs a filter with all that belongs to it; how many entities were found. Ends the bench when the
/// filter is refused.
int runQuery(
    gis::CLibGis& library, gis::CTheme* theme, const char* filter, std::vector<gis::CEnt*>& found);

} // namespace bench
