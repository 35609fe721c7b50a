// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "embedded/expr/Operators.h"

#include "host/expr/Expression.h"

#include <cmath>
#include <limits>

namespace embedded {

namespace {

bool isNumber(const Operand& operand)
{
    return operand.type == orv::PolyInt32 || operand.type == orv::PolyDouble;
}

double asDouble(const Operand& operand)
{
    return operand.type == orv::PolyInt32 ? operand.number.asInt32 : operand.number.asDouble;
}

void setBool(Operand& result, bool value)
{
    result.type = orv::PolyBool;
    result.number.asBool = value;
}

bool setDouble(Operand& result, double value)
{
    result.type = orv::PolyDouble;
    result.number.asDouble = value;
    return std::isfinite(value);
}

bool setInteger(Operand& result, std::int64_t value)
{
    if (value < std::numeric_limits<std::int32_t>::min()
        || value > std::numeric_limits<std::int32_t>::max())
        return setDouble(result, static_cast<double>(value));
    result.type = orv::PolyInt32;
    result.number.asInt32 = static_cast<std::int32_t>(value);
    return true;
}

/// Compared by the operators themselves, so that a NaN of a host is equal to nothing.
template <typename T> bool compareAs(int code, const T& left, const T& right, Operand& result)
{
    switch (code) {
    case EEEqual:
        return setBool(result, left == right), true;
    case EENotEqual:
        return setBool(result, left != right), true;
    case EEGreater:
        return setBool(result, left > right), true;
    case EELess:
        return setBool(result, left < right), true;
    case EEGreaterOrEqual:
        return setBool(result, left >= right), true;
    case EELessOrEqual:
        return setBool(result, left <= right), true;
    default:
        return false;
    }
}

bool compare(int code, const Operand& left, const Operand& right, Operand& result)
{
    if (left.type == right.type)
        switch (left.type) {
        case orv::PolyInt32:
            return compareAs(code, left.number.asInt32, right.number.asInt32, result);
        case orv::PolyDouble:
            return compareAs(code, left.number.asDouble, right.number.asDouble, result);
        case orv::PolyString:
            return compareAs(code, left.text, right.text, result);
        case orv::PolyDate:
            return compareAs(code, left.number.asDate, right.number.asDate, result);
        case orv::PolyBool:
            return compareAs(code, left.number.asBool, right.number.asBool, result);
        default:
            return false;
        }
    return isNumber(left) && isNumber(right)
        && compareAs(code, asDouble(left), asDouble(right), result);
}

bool calculateIntegers(int code, std::int64_t left, std::int64_t right, Operand& result)
{
    switch (code) {
    case EEAdd:
        return setInteger(result, left + right);
    case EESubtract:
        return setInteger(result, left - right);
    default:
        return setInteger(result, left * right);
    }
}

bool calculate(int code, const Operand& left, const Operand& right, Operand& result)
{
    if (!isNumber(left) || !isNumber(right))
        return false;
    const bool areIntegers = left.type == orv::PolyInt32 && right.type == orv::PolyInt32;
    if (areIntegers && code != EEDivide)
        return calculateIntegers(code, left.number.asInt32, right.number.asInt32, result);
    const double first = asDouble(left);
    const double second = asDouble(right);
    switch (code) {
    case EEAdd:
        return setDouble(result, first + second);
    case EESubtract:
        return setDouble(result, first - second);
    case EEMultiply:
        return setDouble(result, first * second);
    default:
        return second != 0.0 && setDouble(result, first / second);
    }
}

bool isLogical(const Operand& operand)
{
    return operand.type == orv::PolyBool || operand.isEmpty();
}

/// Three-valued: no value means "not known". `decisive` is the value that settles the result.
bool combine(bool decisive, const Operand& left, const Operand& right, Operand& result)
{
    if (left.isBool(decisive)) {
        setBool(result, decisive);
        return true;
    }
    if (!isLogical(left) || !isLogical(right))
        return false;
    const bool isUnknown = !right.isBool(decisive) && (left.isEmpty() || right.isEmpty());
    if (isUnknown)
        result = Operand();
    else
        setBool(result, right.number.asBool);
    return true;
}

} // namespace

Operand operandOf(const orv::CPolyValue& value)
{
    Operand operand;
    operand.type = value.GetType();
    switch (operand.type) {
    case orv::PolyBool:
        operand.number.asBool = value.GetBoolValue();
        break;
    case orv::PolyInt32:
        operand.number.asInt32 = value.GetInt32Value();
        break;
    case orv::PolyDouble:
        operand.number.asDouble = value.GetDoubleValue();
        break;
    case orv::PolyDate:
        operand.number.asDate = value.GetDateValue();
        break;
    default:
        operand.text = value.TextView();
    }
    return operand;
}

void storeOperand(const Operand& operand, orv::CPolyValue& value)
{
    switch (operand.type) {
    case orv::PolyBool:
        value = operand.number.asBool;
        break;
    case orv::PolyInt32:
        value = static_cast<int>(operand.number.asInt32);
        break;
    case orv::PolyDouble:
        value = operand.number.asDouble;
        break;
    default:
        value.SetToEmpty();
    }
}

bool isDecided(int code, const Operand& left)
{
    return (code == EEAnd && left.isBool(false)) || (code == EEOr && left.isBool(true));
}

bool computeBinary(int code, const Operand& left, const Operand& right, Operand& result)
{
    if (code == EEAnd || code == EEOr)
        return combine(code == EEOr, left, right, result);
    const bool isArithmetic = code >= EESubtract && code <= EEMultiply;
    if (!isArithmetic && (code < EEEqual || code > EELessOrEqual))
        return false;
    if (left.isEmpty() || right.isEmpty()) {
        result = Operand();
        return true;
    }
    return isArithmetic ? calculate(code, left, right, result) : compare(code, left, right, result);
}

bool computeUnary(int code, const Operand& operand, Operand& result)
{
    if (code != EENot || !isLogical(operand))
        return false;
    if (operand.isEmpty())
        result = Operand();
    else
        setBool(result, !operand.number.asBool);
    return true;
}

} // namespace embedded
