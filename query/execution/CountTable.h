// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace query {

/// Counts by 64-bit key, with open addressing: a node for each value, as standard maps make, costs
/// more than the counting. Remembers the bits that came with the lowest index.
class CountTable final {
public:
    struct Slot {
        std::uint64_t key = 0;
        std::uint64_t bits = 0;
        std::int64_t count = 0; // 0: free
        int firstIndex = 0;
    };

    void add(std::uint64_t key, std::uint64_t bits, std::int64_t count, int index)
    {
        if (m_used * 2 >= m_slots.size())
            grow();
        Slot& slot = find(key);
        if (slot.count == 0) {
            slot = { key, bits, count, index };
            ++m_used;
            return;
        }
        slot.count += count;
        if (index < slot.firstIndex) {
            slot.firstIndex = index;
            slot.bits = bits;
        }
    }

    /// Free ones included.
    [[nodiscard]] const std::vector<Slot>& slots() const { return m_slots; }

private:
    std::vector<Slot> m_slots;
    std::size_t m_used = 0;

    Slot& find(std::uint64_t key)
    {
        // Multiplication by the golden ratio: neighbouring keys, and doubles whose low bits are all
        // zero, spread over the high bits.
        const std::size_t mask = m_slots.size() - 1;
        std::size_t position = static_cast<std::size_t>((key * 0x9E3779B97F4A7C15u) >> 20) & mask;
        while (m_slots[position].count != 0 && m_slots[position].key != key)
            position = (position + 1) & mask;
        return m_slots[position];
    }

    void grow()
    {
        std::vector<Slot> old(m_slots.empty() ? 256 : m_slots.size() * 2);
        old.swap(m_slots);
        for (const Slot& slot : old)
            if (slot.count > 0)
                find(slot.key) = slot;
    }
};

} // namespace query
