// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace samples {

/// A small generator whose numbers are the same on every machine and with every library, unlike the
/// distributions of the standard library: the committed samples must not depend on who made them.
/// Source: SplitMix64, Steele, Lea and Flood, "Fast splittable pseudorandom number generators",
/// 2014.
class Random final {
public:
    explicit Random(std::uint64_t seed)
        : m_state(seed)
    {
    }

    std::uint64_t next()
    {
        m_state += 0x9E3779B97F4A7C15u;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }
    /// 0 <= result < bound
    int below(int bound) { return static_cast<int>(next() % static_cast<std::uint64_t>(bound)); }
    int between(int low, int high) { return low + below(high - low + 1); }
    /// 0 <= result < 1
    double fraction() { return static_cast<double>(next() >> 11) * 0x1.0p-53; }
    double between(double low, double high) { return low + fraction() * (high - low); }
    bool chance(double probability) { return fraction() < probability; }
    template <typename T, std::size_t N> const T& pick(const T (&values)[N])
    {
        return values[next() % N];
    }

private:
    std::uint64_t m_state;
};

} // namespace samples
