// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Steps that give truths out of truths, and out of whether there are values.

#include "query/execution/plan/Program.h"

namespace query::plan {

/// A value's rows, for steps that only ask whether there is one.
struct PresenceSource {
    enum class Kind { Constant, Column, Number };
    Kind kind = Kind::Constant;
    int index = 0; ///< Of the column or the number register.

    [[nodiscard]] std::uint64_t present(BlockMachine& machine, int word) const;
    [[nodiscard]] std::uint64_t failed(BlockMachine& machine, int word) const;
};

enum class FixedTruth { Yes, No, Unknown, Failed };

/// The same answer for all rows.
class FixedTruthStep final : public IStep {
public:
    FixedTruthStep(FixedTruth value, int result);
    void run(BlockMachine& machine) const override;

private:
    FixedTruth m_value;
    int m_result;
};

/// IS NULL and IS NOT NULL.
class NullTestStep final : public IStep {
public:
    NullTestStep(int column, bool isNull, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    bool m_isNull;
    int m_result;
};

/// A comparison of values whose types do not fit: fails where both are there.
class MismatchTruthStep final : public IStep {
public:
    MismatchTruthStep(PresenceSource left, PresenceSource right, int result);
    void run(BlockMachine& machine) const override;

private:
    PresenceSource m_left;
    PresenceSource m_right;
    int m_result;
};

/// A calculation with values that are no numbers: fails where both are there, and never gives one.
class MismatchNumberStep final : public IStep {
public:
    MismatchNumberStep(PresenceSource left, PresenceSource right, int result);
    void run(BlockMachine& machine) const override;

private:
    PresenceSource m_left;
    PresenceSource m_right;
    int m_result;
};

/// NOT, in place.
class NotStep final : public IStep {
public:
    explicit NotStep(int result);
    void run(BlockMachine& machine) const override;

private:
    int m_result;
};

enum class Connective { And, Or };

/// AND and OR of two registers, into the left one. A deciding left side ends it, a failing side
/// otherwise makes the whole fail.
class ConnectiveStep final : public IStep {
public:
    ConnectiveStep(Connective connective, int left, int right);
    void run(BlockMachine& machine) const override;

private:
    Connective m_connective;
    int m_left;
    int m_right;
};

/// Stands between the sides: passes over the right one when the left decides every row.
class SkipStep final : public IStep {
public:
    SkipStep(Connective connective, int left);
    void setTarget(std::size_t step) { m_target = step; }
    void run(BlockMachine& machine) const override;

private:
    Connective m_connective;
    int m_left;
    std::size_t m_target = 0;
};

} // namespace query::plan
