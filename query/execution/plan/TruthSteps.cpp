// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/TruthSteps.h"

#include <utility>

namespace query::plan {

namespace {

std::uint64_t mismatchedRows(
    BlockMachine& machine, const PresenceSource& left, const PresenceSource& right, int word)
{
    return (left.present(machine, word) & right.present(machine, word)) | left.failed(machine, word)
        | right.failed(machine, word);
}

} // namespace

std::uint64_t PresenceSource::present(BlockMachine& machine, int word) const
{
    switch (kind) {
    case Kind::Column:
        return machine.column(index).presentInWord(machine.block(), word);
    case Kind::Number:
        return machine.number(index).present[static_cast<std::size_t>(word)];
    default:
        return machine.block().rowsOfWord(word);
    }
}

std::uint64_t PresenceSource::failed(BlockMachine& machine, int word) const
{
    return kind == Kind::Number ? machine.number(index).failed[static_cast<std::size_t>(word)] : 0;
}

FixedTruthStep::FixedTruthStep(FixedTruth value, int result)
    : m_value(value)
    , m_result(result)
{
}

void FixedTruthStep::run(BlockMachine& machine) const
{
    TruthBlock& truth = machine.truth(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t rows = machine.block().rowsOfWord(word);
        truth.yes[at] = m_value == FixedTruth::Yes ? rows : 0;
        truth.no[at] = m_value == FixedTruth::No ? rows : 0;
        truth.failed[at] = m_value == FixedTruth::Failed ? rows : 0;
    }
}

NullTestStep::NullTestStep(int column, bool isNull, int result)
    : m_column(column)
    , m_isNull(isNull)
    , m_result(result)
{
}

void NullTestStep::run(BlockMachine& machine) const
{
    TruthBlock& truth = machine.truth(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t rows = machine.block().rowsOfWord(word);
        const std::uint64_t present = machine.column(m_column).presentInWord(machine.block(), word);
        truth.yes[at] = m_isNull ? rows & ~present : present;
        truth.no[at] = m_isNull ? present : rows & ~present;
        truth.failed[at] = 0;
    }
}

MismatchTruthStep::MismatchTruthStep(PresenceSource left, PresenceSource right, int result)
    : m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void MismatchTruthStep::run(BlockMachine& machine) const
{
    TruthBlock& truth = machine.truth(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        truth.yes[at] = 0;
        truth.no[at] = 0;
        truth.failed[at] = mismatchedRows(machine, m_left, m_right, word);
    }
}

MismatchNumberStep::MismatchNumberStep(PresenceSource left, PresenceSource right, int result)
    : m_left(left)
    , m_right(right)
    , m_result(result)
{
}

void MismatchNumberStep::run(BlockMachine& machine) const
{
    NumberBlock& number = machine.number(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        // The result may be one of the operands: both are read before it is written.
        const std::uint64_t failed = mismatchedRows(machine, m_left, m_right, word);
        number.present[at] = 0;
        number.failed[at] = failed;
    }
}

NotStep::NotStep(int result)
    : m_result(result)
{
}

void NotStep::run(BlockMachine& machine) const
{
    TruthBlock& truth = machine.truth(m_result);
    for (int word = 0; word < machine.block().wordCount(); ++word)
        std::swap(
            truth.yes[static_cast<std::size_t>(word)], truth.no[static_cast<std::size_t>(word)]);
}

ConnectiveStep::ConnectiveStep(Connective connective, int left, int right)
    : m_connective(connective)
    , m_left(left)
    , m_right(right)
{
}

void ConnectiveStep::run(BlockMachine& machine) const
{
    TruthBlock& left = machine.truth(m_left);
    const TruthBlock& right = machine.truth(m_right);
    // OR is AND with yes and no exchanged.
    const bool isAnd = m_connective == Connective::And;
    Bits& deciding = isAnd ? left.no : left.yes;
    Bits& other = isAnd ? left.yes : left.no;
    const Bits& rightDeciding = isAnd ? right.no : right.yes;
    const Bits& rightOther = isAnd ? right.yes : right.no;
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        const std::uint64_t decided = deciding[at];
        deciding[at] = decided | (rightDeciding[at] & ~left.failed[at]);
        other[at] &= rightOther[at];
        left.failed[at] |= right.failed[at] & ~decided;
    }
}

SkipStep::SkipStep(Connective connective, int left)
    : m_connective(connective)
    , m_left(left)
{
}

void SkipStep::run(BlockMachine& machine) const
{
    const TruthBlock& left = machine.truth(m_left);
    const Bits& deciding = m_connective == Connective::And ? left.no : left.yes;
    for (int word = 0; word < machine.block().wordCount(); ++word) {
        const auto at = static_cast<std::size_t>(word);
        if ((deciding[at] | left.failed[at]) != machine.block().rowsOfWord(word))
            return;
    }
    machine.skipTo(m_target);
}

} // namespace query::plan
