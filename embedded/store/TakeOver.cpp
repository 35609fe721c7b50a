// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/TakeOver.h"

#include "embedded/store/LibraryBuilder.h"
#include "embedded/store/Names.h"
#include "embedded/store/PartScan.h"
#include "embedded/store/CellReader.h"
#include "embedded/store/Statement.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>

namespace embedded::store {
namespace {

bool isSameName(std::string_view left, std::string_view right)
{
    return orv::CompareIgnoreAsciiCase(left, right) == 0;
}

bool isOurs(const StoredTable& stored, const std::string& column, bool isLayer)
{
    if (isSameName(column, FidColumn) || (isLayer && isSameName(column, GeometryColumn)))
        return true;
    return std::any_of(stored.columns.begin(), stored.columns.end(),
        [&](const StoredColumn& known) { return isSameName(known.name, column); });
}

bool hasPhysicalColumn(Connection& connection, const StoredPart& part, const std::string& column)
{
    const auto physical = columnsOf(connection, part.physicalName);
    return std::any_of(physical.begin(), physical.end(),
        [&](const PhysicalColumn& there) { return isSameName(there.name, column); });
}

// SQL for "this cell is not what the field's column is for", as far as a scan can tell.
std::string isOddSql(const std::string& column, gis::FieldFormat format)
{
    const std::string type = "typeof(" + column + ")";
    switch (format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return type + " = 'blob'";
    case gis::FieldFormat::Boolean:
        return type + " NOT IN ('null', 'integer', 'real')";
    case gis::FieldFormat::Integer:
        return type + " NOT IN ('null', 'integer') OR " + column
            + " NOT BETWEEN -2147483648 AND 2147483647";
    case gis::FieldFormat::Decimal:
        return type + " NOT IN ('null', 'integer', 'real')";
    case gis::FieldFormat::Date:
        // SQLite carries 31 February over into March, so only real days come back as they were.
        return type + " <> 'null' AND date(" + column + ", '+0 days') IS NOT " + column;
    }
    return "0";
}

void reportColumn(Connection& connection, const gis::CField& field, const StoredColumn& column,
    const StoredPart& part, Report& report)
{
    const std::string name = quoted(column.name);
    if (connection.integerOf("SELECT EXISTS (SELECT 1 FROM " + quoted(part.physicalName) + " WHERE "
            + isOddSql(name, field.format) + ")")
        == 0)
        return;
    Column cells(columnKindOf(field.format));
    const CellCounts counts = readCells(connection,
        { part.physicalName, column.name, part.fidColumn, std::numeric_limits<std::int64_t>::min(),
            std::numeric_limits<std::int64_t>::max() },
        field.format, cells);
    if (counts.emptied > 0)
        report.add({ FindingCode::CellsEmptied, FindingSeverity::Warning, field.name.Bytes(),
            part.physicalName, counts.emptied, 0 });
    if (counts.timesDropped > 0)
        report.add({ FindingCode::TimeDropped, FindingSeverity::Warning, field.name.Bytes(),
            part.physicalName, counts.timesDropped, 0 });
}

} // namespace

ChangeMarks changeMarks(Connection& connection, std::int64_t tableId)
{
    Statement row(connection,
        "SELECT rows_changed, cells_changed, shapes_changed FROM tematica_marks "
        "WHERE table_id = ?1");
    row.bindInteger(1, tableId);
    if (!row.step())
        return { true, true, true };
    return { row.integer(0) != 0, row.integer(1) != 0, row.integer(2) != 0 };
}

void noteMissingColumns(
    Connection& connection, std::vector<StoredPart>& parts, const std::vector<std::string>& columns)
{
    for (StoredPart& part : parts) {
        const auto physical = columnsOf(connection, part.physicalName);
        for (const std::string& column : columns)
            if (std::none_of(physical.begin(), physical.end(),
                    [&](const PhysicalColumn& there) { return isSameName(there.name, column); }))
                part.missingColumns.push_back(column);
    }
}

void takeOverColumns(
    Connection& connection, gis::CDBTable& table, StoredTable& stored, Report& report)
{
    for (std::size_t p = 0; p < stored.parts.size(); ++p) {
        StoredPart& part = stored.parts[p];
        std::vector<PhysicalColumn> added;
        for (const PhysicalColumn& there : columnsOf(connection, part.physicalName))
            if (!isOurs(stored, there.name, part.themeId != 0))
                added.push_back(there);
        for (const GuessedField& guessed :
            guessFields(connection, part.physicalName, added, report)) {
            addGuessedField(table, stored, guessed);
            report.add({ FindingCode::ColumnTakenOver, FindingSeverity::Note, guessed.column,
                table.name().Bytes(), 0, 0 });
            // The parts before do not have it, or it would be known already; those after may.
            for (std::size_t other = 0; other < stored.parts.size(); ++other)
                if (other < p
                    || (other > p
                        && !hasPhysicalColumn(connection, stored.parts[other], guessed.column)))
                    stored.parts[other].missingColumns.push_back(guessed.column);
        }
    }
    for (const StoredPart& part : stored.parts)
        if (!part.missingColumns.empty())
            stored.isRegular = false;
}

void reportRows(const orv::String& name, int rowsBefore, const StoredTable& stored,
    const ChangeMarks& marks, Report& report)
{
    if (!marks.rows && rowsBefore == stored.rowCount)
        return; // the numbers were only too scattered to be written down
    report.add({ FindingCode::RowsTakenOver, FindingSeverity::Note, name.Bytes(),
        std::to_string(rowsBefore) + " before, " + std::to_string(stored.rowCount) + " now",
        std::abs(stored.rowCount - rowsBefore), 0 });
}

void reportCells(
    Connection& connection, const gis::CDBTable& table, const StoredTable& stored, Report& report)
{
    for (const StoredColumn& column : stored.columns)
        for (const StoredPart& part : stored.parts)
            if (part.hasColumn(column.name))
                reportColumn(
                    connection, *table.field(table.indexOf(column.field)), column, part, report);
}

} // namespace embedded::store
