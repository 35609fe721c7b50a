// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Libraries as text, so that a test shows its data where it uses them:
//
//   table Strade (codice text required, larghezza decimal 2 min 0, tipo list ('A', 'B') default
//   'A',
//                 "Data rilievo" date, lunghezza decimal 2 from perimeter2d);
//   rows Strade: ('S1', 3.5, 'A', 01/02/2020, -), ('S2', -, -, -, -);
//   theme Vie: lines 2d on Strade active;
//   ents Vie: 0 [0 0, 10 0 | 20 0, 30 0], 1 [] point 'P1' 'angolo'
//
// Formats: text, boolean, integer, decimal (digits, 2 unless given), list, date. Options of a
// field: required, default V, min V, max V, from a predefined value (name, description, area,
// perimeter2d, perimeter3d, x, y, z, sketch, photo1 to photo5). Values: `-` none, 'text', numbers,
// yes, no, dd/mm/yyyy, `today` as a date's default. Options of a theme: 2d, m, 3d, at (a drawing's
// number), active, hidden, locked. Names that are no plain words stand in double quotes. An entity
// is its row, its parts and the point that its first vertex is linked to.

#include "tests/support/LibraryPlan.h"

#include "host/gis/LibGis.h"

#include <memory>
#include <string>
#include <string_view>

namespace support {

/// Errors: throws std::invalid_argument that says what was expected where.
LibraryPlan planFrom(std::string_view notation);

/// Adds what a plan holds to a library of the embedded host. Afterwards nothing can be undone and
/// the library counts as not modified.
void fillLibrary(gis::CLibGis& library, const LibraryPlan& plan);
void fillLibrary(gis::CLibGis& library, std::string_view notation);

/// Fields and rows of a plan into a table that is empty, as an importer fills one: not recorded.
void fillTable(gis::CDBTable& table, const TablePlan& plan);

std::unique_ptr<gis::CLibGis> makeLibrary(
    std::string_view notation, orv::CChangeTransactionManager* manager = nullptr);

/// A library of the embedded host in the notation, one statement a paragraph, everything that
/// `planFrom` reads and nothing twice. Asks no virtual operation.
std::string printLibrary(gis::CLibGis& library);
std::string printTable(gis::CDBTable& table);
std::string printTheme(gis::CTheme& theme);
/// Only the rows, one a line: `('S1', 3.5)`.
std::string printRows(gis::CDBTable& table);

/// Values that a field of this format has when nobody set its constraints.
std::array<orv::CPolyValue, gis::ConstraintCount> unsetConstraints(gis::FieldFormat format);

} // namespace support
