// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridField.h"

#include "host/gis/Columns.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace tables {

/// What a grid holds: which rows it shows, in fill order, and the texts that the user entered.
/// Cells are read from the library when they are wanted; only edited texts are kept. Nothing is
/// written before `save`.
/// Owner, thread: library, table and rows are the host's and must outlive it; the library's thread.
/// `column`, `edits` and `rowCount` may be used by another thread while nobody edits.
class CGridContents final {
public:
    CGridContents(gis::CLibGis* library, gis::CDBTable* table);

    /// All rows of the table, or these rows in their order. Forgets what was edited.
    void fill();
    void fill(std::vector<orv::CResultRow*> rows);
    /// The rows of these entities, each asked for when it is wanted. The entities are lent until
    /// the next fill.
    void fill(std::span<gis::CEnt* const> entities);

    [[nodiscard]] gis::CLibGis* library() const { return m_library; }
    [[nodiscard]] gis::CDBTable* table() const { return m_table; }
    [[nodiscard]] int rowCount() const { return m_rowCount; }
    [[nodiscard]] int fieldCount() const { return static_cast<int>(m_fields.size()); }
    [[nodiscard]] const GridField& field(int field) const
    {
        return m_fields[static_cast<std::size_t>(field)];
    }
    [[nodiscard]] orv::CResultRow* row(int row) const;

    /// The text that a cell shows: the edited one, else the stored value's.
    [[nodiscard]] orv::String text(int row, int field) const;
    [[nodiscard]] orv::String storedText(int row, int field) const;
    [[nodiscard]] orv::CPolyValue storedValue(int row, int field) const;

    enum class Entry { Unchanged, Taken, Refused };
    /// Takes a text that the user entered; `Refused`, the cell as it was, where it breaks a bound.
    Entry enter(int row, int field, const orv::String& text);

    /// Edited texts by field and fill row, ascending.
    using FieldEdits = std::map<int, std::string>;
    [[nodiscard]] const FieldEdits& edits(int field) const
    {
        return m_edits[static_cast<std::size_t>(field)];
    }
    [[nodiscard]] bool hasEditedDecimals() const;

    /// The column of a field with one row for each row of the table, where the host offers columns
    /// and the column holds values of the field's format; valid until the library changes.
    [[nodiscard]] std::optional<gis::ColumnView> column(int field) const;
    /// Whether the host offers columns at all.
    [[nodiscard]] bool hasColumns() const { return m_columns != nullptr; }
    /// True when the shown rows are the table's, in its order, so that fill row and column row
    /// agree.
    [[nodiscard]] bool showsWholeTable() const { return m_isWholeTable; }
    /// The table's row index of each shown row; none where the rows are not in table order. Walks
    /// over the table once, at the first call.
    [[nodiscard]] const std::vector<int>* tableRows();

private:
    gis::CLibGis* m_library;
    gis::CDBTable* m_table;
    gis::IColumns* m_columns;
    std::vector<GridField> m_fields;
    std::vector<orv::CResultRow*> m_rows; // only where these were given
    std::span<gis::CEnt* const> m_entities; // only where these were given
    std::vector<FieldEdits> m_edits;
    std::optional<std::vector<int>> m_tableRows; // empty where the rows are not in table order
    int m_rowCount = 0;
    int m_tableRowCount = 0; // when the grid was filled: columns of other lengths are not read
    bool m_isWholeTable = false;
};

/// How saving a grid ended.
struct GridSaveOutcome {
    bool isSaved = false;
    int emptyRequiredField = -1; // the field that must have a value and has none
};

/// Writes back what differs from the library, in fill order, then looks for required values that
/// are missing (what was written stays written), then marks the library as modified if anything
/// counted as changed.
///
/// Decimals are compared and count as changed where they differ, and are never written: the grid
/// shows them rounded, and writing would lose the digits that it does not show. Cells that nobody
/// edited are compared by their shown text as well, so a decimal with hidden digits counts as
/// changed.
GridSaveOutcome saveGrid(CGridContents& contents);

} // namespace tables
