// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/EntityStore.h"
#include "embedded/store/Wkb.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace gis {
class CField;
}

namespace embedded::store {

/// Rows of a table with consecutive numbers in the file and consecutive places in the library.
struct FidRun {
    std::int64_t firstFid = 0;
    int firstRow = 0;
    int count = 0;
};

/// The rows of one library table that lie in one table of the file: those of a theme's entities
/// in the theme's layer, those without an entity in a table without shapes.
struct StoredPart {
    std::string physicalName;
    /// The column with the rows' numbers; empty for a view, whose rows come in the order it gives.
    std::string fidColumn = "fid";
    std::int64_t themeId = 0; // 0: rows without an entity
    std::vector<FidRun> runs; // ascending
    std::vector<std::string> missingColumns; // taken away by another program, here only
    [[nodiscard]] int rowCount() const;
    [[nodiscard]] bool hasColumn(const std::string& name) const;
    /// Adds a row at the end.
    void addRow(std::int64_t fid, int row);
    /// Forgets rows from `row` on.
    void truncate(int row);
};

struct StoredColumn {
    const gis::CField* field = nullptr;
    std::string name;
};

struct StoredTable {
    std::vector<StoredColumn> columns; // in field order as they are in the file
    std::vector<StoredPart> parts;
    int rowCount = 0;
    /// Every row's number is its place plus one, and every part has every column: changes can be
    /// written where they happened. Otherwise the table is written anew when it changes.
    bool isRegular = true;
    [[nodiscard]] const StoredPart* partOf(std::int64_t themeId) const;
    [[nodiscard]] StoredPart* partOf(std::int64_t themeId);
    [[nodiscard]] const StoredColumn* columnOf(const gis::CField* field) const;
};

struct StoredTheme {
    std::int64_t tableId = 0;
    std::string geometryColumn = "geom";
    bool hasIndex = true;
    ShapeLayout layout;
    int entityCount = 0;
    /// For each entity its place among the layer's rows; empty: the same order.
    std::vector<int> rowPlaces;
    Box extent; // exact, unless another program changed shapes
    bool isExtentExact = true;
    bool hasHints = false;
    bool hasLinks = false;
};

/// What the file holds, as the library's objects know it by their store ids.
struct FileState {
    std::map<std::int64_t, StoredTable> tables;
    std::map<std::int64_t, StoredTheme> themes;
    std::int64_t lastId = 0;
    std::uint64_t linkedPointsMark = 0; // fingerprint of the linked points as stored
    std::vector<LinkedPoint*> linkedPoints; // those read on opening; the library's
    [[nodiscard]] std::int64_t newId() { return ++lastId; }
};

} // namespace embedded::store
