// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A number made from one value by calculations with constants, such as "Larghezza * 2 + 1". Such a
// chain rises or falls with its start, so a comparison of it with a constant is a range of starts:
// found once, it spares rounding and calculating row by row.

#include <cstdint>
#include <vector>

namespace query::plan {

struct ChainStep {
    int code = 0; ///< EEAdd, EESubtract, EEMultiply or EEDivide.
    double constant = 0.0; ///< Finite.
    bool isConstantFirst = false; ///< constant - value; never for division.
};

class NumberChain final {
public:
    enum class Outcome {
        Value,
        StartTooLow, ///< The result leaves the range of doubles, as it does for all lower starts.
        StartTooHigh,
        Never, ///< Division by zero.
    };

    void append(const ChainStep& step) { m_steps.push_back(step); }
    [[nodiscard]] const std::vector<ChainStep>& steps() const { return m_steps; }
    [[nodiscard]] bool isEmpty() const { return m_steps.empty(); }
    /// False when it divides by zero, whatever the start.
    [[nodiscard]] bool canBeComputed() const;
    /// False when the result falls as the start rises.
    [[nodiscard]] bool isRising() const;
    /// `value` from a finite start; the same as the tree's nodes give.
    [[nodiscard]] Outcome eval(double start, double& value) const;

private:
    std::vector<ChainStep> m_steps;
};

/// Starts, as whole keys in ascending order, for which a comparison can be computed (`first` to
/// `last`) and those of them that lie in the range (`low` to `high`); ranges may be empty
/// (`low > high`). The comparison holds inside the range, or outside it when `isNegated`.
struct KeyRange {
    std::int64_t first = 0;
    std::int64_t last = -1;
    std::int64_t low = 0;
    std::int64_t high = -1;
    bool isNegated = false;
};

/// Range of a comparison (code of host/expr) of an ordered value with a constant.
/// `order(key)`: order of the value at a key against the constant, -1, 0 or 1, never falling as
/// keys rise (or never rising, when `isRising` is false), for keys `first` to `last`.
template <typename Order>
KeyRange rangeOf(
    int code, std::int64_t first, std::int64_t last, bool isRising, const Order& order);

/// Keys of doubles: ascending as they are, 0 and -0 the same.
[[nodiscard]] std::int64_t keyOfDouble(double value);
[[nodiscard]] double doubleOfKey(std::int64_t key);

/// The first key from `first` to `last` for which `holds`, which once true stays true; one past
/// `last` when there is none.
template <typename Holds>
std::int64_t firstKey(std::int64_t first, std::int64_t last, const Holds& holds)
{
    std::int64_t low = first;
    std::int64_t high = last + 1;
    while (low < high) {
        const auto half = (static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low)) / 2;
        const auto middle = static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + half);
        if (holds(middle))
            high = middle;
        else
            low = middle + 1;
    }
    return low;
}

/// Starts from `first` to `last` (keys, read by `startOf`) for which the chain's result compares
/// with a constant as asked.
template <typename StartOf>
KeyRange rangeOfChain(const NumberChain& chain, int code, double constant, std::int64_t first,
    std::int64_t last, const StartOf& startOf)
{
    double value = 0.0;
    const auto outcome = [&](std::int64_t key) { return chain.eval(startOf(key), value); };
    using Outcome = NumberChain::Outcome;
    if (!chain.canBeComputed())
        return {};
    const std::int64_t computable = firstKey(
        first, last, [&](std::int64_t key) { return outcome(key) != Outcome::StartTooLow; });
    const std::int64_t tooHigh = firstKey(
        computable, last, [&](std::int64_t key) { return outcome(key) == Outcome::StartTooHigh; });
    return rangeOf(code, computable, tooHigh - 1, chain.isRising(), [&](std::int64_t key) {
        (void)outcome(key);
        return value < constant ? -1 : value > constant ? 1 : 0;
    });
}

/// As declared above; codes are those of host/expr.
KeyRange rangeFromBounds(int code, std::int64_t first, std::int64_t last, bool isRising,
    std::int64_t firstReached, std::int64_t firstPassed);

template <typename Order>
KeyRange rangeOf(int code, std::int64_t first, std::int64_t last, bool isRising, const Order& order)
{
    const int sign = isRising ? 1 : -1;
    const std::int64_t firstReached
        = firstKey(first, last, [&](std::int64_t key) { return order(key) * sign >= 0; });
    const std::int64_t firstPassed
        = firstKey(firstReached, last, [&](std::int64_t key) { return order(key) * sign > 0; });
    return rangeFromBounds(code, first, last, isRising, firstReached, firstPassed);
}

} // namespace query::plan
