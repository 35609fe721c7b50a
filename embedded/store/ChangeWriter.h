// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/TableWriter.h"

namespace embedded::store {

/// What a save has to do with a table.
enum class TableWork {
    Nothing,
    Changes, // changed cells and new rows, where they are
    Whole, // structure, or anything else that moves rows about: written anew
};
TableWork workFor(
    Connection& connection, const FileState& stored, const Library& library, gis::CDBTable& table);

/// Rows that `work` will write, for the progress.
std::int64_t rowsToWrite(const FileState& stored, const gis::CDBTable& table, TableWork work);

/// Writes the changed cells and the new rows and entities of a table that lies in the file.
void writeChanges(SaveContext& context, gis::CDBTable& table);

} // namespace embedded::store
