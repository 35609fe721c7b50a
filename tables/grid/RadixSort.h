// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tables {

/// Sorts by an unsigned key of `bits` bits, equal keys in their order. Time: one pass over the
/// items for each 11 bits. Shape: `keyOf(item)` gives the key; `spare` is room of the same size,
/// reused between calls.
template <typename Item, typename KeyOf>
void radixSort(std::vector<Item>& items, std::vector<Item>& spare, int bits, KeyOf keyOf)
{
    constexpr int DigitBits = 11; // 2048 counters stay in the first cache
    constexpr std::size_t Digits = std::size_t(1) << DigitBits;
    spare.resize(items.size());
    for (int shift = 0; shift < bits; shift += DigitBits) {
        std::array<std::size_t, Digits> starts {};
        for (const Item& item : items)
            ++starts[(keyOf(item) >> shift) & (Digits - 1)];
        std::size_t start = 0;
        for (auto& entry : starts) {
            const std::size_t count = entry;
            entry = start;
            start += count;
        }
        for (const Item& item : items)
            spare[starts[(keyOf(item) >> shift) & (Digits - 1)]++] = item;
        items.swap(spare);
    }
}

} // namespace tables
