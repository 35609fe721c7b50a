// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Handles.h"
#include "embedded/base/Result.h"
#include "embedded/model/RecordArena.h"
#include "embedded/model/Table.h"

#include <atomic>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

namespace embedded {

/// Whether a column has been read: what the reader wrote before is seen by whoever finds it set.
class LoadedFlag final {
public:
    LoadedFlag() = default;
    LoadedFlag(const LoadedFlag& other)
        : m_isLoaded(bool(other))
    {
    }
    LoadedFlag& operator=(const LoadedFlag& other) { return *this = bool(other); }
    LoadedFlag& operator=(bool isLoaded)
    {
        m_isLoaded.store(isLoaded, std::memory_order_release);
        return *this;
    }
    operator bool() const { return m_isLoaded.load(std::memory_order_acquire); }

private:
    std::atomic<bool> m_isLoaded = true;
};

/// A column as a table holds it: read or not, and which cells changed since the last save.
struct ColumnSlot {
    explicit ColumnSlot(gis::FieldFormat format)
        : column(columnKindOf(format))
    {
    }
    Column column;
    LoadedFlag loaded;
    std::optional<Error> failure; // why it could not be read: empty cells stand in its place
    bool isWritten = false; // to its cells, since it was read or failed
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
