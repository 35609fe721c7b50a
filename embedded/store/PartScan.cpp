// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/PartScan.h"

#include "embedded/store/Statement.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace embedded::store {
namespace {

bool takeNumber(std::string_view& text, std::int64_t& value)
{
    const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (problem != std::errc())
        return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool takeMark(std::string_view& text, char mark)
{
    if (text.empty() || text.front() != mark)
        return false;
    text.remove_prefix(1);
    return true;
}

std::vector<std::int64_t> fidsOf(Connection& connection, const StoredPart& part)
{
    std::vector<std::int64_t> fids;
    if (part.fidColumn.empty()) {
        const std::int64_t count
            = connection.integerOf("SELECT count(*) FROM " + quoted(part.physicalName));
        for (std::int64_t i = 1; i <= count; ++i)
            fids.push_back(i);
        return fids;
    }
    const std::string fid = quoted(part.fidColumn);
    Statement rows(connection,
        "SELECT " + fid + " FROM " + quoted(part.physicalName) + " NOT INDEXED ORDER BY " + fid);
    while (rows.step())
        fids.push_back(rows.integer(0));
    return fids;
}

void checkCount(Connection& connection, std::size_t rows)
{
    if (rows > static_cast<std::size_t>(std::numeric_limits<int>::max()))
        failWith(ErrorCode::DamagedFile, connection.path(), "more rows than can be numbered");
}

} // namespace

std::vector<PhysicalColumn> columnsOf(Connection& connection, const std::string& table)
{
    std::vector<PhysicalColumn> columns;
    Statement rows(connection, "SELECT name, type, pk FROM pragma_table_info(?1)");
    rows.bindText(1, table);
    while (rows.step())
        columns.push_back(
            { std::string(rows.text(0)), std::string(rows.text(1)), rows.integer(2) > 0 });
    return columns;
}

bool parseRuns(std::string_view text, int rows, StoredPart& part)
{
    std::int64_t sum = 0, lastFid = 0;
    while (!text.empty()) {
        std::int64_t first = 0, last = 0;
        if (!part.runs.empty() && !takeMark(text, ','))
            return false;
        if (!takeNumber(text, first) || !takeMark(text, '-') || !takeNumber(text, last)
            || first <= lastFid || last < first || last > std::numeric_limits<int>::max())
            return false;
        part.runs.push_back(
            { first, static_cast<int>(first - 1), static_cast<int>(last - first + 1) });
        sum += last - first + 1;
        lastFid = last;
    }
    return sum == rows;
}

bool endsAsStored(Connection& connection, const StoredPart& part)
{
    const std::int64_t last = connection.integerOf(
        "SELECT max(" + quoted(part.fidColumn) + ") FROM " + quoted(part.physicalName));
    return last == (part.runs.empty() ? 0 : part.runs.back().firstFid + part.runs.back().count - 1);
}

void scanRuns(Connection& connection, StoredTable& table)
{
    struct RowOfPart {
        std::int64_t fid;
        std::size_t part;
    };
    std::vector<RowOfPart> rows;
    for (std::size_t p = 0; p < table.parts.size(); ++p) {
        table.parts[p].runs.clear();
        for (const std::int64_t fid : fidsOf(connection, table.parts[p]))
            rows.push_back({ fid, p });
    }
    checkCount(connection, rows.size());
    if (table.parts.size() > 1)
        std::sort(rows.begin(), rows.end(), [](const RowOfPart& a, const RowOfPart& b) {
            return a.fid != b.fid ? a.fid < b.fid : a.part < b.part;
        });
    int row = 0;
    for (const RowOfPart& entry : rows) {
        table.isRegular = table.isRegular && entry.fid == row + 1;
        table.parts[entry.part].addRow(entry.fid, row++);
    }
    table.rowCount = row;
}

} // namespace embedded::store
