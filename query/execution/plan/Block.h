// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the plan works on: blocks of rows, with a bit a row for each thing that may be true of it.

#include "host/gis/Columns.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace query::plan {

/// Rows of a block. A block's numbers and bits fit the nearest cache, and no block crosses a chunk.
inline constexpr int BlockRows = 4096;
inline constexpr int BlockWords = BlockRows / 64;
static_assert(gis::ColumnChunkRows % BlockRows == 0);

/// One bit a row, the first row lowest.
using Bits = std::array<std::uint64_t, BlockWords>;

/// The rows that are worked on; the first is a multiple of `BlockRows`.
struct RowBlock {
    int firstRow = 0;
    int rowCount = 0;

    [[nodiscard]] int wordCount() const { return (rowCount + 63) / 64; }
    /// The rows that a word stands for: all of its bits but in the last word of a shorter block.
    [[nodiscard]] std::uint64_t rowsOfWord(int word) const
    {
        const int rows = rowCount - word * 64;
        return rows >= 64 ? ~std::uint64_t(0) : (std::uint64_t(1) << rows) - 1;
    }
};

/// A condition's answers: yes, no, cannot be computed; rows in none of these have no answer, since
/// a value is missing. The three never overlap.
struct TruthBlock {
    Bits yes;
    Bits no;
    Bits failed;
};

/// Numbers; rows in neither `present` nor `failed` have no value. The two never overlap.
struct NumberBlock {
    std::array<double, BlockRows> values;
    Bits present;
    Bits failed;
};

/// A column that a filter names.
struct PlanColumn {
    gis::ColumnView view;
    int decimalDigits = 0;

    template <typename Value> [[nodiscard]] const Value* values(const RowBlock& block) const
    {
        const gis::ColumnChunk& chunk = chunkOf(block);
        return static_cast<const Value*>(chunk.values) + block.firstRow % gis::ColumnChunkRows;
    }
    /// Rows that have a value.
    [[nodiscard]] std::uint64_t presentInWord(const RowBlock& block, int word) const
    {
        const std::uint64_t* const validity = chunkOf(block).validity;
        const int first = block.firstRow % gis::ColumnChunkRows / 64;
        return validity ? validity[first + word] & block.rowsOfWord(word) : block.rowsOfWord(word);
    }

private:
    [[nodiscard]] const gis::ColumnChunk& chunkOf(const RowBlock& block) const
    {
        return view.chunks[block.firstRow / gis::ColumnChunkRows];
    }
};

/// Calls `visit(row)` for each set bit of a word of a block.
template <typename Visit> void forEachBit(std::uint64_t bits, int word, const Visit& visit)
{
    for (; bits != 0; bits &= bits - 1)
        visit(word * 64 + __builtin_ctzll(bits));
}

} // namespace query::plan
