// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/Compiler.h"

#include "host/gis/LibGis.h"

#include <algorithm>
#include <cmath>
#include <utility>

// Values in the compiler: columns, calculations and comparisons.

namespace query::plan {

namespace {

/// Sets of codes of a filter with very many conditions on texts; beyond, the filter is walked.
constexpr std::size_t MostCodeSetBytes = std::size_t(256) << 20;
/// Below this a dictionary is small whatever the theme is.
constexpr std::uint32_t SmallDictionary = 4096;

/// The comparison with its sides exchanged.
int mirrored(int code)
{
    switch (code) {
    case EEGreater:
        return EELess;
    case EELess:
        return EEGreater;
    case EEGreaterOrEqual:
        return EELessOrEqual;
    case EELessOrEqual:
        return EEGreaterOrEqual;
    default:
        return code;
    }
}

} // namespace

std::optional<int> Compiler::fieldIndexOf(orv::String name) const
{
    const CEESymbol* const symbol = m_source.symbols.GetSymbol(name);
    const auto& fields = m_source.fieldSymbols;
    const auto found = std::find(fields.begin(), fields.end(), symbol);
    if (!symbol || found == fields.end())
        return std::nullopt;
    return static_cast<int>(found - fields.begin());
}

int Compiler::columnOf(int fieldIndex)
{
    const auto known = m_columnByField.find(fieldIndex);
    if (known != m_columnByField.end())
        return known->second;
    PlanColumn column;
    gis::CField* const field = m_source.library.GetField(m_source.table, fieldIndex);
    const gis::FieldFormat format = m_source.library.GetFieldFormat(field);
    if (!field || !m_hostColumns.GetColumn(m_source.table, fieldIndex, column.view)
        || !gis::IsWhole(column.view, format) || column.view.rowCount < m_extent.rowCount) {
        refuse();
        return 0;
    }
    if (format == gis::FieldFormat::Decimal)
        column.decimalDigits = decimalDigitsOf(m_source.library, field);
    const int index = static_cast<int>(m_program->columns.size());
    m_program->columns.push_back(column);
    m_columnByField[fieldIndex] = index;
    return index;
}

Compiler::ValueType Compiler::typeOf(const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyInt32:
    case orv::PolyDouble:
        return ValueType::Number;
    case orv::PolyString:
        return ValueType::Text;
    case orv::PolyDate:
        return ValueType::Date;
    case orv::PolyBool:
        return ValueType::Boolean;
    default:
        return ValueType::None;
    }
}

Compiler::ValueType Compiler::typeOf(const Operand& operand)
{
    if (operand.kind != Operand::Kind::Column)
        return ValueType::Number; // constants are looked at by their values
    switch (m_program->columns[static_cast<std::size_t>(operand.index)].view.kind) {
    case gis::ColumnKind::Boolean:
        return ValueType::Boolean;
    case gis::ColumnKind::Date:
        return ValueType::Date;
    case gis::ColumnKind::Dictionary:
        return ValueType::Text;
    default:
        return ValueType::Number;
    }
}

bool Compiler::isNumberColumn(const Operand& operand) const
{
    return operand.kind == Operand::Kind::Chain || operand.kind == Operand::Kind::Column;
}

PresenceSource Compiler::presenceOf(Operand& operand)
{
    switch (operand.kind) {
    case Operand::Kind::Constant:
        return {};
    case Operand::Kind::Column:
        return { PresenceSource::Kind::Column, operand.index };
    default:
        return { PresenceSource::Kind::Number, numberOf(operand) };
    }
}

int Compiler::numberOf(Operand& operand)
{
    if (operand.kind == Operand::Kind::Number)
        return operand.index;
    const int number = takeNumber();
    add<LoadNumberStep>(operand.index, number);
    for (const ChainStep& step : operand.chain.steps()) {
        const NumberOperand value { false, 0.0, number };
        const NumberOperand constant { true, step.constant, 0 };
        add<CalculateStep>(step.code, step.isConstantFirst ? constant : value,
            step.isConstantFirst ? value : constant, number);
    }
    operand = Operand();
    operand.kind = Operand::Kind::Number;
    operand.index = number;
    return number;
}

void Compiler::mismatch(Operand& left, Operand& right, bool isNumber)
{
    const PresenceSource leftRows = presenceOf(left);
    const PresenceSource rightRows = presenceOf(right);
    release(left);
    release(right);
    if (isNumber) {
        const int number = takeNumber();
        add<MismatchNumberStep>(leftRows, rightRows, number);
        return pushNumber(number);
    }
    const int truth = takeTruth();
    add<MismatchTruthStep>(leftRows, rightRows, truth);
    pushTruth(truth);
}

void Compiler::calculate(int code, Operand left, Operand right)
{
    const bool isLeftConstant = left.kind == Operand::Kind::Constant;
    Operand& variable = isLeftConstant ? right : left;
    Operand& other = isLeftConstant ? left : right;
    if (other.kind != Operand::Kind::Constant) {
        if (typeOf(left) != ValueType::Number || typeOf(right) != ValueType::Number)
            return mismatch(left, right, true);
        return calculateInRegister(code, std::move(left), std::move(right));
    }
    const Constant constant = computed(other);
    if (constant.isFailed) {
        release(variable);
        return push(other); // it fails whatever the other side is
    }
    const ValueType constantType = typeOf(constant.value);
    if (constantType == ValueType::None)
        return refuse();
    if (constantType != ValueType::Number || typeOf(variable) != ValueType::Number)
        return mismatch(left, right, true);
    const double number = constant.value.GetDoubleValue();
    const bool isDivisor = isLeftConstant && code == EEDivide;
    if (!isNumberColumn(variable) || isDivisor || !std::isfinite(number))
        return calculateInRegister(code, std::move(left), std::move(right));
    variable.kind = Operand::Kind::Chain;
    variable.chain.append({ code, number, isLeftConstant && code == EESubtract });
    push(std::move(variable));
}

void Compiler::calculateInRegister(int code, Operand left, Operand right)
{
    const auto operandOf = [&](Operand& operand) -> NumberOperand {
        if (operand.kind == Operand::Kind::Constant)
            return { true, computed(operand).value.GetDoubleValue(), 0 };
        return { false, 0.0, numberOf(operand) };
    };
    const NumberOperand leftNumber = operandOf(left);
    const NumberOperand rightNumber = operandOf(right);
    release(left);
    release(right);
    const int result = takeNumber(); // one of the operands', which the step allows
    add<CalculateStep>(code, leftNumber, rightNumber, result);
    pushNumber(result);
}

void Compiler::compare(int code, Operand left, Operand right)
{
    if (left.kind == Operand::Kind::Constant) {
        std::swap(left, right);
        code = mirrored(code);
    }
    if (right.kind == Operand::Kind::Constant) {
        const Constant constant = computed(right);
        if (constant.isFailed) {
            release(left);
            return push(right);
        }
        if (typeOf(constant.value) == ValueType::None)
            return refuse();
        if (typeOf(constant.value) != typeOf(left))
            return mismatch(left, right, false);
        return compareWithConstant(code, std::move(left), constant.value);
    }
    const ValueType type = typeOf(left);
    if (type != typeOf(right))
        return mismatch(left, right, false);
    if (type != ValueType::Number)
        return compareColumns(code, left, right, type);
    const int leftNumber = numberOf(left);
    const int rightNumber = numberOf(right);
    const int truth = takeTruth();
    add<CompareNumbersStep>(code, leftNumber, NumberOperand { false, 0.0, rightNumber }, truth);
    release(left);
    release(right);
    pushTruth(truth);
}

void Compiler::compareWithConstant(int code, Operand left, const orv::CPolyValue& constant)
{
    switch (typeOf(constant)) {
    case ValueType::Number:
        return compareNumber(code, std::move(left), constant.GetDoubleValue());
    case ValueType::Text:
        return compareText(
            left.index, { code, constant.GetStringValue().Bytes(), nullptr }, IfMissing::Unknown);
    case ValueType::Date: {
        const int truth = takeTruth();
        add<DayRangeStep>(left.index, code, constant.GetDateValue(), truth);
        return pushTruth(truth);
    }
    default: {
        const int truth = takeTruth();
        add<CompareBooleansStep>(code, left.index, constant.GetBoolValue(), truth);
        return pushTruth(truth);
    }
    }
}

void Compiler::compareNumber(int code, Operand left, double constant)
{
    if (left.kind == Operand::Kind::Number) {
        const int truth = takeTruth();
        add<CompareNumbersStep>(code, left.index, NumberOperand { true, constant, 0 }, truth);
        release(left);
        return pushTruth(truth);
    }
    const PlanColumn& column = m_program->columns[static_cast<std::size_t>(left.index)];
    ChainComparison comparison { left.index, std::move(left.chain), code, constant };
    const int truth = takeTruth();
    if (column.view.kind == gis::ColumnKind::Decimal)
        add<DecimalRangeStep>(std::move(comparison), column.decimalDigits, truth);
    else
        add<IntegerRangeStep>(std::move(comparison), truth);
    pushTruth(truth);
}

void Compiler::compareText(int column, TextCondition condition, IfMissing ifMissing)
{
    const gis::ColumnView& view = m_program->columns[static_cast<std::size_t>(column)].view;
    const int truth = takeTruth();
    const bool isEquality = condition.code == EEEqual || condition.code == EENotEqual;
    const bool isLarge = view.dictionarySize > SmallDictionary
        && view.dictionarySize > static_cast<std::uint32_t>(m_extent.entityCount);
    if (isLarge) {
        add<TextRowsStep>(column, std::move(condition), ifMissing, truth);
    } else if (isEquality) {
        const std::uint32_t code = m_texts.codeOf(column, view, condition.constant);
        add<OneCodeStep>(column, code, condition.code == EENotEqual, truth);
    } else {
        add<CodeSetStep>(column, m_texts.codesOf(column, view, condition), ifMissing, truth);
        if (m_texts.sizeBytes() > MostCodeSetBytes)
            refuse();
    }
    pushTruth(truth);
}

void Compiler::compareColumns(int code, const Operand& left, const Operand& right, ValueType type)
{
    const int truth = takeTruth();
    if (type == ValueType::Text)
        add<CompareTextsStep>(code, left.index, right.index, truth);
    else if (type == ValueType::Date)
        add<CompareDaysStep>(code, left.index, right.index, truth);
    else
        add<CompareBooleansStep>(
            CompareBooleansStep::ofColumns(code, left.index, right.index, truth));
    pushTruth(truth);
}

} // namespace query::plan
