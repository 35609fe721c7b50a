// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/NumberSteps.h"

#include "query/execution/plan/Answers.h"
#include "query/execution/plan/Days.h"
#include "query/execution/plan/Kernels.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"
#include "host/expr/Symbols.h"

#include <limits>
#include <utility>

namespace query::plan {

namespace {

constexpr double MostDecimal = std::numeric_limits<double>::max();
constexpr std::int64_t LeastInteger = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t MostInteger = std::numeric_limits<std::int32_t>::max();

KeyRange rangeOfIntegers(const ChainComparison& comparison)
{
    return rangeOfChain(comparison.chain, comparison.code, comparison.constant, LeastInteger,
        MostInteger, [](std::int64_t key) { return static_cast<double>(key); });
}

KeyRange rangeOfDecimals(const ChainComparison& comparison, int decimalDigits)
{
    return rangeOfChain(comparison.chain, comparison.code, comparison.constant,
        keyOfDouble(-MostDecimal), keyOfDouble(MostDecimal),
        [&](std::int64_t key) { return orv::RoundedByText(doubleOfKey(key), decimalDigits); });
}

KeyRange rangeOfDays(int code, std::int64_t moment)
{
    return rangeOf(code, LeastInteger, MostInteger, true, [&](std::int64_t day) {
        const std::int64_t midnight = momentOfDay(static_cast<std::int32_t>(day));
        return midnight < moment ? -1 : midnight > moment ? 1 : 0;
    });
}

/// Rows whose start lies where a range does not answer: one by one, as the tree's nodes do.
template <typename StartOf>
void answerOddRows(BlockMachine& machine, const ChainComparison& comparison, const Bits& odd,
    TruthBlock& truth, const StartOf& startOf)
{
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t rows
            = odd[at] & machine.column(comparison.column).presentInWord(machine.block(), word);
        forEachBit(rows, word, [&](int row) {
            double value = 0.0;
            const std::uint64_t bit = std::uint64_t(1) << (row % 64);
            const auto outcome = comparison.chain.eval(startOf(row), value);
            const bool isFailed = outcome != NumberChain::Outcome::Value;
            const bool isYes = !isFailed
                && comparisonHolds(comparison.code, orderOf(value, comparison.constant));
            setBit(truth.failed[at], bit, isFailed);
            setBit(truth.yes[at], bit, isYes);
            setBit(truth.no[at], bit, !isFailed && !isYes);
        });
    }
}

std::int32_t asInteger(std::int64_t key)
{
    return static_cast<std::int32_t>(key);
}

/// Bounds of an integer range for the kernel, which needs an empty one written as 1 to 0.
std::pair<std::int32_t, std::int32_t> boundsOf(const KeyRange& range)
{
    if (range.low > range.high)
        return { 1, 0 };
    return { asInteger(range.low), asInteger(range.high) };
}

void insideRange(const std::int32_t* values, int count, const KeyRange& range, Bits& inside)
{
    const auto [low, high] = boundsOf(range);
    insideBits(values, count, low, high, inside);
}

} // namespace

DecimalRangeStep::DecimalRangeStep(ChainComparison comparison, int decimalDigits, int result)
    : m_comparison(std::move(comparison))
    , m_decimalDigits(decimalDigits)
    , m_result(result)
{
    constexpr double Nothing = std::numeric_limits<double>::infinity(); // up to minus infinity
    const KeyRange range = rangeOfDecimals(m_comparison, decimalDigits);
    const bool isComputable = range.first <= range.last;
    const bool hasRange = range.low <= range.high;
    m_first = isComputable ? doubleOfKey(range.first) : Nothing;
    m_last = isComputable ? doubleOfKey(range.last) : -Nothing;
    m_low = hasRange ? doubleOfKey(range.low) : Nothing;
    m_high = hasRange ? doubleOfKey(range.high) : -Nothing;
    m_isNegated = range.isNegated;
}

void DecimalRangeStep::run(BlockMachine& machine) const
{
    const double* const values
        = machine.column(m_comparison.column).values<double>(machine.block());
    TruthBlock& truth = machine.truth(m_result);
    Bits inside;
    Bits odd;
    insideBits(
        values, machine.block().rowCount, { m_low, m_high }, { m_first, m_last }, inside, odd);
    answer(machine, m_comparison.column, inside, m_isNegated, truth);
    answerOddRows(machine, m_comparison, odd, truth,
        [&](int row) { return orv::RoundedByText(values[row], m_decimalDigits); });
}

IntegerRangeStep::IntegerRangeStep(ChainComparison comparison, int result)
    : m_comparison(std::move(comparison))
    , m_range(rangeOfIntegers(m_comparison))
    , m_result(result)
{
}

void IntegerRangeStep::run(BlockMachine& machine) const
{
    const auto* const values
        = machine.column(m_comparison.column).values<std::int32_t>(machine.block());
    TruthBlock& truth = machine.truth(m_result);
    Bits inside;
    insideRange(values, machine.block().rowCount, m_range, inside);
    answer(machine, m_comparison.column, inside, m_range.isNegated, truth);
    if (m_range.first == LeastInteger && m_range.last == MostInteger)
        return;
    Bits odd;
    insideRange(
        values, machine.block().rowCount, { 0, 0, m_range.first, m_range.last, false }, odd);
    for (std::uint64_t& word : odd)
        word = ~word;
    answerOddRows(machine, m_comparison, odd, truth,
        [&](int row) { return static_cast<double>(values[row]); });
}

DayRangeStep::DayRangeStep(int column, int code, std::int64_t moment, int result)
    : m_column(column)
    , m_range(rangeOfDays(code, moment))
    , m_result(result)
{
}

void DayRangeStep::run(BlockMachine& machine) const
{
    Bits inside;
    insideRange(machine.column(m_column).values<std::int32_t>(machine.block()),
        machine.block().rowCount, m_range, inside);
    answer(machine, m_column, inside, m_range.isNegated, machine.truth(m_result));
}

CompareDaysStep::CompareDaysStep(int code, int left, int right, int result)
    : m_code(code)
    , m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void CompareDaysStep::run(BlockMachine& machine) const
{
    const auto* const left = machine.column(m_left).values<std::int32_t>(machine.block());
    const auto* const right = machine.column(m_right).values<std::int32_t>(machine.block());
    DayMemory leftDays;
    DayMemory rightDays;
    answerBoth(machine, m_left, m_right, machine.truth(m_result), [&](int row) {
        return comparisonHolds(
            m_code, orderOf(leftDays.momentOf(left[row]), rightDays.momentOf(right[row])));
    });
}

CompareBooleansStep::CompareBooleansStep(int code, int left, bool constant, int result)
    : m_code(code)
    , m_left(left)
    , m_constant(constant)
    , m_result(result)
{
}

CompareBooleansStep CompareBooleansStep::ofColumns(int code, int left, int right, int result)
{
    CompareBooleansStep step(code, left, false, result);
    step.m_right = right;
    return step;
}

void CompareBooleansStep::run(BlockMachine& machine) const
{
    const int count = machine.block().rowCount;
    TruthBlock& truth = machine.truth(m_result);
    const auto* const left = machine.column(m_left).values<std::uint8_t>(machine.block());
    const auto holds = [&](bool a, bool b) { return comparisonHolds(m_code, orderOf(a, b)); };
    if (m_right >= 0) {
        const auto* const right = machine.column(m_right).values<std::uint8_t>(machine.block());
        answerBoth(machine, m_left, m_right, truth,
            [&](int row) { return holds(left[row] != 0, right[row] != 0); });
        return;
    }
    Bits isTrue;
    trueBits(left, count, isTrue);
    const std::uint64_t ifTrue = holds(true, m_constant) ? ~std::uint64_t(0) : 0;
    const std::uint64_t ifFalse = holds(false, m_constant) ? ~std::uint64_t(0) : 0;
    for (std::uint64_t& word : isTrue)
        word = (word & ifTrue) | (~word & ifFalse);
    answer(machine, m_left, isTrue, false, truth);
}

LoadNumberStep::LoadNumberStep(int column, int result)
    : m_column(column)
    , m_result(result)
{
}

void LoadNumberStep::run(BlockMachine& machine) const
{
    const PlanColumn& column = machine.column(m_column);
    const int count = machine.block().rowCount;
    NumberBlock& number = machine.number(m_result);
    Bits doubtful {};
    if (column.view.kind == gis::ColumnKind::Integer) {
        const auto* const values = column.values<std::int32_t>(machine.block());
        std::copy(values, values + count, number.values.begin());
    } else {
        roundDecimals(column.values<double>(machine.block()), count, column.decimalDigits,
            number.values.data(), doubtful);
    }
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        number.present[at] = column.presentInWord(machine.block(), word);
        number.failed[at] = 0;
        forEachBit(doubtful[at] & number.present[at], word, [&](int row) {
            number.values[static_cast<std::size_t>(row)] = orv::RoundedByText(
                column.values<double>(machine.block())[row], column.decimalDigits);
        });
    }
}

DatePartStep::DatePartStep(int column, int code, int result)
    : m_column(column)
    , m_code(code)
    , m_result(result)
{
}

void DatePartStep::run(BlockMachine& machine) const
{
    const auto* const days = machine.column(m_column).values<std::int32_t>(machine.block());
    NumberBlock& number = machine.number(m_result);
    DayMemory memory;
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t present = machine.column(m_column).presentInWord(machine.block(), word);
        std::uint64_t failed = 0;
        forEachBit(present, word, [&](int row) {
            orv::CalendarDay day;
            if (!memory.calendarDayOf(days[row], day))
                failed |= std::uint64_t(1) << (row % 64);
            number.values[static_cast<std::size_t>(row)] = m_code == EEFunctionYear ? day.year
                : m_code == EEFunctionMonth                                         ? day.month
                                                                                    : day.day;
        });
        number.present[at] = present & ~failed;
        number.failed[at] = failed;
    }
}

CalculateStep::CalculateStep(int code, NumberOperand left, NumberOperand right, int result)
    : m_code(code)
    , m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void CalculateStep::run(BlockMachine& machine) const
{
    const int count = machine.block().rowCount;
    NumberBlock& result = machine.number(m_result);
    NumberBlock& left = machine.number(m_left.isConstant ? m_right.index : m_left.index);
    NumberBlock& right = machine.number(m_right.isConstant ? m_left.index : m_right.index);
    double* const out = result.values.data();
    if (m_left.isConstant)
        calculate(m_code, m_left.constant, right.values.data(), count, out);
    else if (m_right.isConstant)
        calculate(m_code, left.values.data(), m_right.constant, count, out);
    else
        calculate(m_code, left.values.data(), right.values.data(), count, out);
    // A division by zero is infinite or no number, and so is a result out of range: both fail.
    Bits isFinite;
    finiteBits(out, count, isFinite);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t both = left.present[at] & right.present[at];
        result.failed[at] = left.failed[at] | right.failed[at] | (both & ~isFinite[at]);
        result.present[at] = both & isFinite[at];
    }
}

CompareNumbersStep::CompareNumbersStep(int code, int left, NumberOperand right, int result)
    : m_code(code)
    , m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void CompareNumbersStep::run(BlockMachine& machine) const
{
    const int count = machine.block().rowCount;
    const NumberBlock& left = machine.number(m_left);
    const NumberBlock& right = m_right.isConstant ? left : machine.number(m_right.index);
    Bits holds;
    if (m_right.isConstant)
        compareBits(m_code, left.values.data(), m_right.constant, count, holds);
    else
        compareBits(m_code, left.values.data(), right.values.data(), count, holds);
    TruthBlock& truth = machine.truth(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t both = left.present[at] & right.present[at];
        truth.yes[at] = both & holds[at];
        truth.no[at] = both & ~holds[at];
        truth.failed[at] = left.failed[at] | right.failed[at];
    }
}

} // namespace query::plan
