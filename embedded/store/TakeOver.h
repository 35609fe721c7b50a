// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Table.h"
#include "embedded/store/Connection.h"
#include "embedded/store/FileState.h"

#include <string>
#include <vector>

namespace embedded::store {

/// What other programs did to a table's rows, as our triggers noted it.
struct ChangeMarks {
    bool rows = false;
    bool cells = false;
    bool shapes = false;
};
ChangeMarks changeMarks(Connection& connection, std::int64_t tableId);

/// Notes in each part which of the table's columns another program took away there.
void noteMissingColumns(Connection& connection, std::vector<StoredPart>& parts,
    const std::vector<std::string>& columns);

/// Columns that another program added become fields, which is reported.
void takeOverColumns(
    Connection& connection, gis::CDBTable& table, StoredTable& stored, Report& report);

void reportRows(const orv::String& name, int rowsBefore, const StoredTable& stored,
    const ChangeMarks& marks, Report& report);

/// Reports cells that hold what their field cannot: they count as empty.
void reportCells(
    Connection& connection, const gis::CDBTable& table, const StoredTable& stored, Report& report);

} // namespace embedded::store
