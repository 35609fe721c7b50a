// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Handles.h"
#include "embedded/model/RecordArena.h"
#include "embedded/model/Table.h"

#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace embedded {

/// A column as a table holds it: read or not, and which cells changed since the last save.
struct ColumnSlot {
    explicit ColumnSlot(gis::FieldFormat format)
        : column(columnKindOf(format))
    {
    }
    Column column;
    bool loaded = true;
    bool hasFailed = false; // it could not be read: empty cells stand in its place
    bool allChanged = true;
    std::vector<std::uint64_t> changed; // one bit a row, only while not allChanged
};

struct TableData {
    TableData(gis::CDBTable& table, Library& owner, const orv::String& tableName)
        : library(owner)
        , name(tableName)
        , rows(&table)
    {
    }
    Library& library;
    orv::String name;
    std::deque<gis::CField> pool; // every field the table ever had: handles outlive their deletion
    std::vector<gis::CField*> fields;
    std::vector<ColumnSlot> slots;
    std::mutex reading; // of columns from the store, which several threads may ask for
    RecordArena<orv::CResultRow> rows;
    int storedRows = 0;
    bool structureChanged = true;
};

/// A field of a structure with its cells: what a table is built from and goes back to.
struct FieldState {
    gis::CField* handle = nullptr; // null: a new field
    orv::String name;
    gis::FieldFormat format = gis::FieldFormat::Text;
    gis::FieldType type = gis::FieldType::FromUser;
    bool requested = false;
    std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
    ColumnSlot slot { gis::FieldFormat::Text };
};
using Structure = std::vector<FieldState>;

} // namespace embedded
