// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// From what was found for each row to the answers of a step.

#include "query/execution/plan/Program.h"

#include "host/expr/Expression.h"

namespace query::plan {

template <typename Value> int orderOf(const Value& left, const Value& right)
{
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Whether a comparison (code of host/expr) holds for an order of its sides.
inline bool comparisonHolds(int code, int order)
{
    switch (code) {
    case EEEqual:
        return order == 0;
    case EENotEqual:
        return order != 0;
    case EEGreater:
        return order > 0;
    case EELess:
        return order < 0;
    case EEGreaterOrEqual:
        return order >= 0;
    default:
        return order <= 0;
    }
}

inline void setBit(std::uint64_t& word, std::uint64_t bit, bool isSet)
{
    word = isSet ? word | bit : word & ~bit;
}

/// Rows with a value answer as `holds` says (or its contrary); the others are left open.
inline void answer(
    BlockMachine& machine, int column, const Bits& holds, bool isNegated, TruthBlock& truth)
{
    const std::uint64_t flip = isNegated ? ~std::uint64_t(0) : 0;
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t present = machine.column(column).presentInWord(machine.block(), word);
        truth.yes[at] = present & (holds[at] ^ flip);
        truth.no[at] = present & ~(holds[at] ^ flip);
        truth.failed[at] = 0;
    }
}

/// Rows with a value in both columns answer as `holds(row)` says; the others are left open.
template <typename Holds>
void answerBoth(BlockMachine& machine, int left, int right, TruthBlock& truth, const Holds& holds)
{
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t both = machine.column(left).presentInWord(machine.block(), word)
            & machine.column(right).presentInWord(machine.block(), word);
        std::uint64_t yes = 0;
        forEachBit(
            both, word, [&](int row) { yes |= std::uint64_t(holds(row) ? 1 : 0) << (row % 64); });
        truth.yes[at] = yes;
        truth.no[at] = both & ~yes;
        truth.failed[at] = 0;
    }
}

} // namespace query::plan
