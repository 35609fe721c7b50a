// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/TextSteps.h"

#include "query/execution/Parallel.h"

#include "query/execution/plan/Answers.h"
#include "query/execution/plan/Days.h"
#include "query/execution/plan/Kernels.h"

#include "host/base/Numbers.h"

#include <utility>

namespace query::plan {

namespace {

/// Words of a code set that are worth a task of their own.
constexpr std::size_t WordsPerTask = 128;

void addMissing(BlockMachine& machine, int column, IfMissing ifMissing, TruthBlock& truth)
{
    if (ifMissing == IfMissing::Unknown)
        return;
    for (int word = 0; word < machine.block().wordCount(); ++word)
        truth.no[static_cast<std::size_t>(word)] |= machine.block().rowsOfWord(word)
            & ~machine.column(column).presentInWord(machine.block(), word);
}

/// A cell as the tree sees it; only for kinds other than texts.
void valueAt(const PlanColumn& column, const RowBlock& block, int row, orv::CPolyValue& value)
{
    switch (column.view.kind) {
    case gis::ColumnKind::Boolean:
        value = column.values<std::uint8_t>(block)[row] != 0;
        break;
    case gis::ColumnKind::Integer:
        value = static_cast<int>(column.values<std::int32_t>(block)[row]);
        break;
    case gis::ColumnKind::Decimal:
        value = orv::RoundedByText(column.values<double>(block)[row], column.decimalDigits);
        break;
    default:
        value.SetDateValue(momentOfDay(column.values<std::int32_t>(block)[row]));
    }
}

} // namespace

bool TextCondition::holds(std::string_view text) const
{
    if (like)
        return like->Matches(text);
    return comparisonHolds(code, text.compare(constant));
}

CodeSet codesOf(const gis::ColumnView& column, const TextCondition& condition)
{
    const std::size_t count = column.dictionarySize;
    auto words = std::make_shared<std::vector<std::uint64_t>>((count + 63) / 64);
    const auto fill = [&](std::size_t begin, std::size_t end) {
        for (std::size_t word = begin; word < end; ++word) {
            std::uint64_t bits = 0;
            const std::size_t first = word * 64;
            for (std::size_t i = first; i < std::min(first + 64, count); ++i)
                bits |= std::uint64_t(condition.holds(column.dictionary[i].View()) ? 1 : 0)
                    << (i - first);
            (*words)[word] = bits;
        }
    };
    if (words->size() <= WordsPerTask) {
        fill(0, words->size());
    } else {
        forEachRange(words->size(), WordsPerTask, fill);
    }
    return words;
}

CodeSetStep::CodeSetStep(int column, CodeSet codes, IfMissing ifMissing, int result)
    : m_column(column)
    , m_codes(std::move(codes))
    , m_ifMissing(ifMissing)
    , m_result(result)
{
}

void CodeSetStep::run(BlockMachine& machine) const
{
    const PlanColumn& column = machine.column(m_column);
    Bits holds {};
    if (column.view.dictionarySize > 0)
        memberBits(column.values<std::uint32_t>(machine.block()), machine.block().rowCount,
            m_codes->data(), column.view.dictionarySize, holds);
    TruthBlock& truth = machine.truth(m_result);
    answer(machine, m_column, holds, false, truth);
    addMissing(machine, m_column, m_ifMissing, truth);
}

OneCodeStep::OneCodeStep(int column, std::uint32_t code, bool isNegated, int result)
    : m_column(column)
    , m_code(code)
    , m_isNegated(isNegated)
    , m_result(result)
{
}

void OneCodeStep::run(BlockMachine& machine) const
{
    Bits holds;
    equalBits(machine.column(m_column).values<std::uint32_t>(machine.block()),
        machine.block().rowCount, m_code, holds);
    answer(machine, m_column, holds, m_isNegated, machine.truth(m_result));
}

TextRowsStep::TextRowsStep(int column, TextCondition condition, IfMissing ifMissing, int result)
    : m_column(column)
    , m_condition(std::move(condition))
    , m_ifMissing(ifMissing)
    , m_result(result)
{
}

void TextRowsStep::run(BlockMachine& machine) const
{
    const PlanColumn& column = machine.column(m_column);
    const auto* const codes = column.values<std::uint32_t>(machine.block());
    TruthBlock& truth = machine.truth(m_result);
    answerBoth(machine, m_column, m_column, truth,
        [&](int row) { return m_condition.holds(column.view.dictionary[codes[row]].View()); });
    addMissing(machine, m_column, m_ifMissing, truth);
}

LikeValuesStep::LikeValuesStep(int column, std::shared_ptr<const CExpressionLike> like, int result)
    : m_column(column)
    , m_like(std::move(like))
    , m_result(result)
{
}

void LikeValuesStep::run(BlockMachine& machine) const
{
    const PlanColumn& column = machine.column(m_column);
    TruthBlock& truth = machine.truth(m_result);
    orv::CPolyValue value;
    answerBoth(machine, m_column, m_column, truth, [&](int row) {
        valueAt(column, machine.block(), row, value);
        return m_like->Matches(value.GetStringValue().View());
    });
    addMissing(machine, m_column, IfMissing::No, truth);
}

CompareTextsStep::CompareTextsStep(int code, int left, int right, int result)
    : m_code(code)
    , m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void CompareTextsStep::run(BlockMachine& machine) const
{
    const PlanColumn& left = machine.column(m_left);
    const PlanColumn& right = machine.column(m_right);
    const auto* const leftCodes = left.values<std::uint32_t>(machine.block());
    const auto* const rightCodes = right.values<std::uint32_t>(machine.block());
    answerBoth(machine, m_left, m_right, machine.truth(m_result), [&](int row) {
        const std::string_view a = left.view.dictionary[leftCodes[row]].View();
        const std::string_view b = right.view.dictionary[rightCodes[row]].View();
        return comparisonHolds(m_code, a.compare(b));
    });
}

} // namespace query::plan
