// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"

#include <cstddef>
#include <string_view>
#include <vector>

/// Tests a field's value, as text, against a pattern: "%" stands for any run of bytes, also none,
/// "_" for one byte; everything else for itself. The whole text must match; there is no escape.
/// An empty value is never LIKE anything.
class CExpressionLike final : public CEEExpression {
public:
    CExpressionLike(const orv::String& field, const orv::String& pattern);
    ~CExpressionLike() override;
    int GetType() override;
    /// Errors: false when the field is unknown.
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;

    [[nodiscard]] const orv::String& GetFieldName() const { return m_field; }
    [[nodiscard]] const orv::String& GetPattern() const { return m_pattern; }
    /// Literal runs and "%" by turns, as the pattern has them.
    [[nodiscard]] const std::vector<orv::String>& GetSegments() const { return m_segments; }

    /// Units: bytes. Cost: each literal run is sought once, from left to right; no backtracking.
    [[nodiscard]] bool Matches(std::string_view text) const;

private:
    void compile();

    orv::String m_field;
    orv::String m_pattern;
    std::vector<orv::String> m_segments;
};
