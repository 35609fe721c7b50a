// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Who decides when an imported table or theme clashes with one that is there: dialogs, or an option
// of the command line. The import obeys.

#include "host/gis/Merge.h"

#include <memory>
#include <vector>

namespace gis {
class CGisMerger;
}

namespace exchange {

/// A theme that is to be loaded under the name of one that differs from it.
struct ThemeConflict {
    orv::String name;
    gis::CDBTable* table = nullptr; // the loaded theme's table
    gis::EntType type = gis::EntType::Points;
    gis::EntTypeCoords coords = gis::EntTypeCoords::XY;
};

class IMergeDecider {
public:
    virtual ~IMergeDecider() = default;
    /// Settles a clash of tables through `merge`: `Merge` (which fills `mapping`), or
    /// `RenameTable`; neither leaves the clash undecided and the import stops.
    virtual void decideTable(gis::CLibGis& library, gis::CMergeTable& merge,
        gis::ResultCompare compare, std::vector<int>& mapping)
        = 0;
    /// The theme that takes the entities, made for them or chosen; null leaves the clash undecided
    /// and the import stops.
    virtual gis::CTheme* decideTheme(gis::CLibGis& library, const ThemeConflict& conflict) = 0;
};

/// Gives the merger somebody to ask. Without one every clash stays undecided.
void setMergeDecider(gis::CGisMerger& merger, std::shared_ptr<IMergeDecider> decider);

} // namespace exchange
