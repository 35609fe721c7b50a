// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/EntityStore.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace embedded::store {
class Connection;

/// An entry of a spatial index: a row and its box, rounded outwards to what the index can hold.
struct IndexEntry {
    std::int64_t fid = 0;
    std::array<float, 4> box {}; // min x, max x, min y, max y
};

/// Rounded so that the stored box holds the given one.
IndexEntry indexEntry(std::int64_t fid, const Box& box);

/// Writes a whole spatial index at once: entries sorted along a curve that keeps neighbours
/// together, packed into full nodes, which are written into the three tables behind SQLite's
/// R-tree. A million single insertions take some thirteen times as long.
/// `rtree`: the R-tree table, which exists; what it holds is replaced.
/// Source: the node format of SQLite's R-tree module (big-endian; the root, node 1, begins with the
/// tree's depth; 24 bytes an entry).
void writePackedIndex(
    Connection& connection, const std::string& rtree, std::vector<IndexEntry> entries);

/// All entries of an index.
std::vector<IndexEntry> readIndex(Connection& connection, const std::string& rtree);

/// The extent of all entries, from the root node alone; empty for an empty or unreadable index.
Box indexExtent(Connection& connection, const std::string& rtree);

} // namespace embedded::store
