// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The classes of a thematic map, made from what a table's column holds.

#include "embedded/model/Column.h"
#include "embedded/model/Theme.h"

#include <memory>
#include <vector>

namespace embedded {

/// More single values than this make no useful map: further ones fall into the default class.
inline constexpr int MaxSingleValueClasses = 10000;

/// Smallest and largest value of a column; both empty when no row has one. Texts byte by byte, no
/// before yes. `hasEmptyRows`: at least one row has no value.
struct ColumnRange {
    orv::CPolyValue minimum;
    orv::CPolyValue maximum;
    bool hasEmptyRows = false;
};
ColumnRange rangeOf(const Column& column);

/// The distinct values of a column, ascending, the first `limit` of them.
std::vector<orv::CPolyValue> distinctValues(const Column& column, int limit);

using Classes = std::vector<std::unique_ptr<gis::CFeatureClass>>;

/// Limits as a map shows them, "Vuoto" for none; one text where both are the same.
orv::String limitsText(const orv::CPolyValue& low, const orv::CPolyValue& high);

/// The class of rows without a value.
std::unique_ptr<gis::CFeatureClass> emptyValuesClass();
/// The default class, which every map has first.
Classes defaultClassOnly();
/// The default class and one for all entities: no thematic map.
Classes uniformClasses();
/// The default class, one for rows without a value where there are any, and one a value.
Classes singleValueClasses(const Column& column);
/// The default class, one for rows without a value where there are any, and `count` intervals over
/// the values: of whole numbers (each begins one after the last of the one before; fewer where
/// there are fewer numbers), or of decimals (each begins where the one before ends). Columns of
/// another kind have no intervals and no class of empty rows.
Classes intervalClasses(const Column& column, int count);

} // namespace embedded
