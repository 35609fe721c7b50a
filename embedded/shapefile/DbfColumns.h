// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Column.h"
#include "embedded/shapefile/DbfFile.h"
#include "embedded/shapefile/DbfMemo.h"
#include "embedded/shapefile/Encodings.h"

#include "host/gis/Types.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace embedded {

/// A column of a .dbf as a column of a table.
struct DbfColumn {
    std::string name; // unique in its table
    gis::FieldFormat format = gis::FieldFormat::Text;
    int digits = 0; // of a decimal
    Column column { gis::ColumnKind::Dictionary };
    std::vector<Finding> findings;
};

/// The record of a shape that has none.
inline constexpr std::uint32_t NoRecord = 0xFFFFFFFFu;

/// What reading columns is told and tells while it runs.
struct DbfReading {
    const DbfFile& file;
    /// Records in the order of the table's rows; `NoRecord` gives a row without values.
    const std::vector<std::uint32_t>& records;
    const DbfMemo& memo;
    TextDecoder decoder;
};

/// Reads columns on all cores. `isToStop` is asked now and then on the calling thread with the
/// share of the work that is done; when it answers true the result is empty.
std::vector<DbfColumn> readDbfColumns(
    const DbfReading& reading, const std::function<bool(double)>& isToStop);

/// Evidence of all texts of the records about their encoding.
TextEvidence textEvidence(const DbfFile& file, const std::vector<std::uint32_t>& records);

/// One column. `name`: its name in the table, for findings. Gives up when `stop` becomes true.
DbfColumn readDbfColumn(const DbfReading& reading, TextDecoder& decoder, int fieldIndex,
    const std::string& name, const std::atomic<bool>& stop, std::atomic<std::int64_t>& cellsDone);

/// Names of the fields as the table takes them: decoded, none empty, none equal but for ASCII case.
std::vector<std::string> uniqueFieldNames(const std::vector<std::string>& names);
std::vector<std::string> decodedFieldNames(const DbfFile& file, TextDecoder& decoder);

} // namespace embedded
