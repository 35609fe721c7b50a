// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The rules of the operators over single values: what fails, what is empty, what the value is.

#include "host/base/PolyValue.h"

#include <cstdint>
#include <string_view>

namespace embedded {

/// A value while it is computed with. Texts are lent by the node or symbol that they come from, so
/// that comparing a text copies nothing; operators never answer with a text.
struct Operand {
    int type = orv::PolyEmpty;
    union {
        bool asBool;
        std::int32_t asInt32;
        double asDouble;
        std::int64_t asDate;
    } number {};
    std::string_view text;

    [[nodiscard]] bool isEmpty() const { return type == orv::PolyEmpty; }
    [[nodiscard]] bool isBool(bool value) const
    {
        return type == orv::PolyBool && number.asBool == value;
    }
};

Operand operandOf(const orv::CPolyValue& value);
void storeOperand(const Operand& operand, orv::CPolyValue& value);

/// True for AND with a false left and OR with a true left: the right side is not asked.
bool isDecided(int code, const Operand& left);

/// Errors: false for operands that do not fit the operator, a division by zero, a result that is
/// infinite or no number, and for codes that are no operators.
bool computeBinary(int code, const Operand& left, const Operand& right, Operand& result);
bool computeUnary(int code, const Operand& operand, Operand& result);

} // namespace embedded
