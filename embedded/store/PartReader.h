// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/CellReader.h"
#include "embedded/store/FileState.h"
#include "embedded/store/ReadingPair.h"

#include <map>
#include <string>
#include <vector>

namespace embedded::store {

/// Reads a column of a stored table, from all its parts, in row order into `column` (empty).
/// Errors: StoreFailure; Cancelled once it was stopped; DamagedFile when there are not as many rows
/// as the file says.
CellCounts readTableColumn(ReadingPair& reading, const StoredTable& table,
    const StoredColumn& source, gis::FieldFormat format, Column& column,
    const IsStopped& isStopped);

/// Shapes of a layer's rows, in one or two pieces that follow each other, in row order.
struct LayerShapes {
    std::vector<ShapeBuffer> pieces;
    std::int64_t unsupported = 0;
    std::int64_t damaged = 0;
};
LayerShapes readLayerShapes(ReadingPair& reading, const StoredPart& part, const StoredTheme& theme,
    const std::map<std::int64_t, std::string>& hints);

/// Gives the entities their parts; `rowPlaces` as in StoredTheme.
void putShapes(const LayerShapes& shapes, const std::vector<int>& rowPlaces, EntityStore& entities);

/// Finds rows of a part by their numbers.
class CPlaceFinder final {
public:
    explicit CPlaceFinder(const StoredPart& part);
    /// The row's place among the part's rows; -1 when it is not there.
    [[nodiscard]] int placeOf(std::int64_t fid) const;

private:
    const StoredPart& m_part;
    std::vector<int> m_firstPlaces; // of each run
};

} // namespace embedded::store
