// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"

/// Tests whether a field has no value. Prints as the field's name alone, which is what its base
/// prints: a tree's text is no filter to be read again.
class CExpressionFieldIsNull final : public CEEExpressionVar {
public:
    /// `isNull` is true for IS NULL, false for IS NOT NULL.
    CExpressionFieldIsNull(const orv::String& field, bool isNull);
    ~CExpressionFieldIsNull() override;
    /// Errors: false when the field is unknown.
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    CEEExpression* Clone() override;
    [[nodiscard]] bool IsNull() const { return m_isNull; }

private:
    bool m_isNull;
};
