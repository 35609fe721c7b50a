// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/FileState.h"

#include "host/base/Numbers.h"

#include <algorithm>

namespace embedded::store {

int StoredPart::rowCount() const
{
    int count = 0;
    for (const FidRun& run : runs)
        count += run.count;
    return count;
}

bool StoredPart::hasColumn(const std::string& name) const
{
    return std::none_of(missingColumns.begin(), missingColumns.end(),
        [&](const std::string& gone) { return orv::CompareIgnoreAsciiCase(gone, name) == 0; });
}

void StoredPart::addRow(std::int64_t fid, int row)
{
    if (!runs.empty()) {
        FidRun& last = runs.back();
        if (last.firstFid + last.count == fid && last.firstRow + last.count == row) {
            ++last.count;
            return;
        }
    }
    runs.push_back({ fid, row, 1 });
}

void StoredPart::truncate(int row)
{
    while (!runs.empty() && runs.back().firstRow >= row)
        runs.pop_back();
    if (!runs.empty())
        runs.back().count = std::min(runs.back().count, row - runs.back().firstRow);
}

const StoredPart* StoredTable::partOf(std::int64_t themeId) const
{
    const auto found = std::find_if(parts.begin(), parts.end(),
        [&](const StoredPart& part) { return part.themeId == themeId; });
    return found == parts.end() ? nullptr : &*found;
}

StoredPart* StoredTable::partOf(std::int64_t themeId)
{
    return const_cast<StoredPart*>(static_cast<const StoredTable*>(this)->partOf(themeId));
}

const StoredColumn* StoredTable::columnOf(const gis::CField* field) const
{
    const auto found = std::find_if(columns.begin(), columns.end(),
        [&](const StoredColumn& column) { return column.field == field; });
    return found == columns.end() ? nullptr : &*found;
}

} // namespace embedded::store
