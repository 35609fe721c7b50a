// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/Compiler.h"

#include "query/nodes/ExpressionFieldIsNull.h"

#include <algorithm>
#include <utility>

namespace query::plan {

namespace {

/// The operands of a node, in order of evaluation.
std::size_t childCount(CEEExpression* node)
{
    switch (node->GetType()) {
    case EETypeUnOp:
        return 1;
    case EETypeBinOp:
        return 2;
    case EETypeFun:
        return static_cast<CEEExpressionFun*>(node)->GetArguments().size();
    default:
        return 0;
    }
}

CEEExpression* childOf(CEEExpression* node, std::size_t i)
{
    switch (node->GetType()) {
    case EETypeUnOp:
        return static_cast<CEEExpressionUnOp*>(node)->GetOperand();
    case EETypeBinOp: {
        auto* const binary = static_cast<CEEExpressionBinOp*>(node);
        return i == 0 ? binary->GetLeft() : binary->GetRight();
    }
    default:
        return static_cast<CEEExpressionFun*>(node)->GetArguments()[i];
    }
}

std::optional<Connective> connectiveOf(CEEExpression& node)
{
    if (node.GetType() != EETypeBinOp)
        return std::nullopt;
    switch (static_cast<CEEExpressionBinOp&>(node).GetCode()) {
    case EEAnd:
        return Connective::And;
    case EEOr:
        return Connective::Or;
    default:
        return std::nullopt;
    }
}

} // namespace

Compiler::Compiler(const QuerySource& source, gis::IColumns& columns, PlanExtent extent)
    : m_source(source)
    , m_hostColumns(columns)
    , m_extent(extent)
{
}

bool Compiler::compile(CEEExpression& filter, Program& program)
{
    m_program = &program;
    visit(filter);
    if (!m_isSupported)
        return false;
    program.resultRegister = truthOf(m_operands.back());
    return m_isSupported;
}

void Compiler::visit(CEEExpression& root)
{
    // By loop with a stack of its own: filters may be hundreds of thousands of terms deep.
    struct Place {
        CEEExpression* node;
        std::size_t nextChild;
    };
    std::vector<Place> places { { &root, 0 } };
    while (!places.empty() && m_isSupported) {
        Place& place = places.back();
        if (place.nextChild == childCount(place.node)) {
            finish(*place.node);
            places.pop_back();
            continue;
        }
        if (place.nextChild == 1)
            beforeRightSide(*place.node);
        CEEExpression* const child = childOf(place.node, place.nextChild++);
        if (child)
            places.push_back({ child, 0 });
        else
            refuse();
    }
}

void Compiler::beforeRightSide(CEEExpression& node)
{
    const auto connective = connectiveOf(node);
    if (!connective)
        return;
    const int left = truthOf(pop());
    pushTruth(left);
    auto skip = std::make_unique<SkipStep>(*connective, left);
    m_openSkips.push_back(skip.get());
    m_program->steps.push_back(std::move(skip));
}

void Compiler::finish(CEEExpression& node)
{
    switch (node.GetType()) {
    case EETypeConst:
        return push(constant(node));
    case EETypeVar:
        return finishVariable(static_cast<CEEExpressionVar&>(node));
    case EETypeFun:
        return finishCall(static_cast<CEEExpressionFun&>(node));
    case EETypeBinOp:
        return finishBinary(static_cast<CEEExpressionBinOp&>(node));
    case EETypeUnOp: {
        const int truth = truthOf(pop());
        add<NotStep>(truth);
        return pushTruth(truth);
    }
    default:
        break;
    }
    if (auto* const like = dynamic_cast<CExpressionLike*>(&node))
        finishLike(*like);
    else
        refuse();
}

void Compiler::finishVariable(CEEExpressionVar& node)
{
    const auto field = fieldIndexOf(node.GetVarName());
    if (!field)
        return push(constant(node)); // a function's name, or a name that nobody knows
    const int column = columnOf(*field);
    if (!m_isSupported)
        return;
    if (const auto* const test = dynamic_cast<CExpressionFieldIsNull*>(&node)) {
        const int truth = takeTruth();
        add<NullTestStep>(column, test->IsNull(), truth);
        return pushTruth(truth);
    }
    Operand operand;
    operand.kind = Operand::Kind::Column;
    operand.index = column;
    push(std::move(operand));
}

void Compiler::finishLike(CExpressionLike& node)
{
    const auto field = fieldIndexOf(node.GetFieldName());
    if (!field)
        return push(constant(node));
    const int column = columnOf(*field);
    if (!m_isSupported)
        return;
    auto like = std::make_shared<const CExpressionLike>(node.GetFieldName(), node.GetPattern());
    if (m_program->columns[static_cast<std::size_t>(column)].view.kind
        == gis::ColumnKind::Dictionary)
        return compareText(column, { 0, {}, std::move(like) }, IfMissing::No);
    const int truth = takeTruth();
    add<LikeValuesStep>(column, std::move(like), truth);
    pushTruth(truth);
}

void Compiler::finishCall(CEEExpressionFun& node)
{
    const std::size_t count = node.GetArguments().size();
    const bool isConstant = std::all_of(m_operands.end() - static_cast<std::ptrdiff_t>(count),
        m_operands.end(), [](const Operand& o) { return o.kind == Operand::Kind::Constant; });
    orv::String name(node.GetName());
    CEESymbol* const function = m_source.symbols.GetFunction(name);
    const auto* const datePart = dynamic_cast<CEESymbolFunDate*>(function);
    if (!isConstant && datePart && count == 1)
        return finishDatePart(datePart->GetCode());
    if (!isConstant && function)
        return refuse();
    for (std::size_t i = 0; i < count; ++i)
        release(pop());
    push(constant(node)); // without a function of that name it fails whatever its arguments are
}

void Compiler::finishDatePart(int code)
{
    Operand argument = pop();
    if (typeOf(argument) == ValueType::Date) {
        const int number = takeNumber();
        add<DatePartStep>(argument.index, code, number);
        return pushNumber(number);
    }
    Operand nothing; // anything that is there: the argument alone decides
    mismatch(argument, nothing, true);
}

void Compiler::finishBinary(CEEExpressionBinOp& node)
{
    if (const auto connective = connectiveOf(node))
        return finishConnective(*connective);
    Operand right = pop();
    Operand left = pop();
    const auto isConstant = [](const Operand& o) { return o.kind == Operand::Kind::Constant; };
    if (isConstant(left) && isConstant(right))
        return push(constant(node));
    if (left.kind == Operand::Kind::Truth || right.kind == Operand::Kind::Truth)
        return refuse(); // no filter text gives such a tree
    const int code = node.GetCode();
    if (code >= EEEqual && code <= EELessOrEqual)
        compare(code, std::move(left), std::move(right));
    else if (code >= EESubtract && code <= EEMultiply)
        calculate(code, std::move(left), std::move(right));
    else
        refuse();
}

void Compiler::finishConnective(Connective connective)
{
    const Operand rightOperand = pop();
    const int right = truthOf(rightOperand);
    const Operand left = pop();
    add<ConnectiveStep>(connective, left.index, right);
    m_openSkips.back()->setTarget(m_program->steps.size());
    m_openSkips.pop_back();
    m_freeTruths.push_back(right);
    push(left);
}

// Registers and operands

Compiler::Operand Compiler::pop()
{
    Operand operand = std::move(m_operands.back());
    m_operands.pop_back();
    return operand;
}

void Compiler::push(Operand operand)
{
    m_operands.push_back(std::move(operand));
}

void Compiler::pushTruth(int index)
{
    Operand operand;
    operand.kind = Operand::Kind::Truth;
    operand.index = index;
    push(std::move(operand));
}

void Compiler::pushNumber(int index)
{
    Operand operand;
    operand.kind = Operand::Kind::Number;
    operand.index = index;
    push(std::move(operand));
}

int Compiler::takeTruth()
{
    if (m_freeTruths.empty())
        return m_program->truthCount++;
    const int index = m_freeTruths.back();
    m_freeTruths.pop_back();
    return index;
}

int Compiler::takeNumber()
{
    if (m_freeNumbers.empty())
        return m_program->numberCount++;
    const int index = m_freeNumbers.back();
    m_freeNumbers.pop_back();
    return index;
}

void Compiler::release(const Operand& operand)
{
    if (operand.kind == Operand::Kind::Truth)
        m_freeTruths.push_back(operand.index);
    if (operand.kind == Operand::Kind::Number)
        m_freeNumbers.push_back(operand.index);
}

Compiler::Operand Compiler::constant(CEEExpression& node)
{
    Operand operand;
    operand.node = &node;
    return operand;
}

int Compiler::truthOf(const Operand& operand)
{
    if (operand.kind == Operand::Kind::Truth)
        return operand.index;
    const int truth = takeTruth();
    if (operand.kind != Operand::Kind::Constant)
        refuse(); // a bare value is no condition
    else
        add<FixedTruthStep>(fixedTruthOf(operand), truth);
    return truth;
}

FixedTruth Compiler::fixedTruthOf(const Operand& operand)
{
    const Constant constant = computed(operand);
    if (constant.isFailed)
        return FixedTruth::Failed;
    if (constant.value.IsEmpty())
        return FixedTruth::Unknown;
    if (constant.value.GetType() != orv::PolyBool)
        refuse();
    return constant.value.GetBoolValue() ? FixedTruth::Yes : FixedTruth::No;
}

Compiler::Constant Compiler::computed(const Operand& operand)
{
    CEEResult result;
    if (!operand.node->Eval(&m_source.symbols, result))
        return { true, {} };
    return { false, result.GetElem() };
}

} // namespace query::plan
