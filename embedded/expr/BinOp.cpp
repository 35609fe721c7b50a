// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/expr/Operators.h"

#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"

#include <utility>
#include <vector>

// Chains such as "a = 1 OR a = 2 OR ..." lean to the left as deep as they are long. Everything here
// goes down the left side by loop and recurses to the right only, where the parser's stack has
// bounded the depth.

namespace {

using Chain = std::vector<CEEExpressionBinOp*>;

/// The binary nodes from `top` down its left side, `top` first.
Chain leftSpine(CEEExpressionBinOp* top)
{
    Chain chain { top };
    while (CEEExpression* left = chain.back()->GetLeft()) {
        if (left->GetType() != EETypeBinOp)
            break;
        chain.push_back(static_cast<CEEExpressionBinOp*>(left));
    }
    return chain;
}

bool isLogical(int code)
{
    return code == EEAnd || code == EEOr;
}

/// A value of a condition: false where it is neither a boolean nor empty.
bool isTruth(const CEEResult& result)
{
    return result.GetElemType() == orv::PolyBool || result.GetElemType() == orv::PolyEmpty;
}

/// `result` holds the left side. A deciding left side ends it; else both must be truths, an empty
/// one leaves it open.
bool evalLogical(int code, CEEExpression* right, CEESymbolProvider* provider, CEEResult& result)
{
    if (!isTruth(result))
        return false;
    const bool decides = code == EEOr;
    const bool leftEmpty = result.GetElemType() == orv::PolyEmpty;
    if (!leftEmpty && result.GetElemBool() == decides)
        return true;
    CEEResult other;
    if (!right || !right->Eval(provider, other) || !isTruth(other))
        return false;
    const bool rightEmpty = other.GetElemType() == orv::PolyEmpty;
    if (!rightEmpty && other.GetElemBool() == decides)
        result.SetElemBool(decides);
    else if (leftEmpty || rightEmpty)
        result = CEEResult();
    else
        result.SetElemBool(!decides);
    return true;
}

/// Comparison or arithmetic over the left side in `result` and a right side already computed.
bool evalOperator(int code, const orv::CPolyValue& right, CEEResult& result)
{
    const orv::CPolyValue& left = result.GetElem();
    if (left.IsEmpty() || right.IsEmpty()) {
        result.SetElem(orv::CPolyValue());
        return true;
    }
    if (code >= EEEqual && code <= EELessOrEqual) {
        int order = 0;
        if (!embedded::compareValues(left, right, order))
            return false;
        result.SetElemBool(embedded::comparisonHolds(code, order));
        return true;
    }
    orv::CPolyValue value;
    if (!embedded::calculate(code, left, right, value))
        return false;
    result.SetElem(std::move(value));
    return true;
}

bool evalStep(const CEEExpressionBinOp& node, CEESymbolProvider* provider, CEEResult& result)
{
    if (isLogical(node.GetCode()))
        return evalLogical(node.GetCode(), node.GetRight(), provider, result);
    CEEExpression* right = node.GetRight();
    if (!right)
        return false;
    if (right->GetType() == EETypeConst) // spares a copy of the literal for each row
        return evalOperator(
            node.GetCode(), static_cast<CEEExpressionConst*>(right)->GetValue(), result);
    CEEResult other;
    return right->Eval(provider, other) && evalOperator(node.GetCode(), other.GetElem(), result);
}

const char* symbolOf(int code)
{
    switch (code) {
    case EESubtract:
        return " - ";
    case EEAdd:
        return " + ";
    case EEDivide:
        return " / ";
    case EEMultiply:
        return " * ";
    case EEAnd:
        return " AND ";
    case EEOr:
        return " OR ";
    case EEEqual:
        return " = ";
    case EENotEqual:
        return " <> ";
    case EEGreater:
        return " > ";
    case EELess:
        return " < ";
    case EEGreaterOrEqual:
        return " >= ";
    case EELessOrEqual:
        return " <= ";
    default:
        return " ? ";
    }
}

orv::String operandText(const CEEExpression* operand)
{
    if (!operand)
        return {};
    // An operand that is an operation itself keeps its brackets; the text must read as the tree is
    // built.
    const bool operation = dynamic_cast<const CEEExpressionBinOp*>(operand) != nullptr;
    return operation ? "(" + operand->ToString() + ")" : operand->ToString();
}

} // namespace

CEEExpressionBinOp::CEEExpressionBinOp(int code, CEEExpression* left, CEEExpression* right)
    : m_code(code)
    , m_left(left)
    , m_right(right)
{
}

CEEExpressionBinOp::~CEEExpressionBinOp()
{
    delete m_right;
    CEEExpression* next = std::exchange(m_left, nullptr);
    while (next && next->GetType() == EETypeBinOp) {
        auto* node = static_cast<CEEExpressionBinOp*>(next);
        next = std::exchange(node->m_left, nullptr);
        delete node;
    }
    delete next;
}

int CEEExpressionBinOp::GetType()
{
    return EETypeBinOp;
}

bool CEEExpressionBinOp::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    if (!m_left)
        return false;
    if (m_left->GetType() != EETypeBinOp)
        return m_left->Eval(provider, result) && evalStep(*this, provider, result);
    const Chain chain = leftSpine(this);
    CEEExpression* first = chain.back()->GetLeft();
    if (!first || !first->Eval(provider, result))
        return false;
    for (auto node = chain.rbegin(); node != chain.rend(); ++node)
        if (!evalStep(**node, provider, result))
            return false;
    return true;
}

orv::String CEEExpressionBinOp::ToString() const
{
    const Chain chain = leftSpine(const_cast<CEEExpressionBinOp*>(this));
    const CEEExpression* first = chain.back()->GetLeft();
    std::string text = first ? first->ToString().Bytes() : std::string();
    int depth = 0; // opening brackets, written in front at the end
    for (auto node = chain.rbegin(); node != chain.rend(); ++node) {
        if (node != chain.rbegin()) {
            text += ')';
            ++depth;
        }
        text += symbolOf((*node)->GetCode());
        text += operandText((*node)->GetRight()).Bytes();
    }
    return orv::String(std::string_view(std::string(static_cast<std::size_t>(depth), '(') + text));
}

bool CEEExpressionBinOp::IsConst()
{
    const Chain chain = leftSpine(this);
    CEEExpression* first = chain.back()->GetLeft();
    if (!first || !first->IsConst())
        return false;
    for (const CEEExpressionBinOp* node : chain)
        if (!node->GetRight() || !node->GetRight()->IsConst())
            return false;
    return true;
}

void CEEExpressionBinOp::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitBinOp(*this);
}
void CEEExpressionBinOp::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitBinOp(*this);
}

CEEExpression* CEEExpressionBinOp::Clone()
{
    const Chain chain = leftSpine(this);
    CEEExpression* first = chain.back()->GetLeft();
    CEEExpression* copy = first ? first->Clone() : nullptr;
    for (auto node = chain.rbegin(); node != chain.rend(); ++node) {
        CEEExpression* right = (*node)->GetRight();
        copy = new CEEExpressionBinOp((*node)->GetCode(), copy, right ? right->Clone() : nullptr);
    }
    return copy;
}
