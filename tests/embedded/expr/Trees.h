// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Short ways to build expression trees, values and symbols in tests. Owner: who calls.

#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"

#include <memory>
#include <ostream>
#include <vector>

namespace trees {

using Node = std::unique_ptr<CEEExpression>;

inline orv::CPolyValue date(std::int64_t seconds)
{
    orv::CPolyValue value;
    value.SetDateValue(seconds);
    return value;
}

inline orv::CPolyValue list()
{
    orv::CPolyValue value;
    value.CreateArray(1, orv::PolyString);
    return value;
}

inline const orv::CPolyValue none;

inline CEEExpression* constant(const orv::CPolyValue& value)
{
    return new CEEExpressionConst(value);
}
inline CEEExpression* constant(int value)
{
    return constant(orv::CPolyValue(value));
}
inline CEEExpression* variable(const char* name)
{
    return new CEEExpressionVar(name);
}
inline CEEExpression* binary(int code, CEEExpression* left, CEEExpression* right)
{
    return new CEEExpressionBinOp(code, left, right);
}
inline CEEExpression* negation(CEEExpression* operand)
{
    return new CEEExpressionUnOp(EENot, operand);
}
inline CEEExpression* call(const char* name, std::vector<CEEExpression*> arguments = {})
{
    return new CEEExpressionFun(name, std::move(arguments));
}

/// What an evaluation came to, for case tables.
struct Outcome {
    bool succeeds = false;
    orv::CPolyValue value;

    friend bool operator==(const Outcome& left, const Outcome& right)
    {
        return left.succeeds == right.succeeds
            && (!left.succeeds
                || (left.value.GetType() == right.value.GetType() && left.value == right.value));
    }
    friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome)
    {
        if (!outcome.succeeds)
            return out << "failure";
        return out << outcome.value.GetType() << ':' << outcome.value.GetStringValue().View();
    }
};

inline const Outcome fails;
inline Outcome gives(const orv::CPolyValue& value)
{
    return { true, value };
}
template <typename T> Outcome gives(T value)
{
    return { true, orv::CPolyValue(value) };
}

/// Takes the tree over.
Outcome evaluate(CEEExpression* root, CEESymbolProvider* provider = nullptr);

/// A node of somebody else, which comes to `outcome`; `asked` counts evaluations, `alive` how many
/// such nodes there are, copies included.
CEEExpression* foreign(const Outcome& outcome, int* asked = nullptr, int* alive = nullptr);

} // namespace trees
