// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Steps over texts: a condition on a text is decided once for each text of a column's dictionary.

#include "query/execution/plan/Program.h"
#include "query/nodes/ExpressionLike.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace query::plan {

/// A condition on one text: a comparison with a constant, or LIKE.
struct TextCondition {
    int code = 0; ///< Comparison code of host/expr; 0 for LIKE.
    std::string constant;
    std::shared_ptr<const CExpressionLike> like;

    [[nodiscard]] bool isLike() const { return like != nullptr; }
    [[nodiscard]] bool holds(std::string_view text) const;
};

/// Bits of the texts of a dictionary for which a condition holds, a bit a code.
using CodeSet = std::shared_ptr<const std::vector<std::uint64_t>>;
[[nodiscard]] CodeSet codesOf(const gis::ColumnView& column, const TextCondition& condition);

/// What rows without a value answer: LIKE says no, a comparison leaves it open.
enum class IfMissing { No, Unknown };

class CodeSetStep final : public IStep {
public:
    CodeSetStep(int column, CodeSet codes, IfMissing ifMissing, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    CodeSet m_codes;
    IfMissing m_ifMissing;
    int m_result;
};

/// = and <> with one text of the dictionary.
class OneCodeStep final : public IStep {
public:
    OneCodeStep(int column, std::uint32_t code, bool isNegated, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    std::uint32_t m_code;
    bool m_isNegated;
    int m_result;
};

/// A condition looked at row by row: cheaper where a dictionary is larger than the theme.
class TextRowsStep final : public IStep {
public:
    TextRowsStep(int column, TextCondition condition, IfMissing ifMissing, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    TextCondition m_condition;
    IfMissing m_ifMissing;
    int m_result;
};

/// LIKE on a column that holds no texts: each value as its text.
class LikeValuesStep final : public IStep {
public:
    LikeValuesStep(int column, std::shared_ptr<const CExpressionLike> like, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    std::shared_ptr<const CExpressionLike> m_like;
    int m_result;
};

/// Two text columns.
class CompareTextsStep final : public IStep {
public:
    CompareTextsStep(int code, int left, int right, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_code;
    int m_left;
    int m_right;
    int m_result;
};

} // namespace query::plan
