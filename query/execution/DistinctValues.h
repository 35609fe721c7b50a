// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace query {

struct DistinctValue {
    orv::CPolyValue value;
    std::int64_t count = 0; // entities that have it
};

struct DistinctValues {
    std::vector<DistinctValue> values; // ascending
    std::int64_t missing = 0; // entities without a value
};

/// Distinct values of a field over a theme's entities, with the number of entities that have each.
/// Shape: ascending (no before yes, numbers and dates by value with NaN last, texts by bytes), each
/// value once; of values that compare equal (0 and -0) the first in entity order stands for all.
/// Units: decimals as stored, not rounded; dates in seconds since 1970-01-01 00:00 UTC.
/// Errors: nothing when the theme has no table or the table no such field.
/// Owner, thread: the result owns its texts and may outlive the theme; call on the library's
/// thread (it uses all cores where the host offers columns).
/// Source: order and equality as in docs/filter-language.md, "Comparison".
[[nodiscard]] std::optional<DistinctValues> distinctValues(
    gis::CLibGis& library, gis::CTheme* theme, int fieldIndex);

/// The same through single cells, whatever the host offers: the reference, and the way for hosts
/// without columns.
[[nodiscard]] std::optional<DistinctValues> distinctValuesByCell(
    gis::CLibGis& library, gis::CTheme* theme, int fieldIndex);

/// The order of distinct values: empty before any value; values of different kinds by their texts.
[[nodiscard]] bool isValueBefore(const orv::CPolyValue& left, const orv::CPolyValue& right);

} // namespace query
