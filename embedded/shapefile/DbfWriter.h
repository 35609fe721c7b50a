// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Theme.h"
#include "embedded/shapefile/OutputFiles.h"

#include <functional>
#include <string>
#include <vector>

namespace gis {
class CDBTable;
}

namespace embedded {

class Column;

/// A field's column in a .dbf: the name and type it gets there.
struct DbfColumnLayout {
    int fieldIndex = -1; // -1: the number of the record
    std::string name; // at most 10 bytes, unique but for ASCII case
    char type = 'C';
    int widthBytes = 1;
    int decimals = 0;
};

/// The columns for a table's fields, wide enough for the cells of `rows` (row indexes, -1 for
/// none). A table without fields gets one column, FID. What a .dbf cannot hold goes to `report`.
std::vector<DbfColumnLayout> dbfLayout(
    gis::CDBTable& table, const std::vector<int>& rows, int maxTextBytes, Report& report);

/// Writes the records of `rows` as UTF-8. Asks `isToStop` now and then with the share that is done.
/// The columns must be loaded. Findings on single cells go to `report`.
void writeDbf(gis::CDBTable& table, const std::vector<int>& rows,
    const std::vector<DbfColumnLayout>& layout, OutputFile& dbf,
    const std::function<bool(double)>& isToStop, Report& report);

/// Names cut to what a .dbf holds and made unique but for ASCII case.
std::vector<std::string> dbfFieldNames(const std::vector<std::string>& names);

/// A number in at most `widthBytes`: with `decimals` digits after the point, or else as precisely
/// as fits. `isExact` tells whether the text reads back as the same number.
std::string dbfNumberText(double value, int decimals, int widthBytes, bool& isExact);

} // namespace embedded
