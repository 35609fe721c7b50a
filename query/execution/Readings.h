// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"
#include "host/gis/Columns.h"
#include "host/gis/Readings.h"
#include "host/gis/Types.h"

#include <functional>
#include <optional>
#include <vector>

namespace query {

/// False when the host says that the cells of this field could not be read.
[[nodiscard]] bool isReadable(gis::CLibGis& library, gis::CDBTable* table, int fieldIndex);

/// The fields that a filter names, by their indexes in the theme's table.
[[nodiscard]] std::vector<int> fieldsOf(
    gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter);

/// What a host offers for reading columns; null what it does not. Thread: the user interface's.
struct ColumnSource {
    explicit ColumnSource(gis::CLibGis* library);
    /// Whether there is anything to be read beforehand.
    explicit operator bool() const { return columns || readings; }
    gis::IColumns* columns = nullptr;
    gis::IReadings* readings = nullptr;
};

/// Asks the host for columns, so that one that still lies in a file is in memory when it is needed.
/// `goesOn(fraction)` is asked before each and, by hosts that offer it, from the reading threads
/// while a column is read. False when it was stopped. Thread: any, while the library does not
/// change.
bool readColumns(const ColumnSource& source, gis::CDBTable* table, const std::vector<int>& fields,
    const std::function<bool(double)>& goesOn);

/// The name of the first field of a filter whose cells could not be read; nothing when all could,
/// and for hosts that do not say.
[[nodiscard]] std::optional<orv::String> unreadableField(
    gis::CLibGis* library, gis::CTheme* theme, CEEExpression& filter);

} // namespace query
