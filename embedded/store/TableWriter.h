// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"
#include "embedded/store/LibraryTables.h"
#include "embedded/store/Names.h"
#include "embedded/store/RowWriter.h"
#include "embedded/store/SaveProgress.h"

namespace embedded::store {

/// What the parts of one save share.
struct SaveContext {
    Connection& connection;
    Library& library;
    FileState& state; // as the file will be
    const ObjectIds& ids;
    CNameSet& names; // of the file's tables
    const PointNumbers& points;
    CSaveProgress& progress;
};

/// The themes on a table, with their numbers.
std::vector<std::pair<gis::CTheme*, std::int64_t>> themesOn(
    const SaveContext& context, const gis::CDBTable& table);

/// How a theme's shapes must be stored as they are now.
ShapeLayout layoutOf(Connection& connection, const gis::CTheme& theme);

/// True when an entity's points need a layer of multipoints.
bool needsMultiPoint(const EntityStore& entities, int entityIndex);

/// Writes a table with all its rows and its themes' entities into tables of the file made for
/// them. Everything must be loaded. Sets the table's and its themes' state.
void writeWholeTable(SaveContext& context, gis::CDBTable& table);

/// Appends rows to a part: those from `firstRow` on whose entity is of the part's theme (or which
/// have none). The part's table exists, its spatial index is not touched: `shapes` (null for a part
/// without) collects what belongs into it.
void appendRows(SaveContext& context, gis::CDBTable& table, StoredTable& stored, StoredPart& part,
    const gis::CTheme* theme, int firstRow, CShapeWriter* shapes);

/// Makes the table of the file for a theme's entities, or for rows without (theme null), with an
/// empty part for it in `stored`.
StoredPart& createPart(SaveContext& context, gis::CDBTable& table, StoredTable& stored,
    gis::CTheme* theme, std::int64_t themeId);

/// Notes the order of a theme's entities where it is not that of their rows. Errors: Internal for
/// an entity without a row.
void noteEntityOrder(SaveContext& context, const gis::CTheme& theme, std::int64_t themeId);

} // namespace embedded::store
