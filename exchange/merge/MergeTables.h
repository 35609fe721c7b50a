// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "exchange/merge/MergeDecider.h"

namespace exchange {

/// Merges an incoming table into the existing one of its name: silently where they agree, else as
/// the decider says (null: undecided). Shape: `mapping` as `gis::CMergeTable::Merge` gives it, left
/// as it is when the table was renamed or nothing was decided.
gis::MergeResult mergeTables(gis::CLibGis& library, gis::CDBTable* existing,
    gis::CLibGis* incomingLibrary, gis::CDBTable* incoming, std::vector<int>& mapping,
    IMergeDecider* decider);

} // namespace exchange
