// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/Connection.h"
#include "embedded/store/FileState.h"

#include <string>
#include <string_view>
#include <vector>

namespace embedded::store {

/// Columns of a table of the file, as declared.
struct PhysicalColumn {
    std::string name;
    std::string type;
    bool isKey = false;
};
std::vector<PhysicalColumn> columnsOf(Connection& connection, const std::string& table);

/// Row numbers as they were written down; false when the text is none of ours or says something
/// else than `rows` rows.
bool parseRuns(std::string_view text, int rows, StoredPart& part);

/// True when the last row of the part is the one that its runs end with: a cheap look at whether
/// somebody changed rows without a trace.
bool endsAsStored(Connection& connection, const StoredPart& part);

/// Reads the row numbers of all parts and puts the rows in their order: by number, and among equal
/// numbers by part. Sets the runs, the row count and whether the table is regular.
void scanRuns(Connection& connection, StoredTable& table);

} // namespace embedded::store
