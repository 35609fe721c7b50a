// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "query/execution/plan/Program.h"

#include <atomic>
#include <optional>
#include <vector>

namespace query::plan {

/// One past the last row that an entity uses; none when the runs contradict themselves.
[[nodiscard]] std::optional<int> usedRowCount(const gis::EntityRunsView& runs);

/// Runs a program over the rows of a theme's entities and gives those for which it is true, in
/// entity order. Blocks that no entity uses are passed over.
void selectEntities(const Program& program, const gis::EntityRunsView& runs, int rowCount,
    std::vector<gis::CEnt*>& result);

/// How many entities that would give. Ends early, with a number that means nothing, once it is
/// stopped.
[[nodiscard]] int countEntities(const Program& program, const gis::EntityRunsView& runs,
    int rowCount, const std::atomic<bool>& isStopped);

} // namespace query::plan
