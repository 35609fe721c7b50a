// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"
#include "embedded/model/Column.h"

#include "host/gis/Types.h"

#include <array>
#include <memory>
#include <vector>

namespace embedded {
class Library;
struct TableData;
struct FieldState;
} // namespace embedded

namespace gis {

/// A field of the embedded model. Changed only through the structure editor, the merge and the
/// library.
class CField final {
public:
    orv::String name;
    FieldFormat format = FieldFormat::Text;
    FieldType type = FieldType::FromUser;
    bool requested = false;
    std::array<orv::CPolyValue, ConstraintCount> constraints;
    CDBTable* table = nullptr;

    /// Digits after the point of a decimal field, 0 to 10; 0 for others.
    [[nodiscard]] int decimalDigits() const;
    [[nodiscard]] bool isPredefined() const { return type != FieldType::FromUser; }
};

} // namespace gis

namespace embedded {

/// Constraints of a field of this format that nobody edited.
std::array<orv::CPolyValue, gis::ConstraintCount> defaultConstraints(gis::FieldFormat format);

} // namespace embedded

namespace gis {

/// A table of the embedded model: fields, one column each, and rows in order. Columns are read on
/// first use.
class CDBTable final {
public:
    CDBTable(embedded::Library& library, const orv::String& name);
    CDBTable(const CDBTable&) = delete;
    CDBTable& operator=(const CDBTable&) = delete;
    ~CDBTable();

    [[nodiscard]] embedded::Library& library() const;
    [[nodiscard]] const orv::String& name() const;
    void setName(const orv::String& name); // not recorded; CLibGis::SetTableName is

    [[nodiscard]] int fieldCount() const;
    [[nodiscard]] CField* field(int index) const;
    [[nodiscard]] int indexOf(const CField* field) const; // -1 when not of this table
    [[nodiscard]] int findField(
        const orv::String& name) const; // exact first, then ASCII case ignored; -1
    /// Adds a field with an empty column (for building a table that nobody else has seen; not
    /// recorded).
    CField* addField(const orv::String& name, FieldFormat format);

    [[nodiscard]] int rowCount() const;
    [[nodiscard]] orv::CResultRow* row(int index) const;
    [[nodiscard]] static int indexOf(const orv::CResultRow* row);
    [[nodiscard]] static CDBTable* tableOf(const orv::CResultRow* row);
    [[nodiscard]] static CEnt* entityOf(const orv::CResultRow* row);
    static void setEntity(orv::CResultRow* row, CEnt* ent);

    /// Adds rows without values (not recorded): columns that are loaded grow with empty cells.
    void addRows(int count);
    /// Rows first, then whole columns: for importers that fill columns aside. `column` must have
    /// `rowCount()` rows.
    void setColumn(int fieldIndex, embedded::Column column);
    void truncateRows(int count);
    /// A column as it was, for taking back and making again; marks nothing but the rows beyond
    /// those stored.
    void restoreColumn(int fieldIndex, const embedded::Column& column);
    /// A column that was read from the store just now.
    void takeLoaded(int fieldIndex, embedded::Column column);

    /// The column, read from the store now if it was not yet; empty cells where reading failed.
    /// Thread: any, while no changing call runs.
    [[nodiscard]] const embedded::Column& column(int fieldIndex);
    /// The same beforehand, so that `column` need not wait. False when it was stopped: the column
    /// is as unread as before.
    bool loadColumn(int fieldIndex, const embedded::IsStopped& isStopped);
    [[nodiscard]] bool isColumnLoaded(int fieldIndex) const;
    /// Why the column's cells could not be read and are empty only therefore; null for others.
    /// Until the column is read again. Thread: the library's, while nobody reads the column.
    [[nodiscard]] const embedded::Error* columnFailure(int fieldIndex) const;
    /// The same of the first column that could not be read.
    [[nodiscard]] const embedded::Error* failedColumn() const;
    /// A column's cells as the store has them, one for each row; the table stays as it is. Errors:
    /// the store's, Cancelled among them; ReadFailed with the field's name where rows are missing.
    [[nodiscard]] embedded::Result<embedded::Column> readColumn(
        int fieldIndex, const embedded::IsStopped& isStopped = {}) const;
    /// Columns that could not be read, and that nobody wrote to since, are read again when they are
    /// asked for next.
    void forgetFailedColumns();
    /// Reads every column, those that failed before once more; false when one cannot be read. What
    /// is made of the whole table asks first: cells that were not read would pass for empty ones.
    [[nodiscard]] bool readAllColumns();
    /// For writers: marks the whole column as changed against the store.
    embedded::Column& columnForWriting(int fieldIndex);
    /// For writers of single cells, who call `markCellChanged` for each.
    embedded::Column& columnForCells(int fieldIndex);
    /// One cell changed against the store (writers of single cells call this).
    void markCellChanged(int row, int fieldIndex);

    // What changed since the last save
    /// True when columns or rows were added, removed, renamed, retyped or reordered: the table is
    /// written anew.
    [[nodiscard]] bool structureChanged() const;
    /// Rows with changed cells, ascending, and per field whether any cell changed.
    void changedCells(std::vector<int>& rows, std::vector<bool>& fields) const;
    /// Rows that the store holds (the first so many); rows after them are new.
    [[nodiscard]] int storedRowCount() const;
    /// Called by the store: now everything is saved (or: this many rows lie in the store, columns
    /// to be read on use).
    void markSaved();
    void markStored(int rowCount);

    /// Fields with their cells (shared, not copied), and back. `applyStructure` gives new fields
    /// their handles; all columns must have `rowCount()` rows. Not recorded:
    /// Library::replaceStructure is.
    [[nodiscard]] std::vector<embedded::FieldState> structure();
    void applyStructure(std::vector<embedded::FieldState>& structure);

    /// Identity given by the store; 0 = never stored.
    std::int64_t storeId = 0;

private:
    friend class embedded::Library;
    friend struct embedded::TableData;
    std::unique_ptr<embedded::TableData> m_data;
};

} // namespace gis
