// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridContents.h"

#include <functional>
#include <vector>

namespace tables {

enum class SortDirection { Ascending, Descending };

/// Told how far long work is, 0 to 1; answers false to have it stopped. Called every few thousand
/// cells.
using StepCheck = std::function<bool(double)>;

/// The order of the rows by what a column shows: numbers as numbers (decimals with all their stored
/// digits), dates as dates, no before yes, texts by their bytes; cells without a value last in both
/// directions; equal cells in fill order. Edited texts count as what they stand for.
/// Shape: `order[k]` is the fill row shown at k. False, `order` undefined, when it was stopped.
/// Thread: any where the host offers the column (`readsColumn`), else the library's.
bool orderRows(CGridContents& contents, int field, SortDirection direction, const StepCheck& goesOn,
    std::vector<int>& order);

/// True when the field's values can be read as a column for the rows that are shown, away from the
/// library's thread.
[[nodiscard]] bool readsColumn(CGridContents& contents, int field);

} // namespace tables
