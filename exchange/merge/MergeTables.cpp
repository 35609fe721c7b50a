// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "exchange/merge/MergeTables.h"

namespace exchange {

gis::MergeResult mergeTables(gis::CLibGis& library, gis::CDBTable* existing,
    gis::CLibGis* incomingLibrary, gis::CDBTable* incoming, std::vector<int>& mapping,
    IMergeDecider* decider)
{
    gis::CMergeTable merge(&library, existing, incomingLibrary, incoming);
    const gis::ResultCompare compare = merge.CompareTable();
    if (compare == gis::ResultCompare::Compatible)
        merge.Merge(mapping);
    else if (decider)
        decider->decideTable(library, merge, compare, mapping);
    return merge.GetMergeResult();
}

} // namespace exchange
