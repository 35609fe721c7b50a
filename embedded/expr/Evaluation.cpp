// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "embedded/expr/ExpressionTree.h"

#include "embedded/expr/Operators.h"
#include "host/expr/Symbols.h"

#include <array>
#include <optional>
#include <typeinfo>

using embedded::Operand;

namespace {

/// Where a result lives whose text is lent to an operand; made only when a node needs it.
using Holder = std::optional<CEEResult>;

/// The operators between a node and the end of its left side. Most filters need no more than the
/// places inside, so that a row costs no allocation.
class LeftSide {
public:
    void push(const CEEExpressionBinOp* node)
    {
        if (m_count < m_first.size())
            m_first[m_count] = node;
        else
            m_others.push_back(node);
        ++m_count;
    }
    [[nodiscard]] bool isEmpty() const { return m_count == 0; }
    const CEEExpressionBinOp* pop()
    {
        --m_count;
        if (m_count < m_first.size())
            return m_first[m_count];
        const CEEExpressionBinOp* node = m_others.back();
        m_others.pop_back();
        return node;
    }

private:
    std::array<const CEEExpressionBinOp*, 8> m_first;
    std::vector<const CEEExpressionBinOp*> m_others;
    std::size_t m_count = 0;
};

bool evaluateBinary(const CEEExpressionBinOp&, CEESymbolProvider*, Operand&);
bool evaluateUnary(const CEEExpressionUnOp&, CEESymbolProvider*, Operand&);

CEESymbol* findSymbol(CEESymbolProvider& provider, const orv::String& name)
{
    if (&typeid(provider) == &typeid(CEESymbolTable))
        return static_cast<CEESymbolTable&>(provider).Find(name.View());
    orv::String copy(name); // a provider may change its argument, and threads share the node
    return provider.GetSymbol(copy);
}

bool evaluateVariable(
    const CEEExpressionVar& node, CEESymbolProvider* provider, Holder& holder, Operand& value)
{
    CEESymbol* symbol = provider ? findSymbol(*provider, node.GetVarName()) : nullptr;
    if (!symbol)
        return false;
    CEESymbol& known = *symbol;
    if (&typeid(known) == &typeid(CEESymbolConstVar)) {
        value = embedded::operandOf(static_cast<CEESymbolConstVar&>(known).GetElemValue());
        return true;
    }
    if (!known.Eval(0, nullptr, holder.emplace()))
        return false;
    value = embedded::operandOf(holder->GetElem());
    return true;
}

bool evaluateOperand(
    CEEExpression* node, CEESymbolProvider* provider, Holder& holder, Operand& value)
{
    using Tree = CEEExpressionTree;
    if (const auto* variable = Tree::asVar(node))
        return evaluateVariable(*variable, provider, holder, value);
    if (const auto* constant = Tree::asConst(node)) {
        value = embedded::operandOf(constant->GetValue());
        return true;
    }
    if (const auto* binary = Tree::asBinOp(node))
        return evaluateBinary(*binary, provider, value);
    if (const auto* unary = Tree::asUnOp(node))
        return evaluateUnary(*unary, provider, value);
    if (!node || !node->Eval(provider, holder.emplace()))
        return false;
    value = embedded::operandOf(holder->GetElem());
    return true;
}

/// Brings `value`, the left operand of a node, together with the node's right operand.
bool applyRight(const CEEExpressionBinOp& node, CEESymbolProvider* provider, Operand& value)
{
    if (embedded::isDecided(node.GetCode(), value))
        return true;
    Holder holder;
    Operand right;
    return evaluateOperand(node.GetRight(), provider, holder, right)
        && embedded::computeBinary(node.GetCode(), value, right, value);
}

bool evaluateBinary(const CEEExpressionBinOp& root, CEESymbolProvider* provider, Operand& value)
{
    LeftSide operators;
    const CEEExpressionBinOp* node = &root;
    CEEExpression* leftmost = nullptr;
    while (node) {
        operators.push(node);
        leftmost = node->GetLeft();
        node = CEEExpressionTree::asBinOp(leftmost);
    }
    Holder holder;
    if (!evaluateOperand(leftmost, provider, holder, value))
        return false;
    while (!operators.isEmpty())
        if (!applyRight(*operators.pop(), provider, value))
            return false; // a failing left operand fails whatever stands above it
    return true;
}

bool evaluateUnary(const CEEExpressionUnOp& root, CEESymbolProvider* provider, Operand& value)
{
    Holder holder;
    return evaluateOperand(root.GetOperand(), provider, holder, value)
        && embedded::computeUnary(root.GetCode(), value, value);
}

void store(const Operand& value, CEEResult& result)
{
    if (value.type == orv::PolyBool) {
        result.SetElemBool(value.number.asBool);
        return;
    }
    orv::CPolyValue element;
    embedded::storeOperand(value, element);
    result.SetElem(std::move(element));
}

} // namespace

bool CEEExpressionTree::evaluate(
    const CEEExpressionBinOp& root, CEESymbolProvider* provider, CEEResult& result)
{
    Operand value;
    if (!evaluateBinary(root, provider, value))
        return false;
    store(value, result);
    return true;
}

bool CEEExpressionTree::evaluate(
    const CEEExpressionUnOp& root, CEESymbolProvider* provider, CEEResult& result)
{
    Operand value;
    if (!evaluateUnary(root, provider, value))
        return false;
    store(value, result);
    return true;
}
