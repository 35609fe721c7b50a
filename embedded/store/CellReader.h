// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"
#include "embedded/model/Column.h"

#include <cstdint>
#include <string>

struct sqlite3_value;

namespace embedded::store {
class Connection;

/// What became of cells that do not hold what their column is for: SQLite lets any program write
/// anything anywhere.
struct CellCounts {
    std::int64_t converted = 0; // another type with the same meaning
    std::int64_t emptied = 0; // no counterpart
    std::int64_t timesDropped = 0;
    void add(const CellCounts& other);
};

/// Takes values of a file one after another as cells of one format.
class CCellTaker final {
public:
    CCellTaker(gis::FieldFormat format, Column& column)
        : m_format(format)
        , m_column(column)
    {
    }
    void take(sqlite3_value* value);
    [[nodiscard]] const CellCounts& counts() const { return m_counts; }

private:
    void takeText(sqlite3_value* value);
    void takeBoolean(sqlite3_value* value);
    void takeInteger(sqlite3_value* value);
    void takeDecimal(sqlite3_value* value);
    void takeDate(sqlite3_value* value);
    void empty();

    gis::FieldFormat m_format;
    Column& m_column;
    CellCounts m_counts;
};

/// Where cells are read: one column of one table of the file.
struct CellSource {
    std::string table;
    std::string column;
    std::string fidColumn; // empty: a view, read in its own order
    std::int64_t firstFid = 0;
    std::int64_t lastFid = 0; // only rows from `firstFid` to here
};

/// Appends the cells of a source to `column`, in the order of the rows' numbers. Errors:
/// StoreFailure, with Cancelled where `isStopped` has answered true. The rows go by inside SQLite,
/// into an aggregate function of ours: handing out row after row would take about half as long
/// again.
CellCounts readCells(Connection& connection, const CellSource& source, gis::FieldFormat format,
    Column& column, const IsStopped& isStopped = {});

} // namespace embedded::store
