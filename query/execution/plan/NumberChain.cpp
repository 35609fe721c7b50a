// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/NumberChain.h"

#include "host/expr/Expression.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace query::plan {

namespace {

double calculated(const ChainStep& step, double value)
{
    switch (step.code) {
    case EEAdd:
        return value + step.constant;
    case EESubtract:
        return step.isConstantFirst ? step.constant - value : value - step.constant;
    case EEMultiply:
        return value * step.constant;
    default:
        return value / step.constant;
    }
}

bool dividesByZero(const ChainStep& step)
{
    return step.code == EEDivide && step.constant == 0.0;
}

bool turnsRound(const ChainStep& step)
{
    if (step.code == EEAdd)
        return false;
    return step.code == EESubtract ? step.isConstantFirst : step.constant < 0.0;
}

} // namespace

bool NumberChain::canBeComputed() const
{
    return std::none_of(m_steps.begin(), m_steps.end(), dividesByZero);
}

bool NumberChain::isRising() const
{
    bool isRising = true;
    for (const ChainStep& step : m_steps)
        isRising = isRising != turnsRound(step);
    return isRising;
}

NumberChain::Outcome NumberChain::eval(double start, double& value) const
{
    value = start;
    bool isRising = true;
    for (const ChainStep& step : m_steps) {
        if (dividesByZero(step))
            return Outcome::Never;
        value = calculated(step, value);
        isRising = isRising != turnsRound(step);
        if (!std::isfinite(value))
            return (value > 0.0) == isRising ? Outcome::StartTooHigh : Outcome::StartTooLow;
    }
    return Outcome::Value;
}

std::int64_t keyOfDouble(double value)
{
    const auto bits = std::bit_cast<std::int64_t>(value);
    return bits >= 0 ? bits : -(bits & std::numeric_limits<std::int64_t>::max());
}

double doubleOfKey(std::int64_t key)
{
    return key >= 0 ? std::bit_cast<double>(key) : -std::bit_cast<double>(-key);
}

KeyRange rangeFromBounds(int code, std::int64_t first, std::int64_t last, bool isRising,
    std::int64_t firstReached, std::int64_t firstPassed)
{
    KeyRange range { first, last, firstReached, firstPassed - 1, false };
    // Of a falling value the keys before `firstReached` have the greater values.
    const int beforeReached = isRising ? EELess : EEGreater;
    const int beforePassed = isRising ? EELessOrEqual : EEGreaterOrEqual;
    const int fromReached = isRising ? EEGreaterOrEqual : EELessOrEqual;
    if (code == EEEqual)
        return range;
    if (code == EENotEqual) {
        range.isNegated = true;
    } else if (code == beforeReached) {
        range.low = first;
        range.high = firstReached - 1;
    } else if (code == beforePassed) {
        range.low = first;
    } else if (code == fromReached) {
        range.high = last;
    } else {
        range.low = firstPassed;
        range.high = last;
    }
    return range;
}

} // namespace query::plan
