// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Steps over numbers, days and booleans.

#include "query/execution/plan/NumberChain.h"
#include "query/execution/plan/Program.h"

namespace query::plan {

/// A comparison of a column's number, or of a chain of calculations on it, with a constant.
struct ChainComparison {
    int column = 0;
    NumberChain chain;
    int code = 0;
    double constant = 0.0;
};

/// ... of a decimal column, as a range of the values as they are stored, before any rounding.
class DecimalRangeStep final : public IStep {
public:
    DecimalRangeStep(ChainComparison comparison, int decimalDigits, int result);
    void run(BlockMachine& machine) const override;

private:
    ChainComparison m_comparison;
    int m_decimalDigits;
    double m_first, m_last; ///< Starts for which the range answers.
    double m_low, m_high;
    bool m_isNegated;
    int m_result;
};

/// ... of an integer column.
class IntegerRangeStep final : public IStep {
public:
    IntegerRangeStep(ChainComparison comparison, int result);
    void run(BlockMachine& machine) const override;

private:
    ChainComparison m_comparison;
    KeyRange m_range;
    int m_result;
};

/// A date column against a moment (seconds), as a range of days.
class DayRangeStep final : public IStep {
public:
    DayRangeStep(int column, int code, std::int64_t moment, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    KeyRange m_range;
    int m_result;
};

/// Two date columns.
class CompareDaysStep final : public IStep {
public:
    CompareDaysStep(int code, int left, int right, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_code;
    int m_left;
    int m_right;
    int m_result;
};

/// A boolean column against a constant or another boolean column.
class CompareBooleansStep final : public IStep {
public:
    CompareBooleansStep(int code, int left, bool constant, int result);
    static CompareBooleansStep ofColumns(int code, int left, int right, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_code;
    int m_left;
    int m_right = -1;
    bool m_constant = false;
    int m_result;
};

/// A register or a constant.
struct NumberOperand {
    bool isConstant = false;
    double constant = 0.0;
    int index = 0;
};

/// The numbers of an integer column, or of a decimal one, rounded.
class LoadNumberStep final : public IStep {
public:
    LoadNumberStep(int column, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    int m_result;
};

/// Year, month or day (code of host/expr) of a date column.
class DatePartStep final : public IStep {
public:
    DatePartStep(int column, int code, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_column;
    int m_code;
    int m_result;
};

/// Arithmetic into a register, which may be one of the operands; at most one is constant.
class CalculateStep final : public IStep {
public:
    CalculateStep(int code, NumberOperand left, NumberOperand right, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_code;
    NumberOperand m_left;
    NumberOperand m_right;
    int m_result;
};

class CompareNumbersStep final : public IStep {
public:
    CompareNumbersStep(int code, int left, NumberOperand right, int result);
    void run(BlockMachine& machine) const override;

private:
    int m_code;
    int m_left;
    NumberOperand m_right;
    int m_result;
};

} // namespace query::plan
