// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/expr/Operators.h"

#include "host/expr/Expression.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace embedded {

namespace {

bool isNumber(int type)
{
    return type == orv::PolyInt32 || type == orv::PolyDouble;
}

template <typename T> int orderOf(const T& left, const T& right)
{
    return left < right ? -1 : left > right ? 1 : left == right ? 0 : 2;
}

} // namespace

bool compareValues(const orv::CPolyValue& left, const orv::CPolyValue& right, int& order)
{
    if (isNumber(left.GetType()) && isNumber(right.GetType())) {
        order = orderOf(left.GetDoubleValue(), right.GetDoubleValue());
        return true;
    }
    if (left.GetType() != right.GetType())
        return false;
    switch (left.GetType()) {
    case orv::PolyString: {
        const int sign = left.TextView().compare(right.TextView());
        order = sign < 0 ? -1 : sign > 0 ? 1 : 0;
        return true;
    }
    case orv::PolyDate:
        order = orderOf(left.GetDateValue(), right.GetDateValue());
        return true;
    case orv::PolyBool:
        order = orderOf(int(left.GetBoolValue()), int(right.GetBoolValue()));
        return true;
    default:
        return false;
    }
}

bool comparisonHolds(int code, int order)
{
    switch (code) {
    case EEEqual:
        return order == 0;
    case EENotEqual:
        return order != 0;
    case EEGreater:
        return order == 1;
    case EELess:
        return order == -1;
    case EEGreaterOrEqual:
        return order == 1 || order == 0;
    case EELessOrEqual:
        return order == -1 || order == 0;
    default:
        return false;
    }
}

bool calculate(
    int code, const orv::CPolyValue& left, const orv::CPolyValue& right, orv::CPolyValue& result)
{
    if (!isNumber(left.GetType()) || !isNumber(right.GetType()))
        return false;
    const bool integers = left.GetType() == orv::PolyInt32 && right.GetType() == orv::PolyInt32;
    if (integers && code != EEDivide) {
        const std::int64_t a = left.GetInt32Value();
        const std::int64_t b = right.GetInt32Value();
        const std::int64_t exact = code == EEAdd ? a + b : code == EESubtract ? a - b : a * b;
        if (exact >= std::numeric_limits<std::int32_t>::min()
            && exact <= std::numeric_limits<std::int32_t>::max())
            result = static_cast<int>(exact);
        else
            result = static_cast<double>(exact);
        return true;
    }
    const double a = left.GetDoubleValue();
    const double b = right.GetDoubleValue();
    double value = 0;
    switch (code) {
    case EEAdd:
        value = a + b;
        break;
    case EESubtract:
        value = a - b;
        break;
    case EEMultiply:
        value = a * b;
        break;
    case EEDivide:
        if (b == 0)
            return false;
        value = a / b;
        break;
    default:
        return false;
    }
    if (!std::isfinite(value))
        return false;
    result = value;
    return true;
}

} // namespace embedded
