// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Columns.h"

// A query over the host's columns: the same entities as the walk, found block by block on all
// cores.

#include "query/execution/RowWalk.h"

namespace query::plan {

/// The entities for which the filter is true, in entity order. `result` is overwritten.
/// Errors: false, with `result` untouched, where the host offers no columns, or the filter or the
/// data cannot be expressed as operations over them; the filter is then to be walked.
[[nodiscard]] bool selectByColumns(
    const QuerySource& source, CEEExpression& filter, std::vector<gis::CEnt*>& result);

} // namespace query::plan
