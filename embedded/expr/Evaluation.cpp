// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "embedded/expr/ExpressionTree.h"

#include "embedded/expr/Operators.h"
#include "host/expr/Symbols.h"

#include <array>
#include <forward_list>
#include <optional>
#include <typeinfo>
#include <utility>

using embedded::Operand;

namespace {

/// An operator that waits for an operand, or a call that waits for an argument.
struct Pending {
    const CEEExpressionBinOp* binary = nullptr;
    const CEEExpressionUnOp* unary = nullptr; // both null: the last of the open calls
    bool hasLeft = false; // of a call: an argument is being computed
    Operand left;
    [[nodiscard]] bool isCall() const { return !binary && !unary; }
};

/// A call whose arguments are not all there yet.
struct OpenCall {
    const std::vector<CEEExpression*>& nodes;
    CEESymbol* function;
    std::vector<CEEResult> arguments;
    std::size_t next = 0;
};

/// The operators and calls between a node and the one looked at. Most filters need no more than the
/// places inside, so that a row costs no allocation; the others have all the memory there is, so
/// that no filter is too deep for the stack of the thread that a host calls from.
class PendingStack {
public:
    [[nodiscard]] bool isEmpty() const { return m_count == 0; }
    Pending& push()
    {
        if (m_count++ < m_first.size())
            return m_first[m_count - 1] = Pending();
        return m_others.emplace_back();
    }
    Pending& top() { return m_count <= m_first.size() ? m_first[m_count - 1] : m_others.back(); }
    void pop()
    {
        if (m_count-- > m_first.size())
            m_others.pop_back();
    }

private:
    std::array<Pending, 6> m_first;
    std::vector<Pending> m_others;
    std::size_t m_count = 0;
};

CEESymbol* findSymbol(CEESymbolProvider& provider, const orv::String& name)
{
    if (&typeid(provider) == &typeid(CEESymbolTable))
        return static_cast<CEESymbolTable&>(provider).Find(name.View());
    orv::String copy(name); // a provider may change its argument, and threads share the node
    return provider.GetSymbol(copy);
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

/// One evaluation of a tree of operators and calls.
class Evaluation {
public:
    explicit Evaluation(CEESymbolProvider* provider)
        : m_provider(provider)
    {
    }
    bool run(const CEEExpressionBinOp& root)
    {
        m_pending.push().binary = &root;
        return runFrom(root.GetLeft());
    }
    bool run(const CEEExpressionUnOp& root)
    {
        m_pending.push().unary = &root;
        return runFrom(root.GetOperand());
    }
    bool run(const CEEExpressionFun& root)
    {
        CEEExpression* next = nullptr;
        return beginCall(root) && climb(next) && (!next || runFrom(next));
    }
    /// The value computed last, to whoever waits for it; what a call gave as it gave it.
    void giveTo(CEEResult& result)
    {
        if (!m_called)
            return store(m_value, result);
        result = std::move(*m_called);
        m_called.reset();
    }

private:
    bool runFrom(CEEExpression* node)
    {
        do {
            node = descend(node);
            const auto* call = CEEExpressionTree::asFun(node);
            if (!(call ? beginCall(*call) : evaluateLeaf(node)) || !climb(node))
                return false; // a failing operand fails whatever stands above it
        } while (node);
        return true;
    }

    bool climb(CEEExpression*& next)
    {
        next = nullptr;
        while (!next && !m_pending.isEmpty())
            if (!(m_pending.top().isCall() ? continueCall(next) : ascend(next)))
                return false;
        return true;
    }

    bool beginCall(const CEEExpressionFun& call)
    {
        orv::String name(call.GetName()); // a provider may change it, and threads share the node
        CEESymbol* function = m_provider ? m_provider->GetFunction(name) : nullptr;
        if (!function)
            return false;
        const auto& nodes = call.GetArguments();
        m_calls.push_back({ nodes, function, std::vector<CEEResult>(nodes.size()) });
        m_pending.push();
        return true;
    }

    /// Computes the arguments up to one that is an operator or a call, which is `next`; after the
    /// last one the call itself.
    bool continueCall(CEEExpression*& next)
    {
        OpenCall& call = m_calls.back();
        bool& isWaiting = m_pending.top().hasLeft;
        if (std::exchange(isWaiting, false))
            giveTo(call.arguments[call.next++]);
        for (; call.next < call.nodes.size(); ++call.next) {
            CEEExpression* node = call.nodes[call.next];
            if (CEEExpressionTree::asBinOp(node) || CEEExpressionTree::asUnOp(node)
                || CEEExpressionTree::asFun(node)) {
                isWaiting = true;
                next = node;
                return true;
            }
            if (!node || !node->Eval(m_provider, call.arguments[call.next]))
                return false;
        }
        CEEResult result;
        if (!call.function->Eval(
                static_cast<int>(call.arguments.size()), call.arguments.data(), result))
            return false;
        m_calls.pop_back();
        m_pending.pop();
        if (m_pending.isEmpty() || m_pending.top().isCall())
            m_called.emplace(std::move(result));
        else
            take(std::move(result));
        return true;
    }

    /// Goes down to the first operand that is no operator and puts the operators passed aside.
    CEEExpression* descend(CEEExpression* node)
    {
        while (true) {
            if (const auto* binary = CEEExpressionTree::asBinOp(node)) {
                m_pending.push().binary = binary;
                node = binary->GetLeft();
            } else if (const auto* unary = CEEExpressionTree::asUnOp(node)) {
                m_pending.push().unary = unary;
                node = unary->GetOperand();
            } else
                return node;
        }
    }

    /// Gives the value to the operator that waits for it; `next` is the right operand when that is
    /// wanted now.
    bool ascend(CEEExpression*& next)
    {
        Pending& waiting = m_pending.top();
        bool isComputed = true;
        if (waiting.unary)
            isComputed = embedded::computeUnary(waiting.unary->GetCode(), m_value, m_value);
        else if (waiting.hasLeft)
            isComputed = embedded::computeBinary(
                waiting.binary->GetCode(), waiting.left, m_value, m_value);
        else if (!embedded::isDecided(waiting.binary->GetCode(), m_value)) {
            waiting.left = m_value;
            waiting.hasLeft = true;
            next = waiting.binary->GetRight();
            return next != nullptr;
        }
        m_pending.pop();
        return isComputed;
    }

    bool evaluateLeaf(CEEExpression* node)
    {
        if (const auto* variable = CEEExpressionTree::asVar(node))
            return evaluateVariable(*variable);
        if (const auto* constant = CEEExpressionTree::asConst(node)) {
            m_value = embedded::operandOf(constant->GetValue());
            return true;
        }
        CEEResult result;
        if (!node || !node->Eval(m_provider, result))
            return false;
        take(std::move(result));
        return true;
    }

    bool evaluateVariable(const CEEExpressionVar& node)
    {
        CEESymbol* symbol = m_provider ? findSymbol(*m_provider, node.GetVarName()) : nullptr;
        if (!symbol)
            return false;
        CEESymbol& known = *symbol;
        if (&typeid(known) == &typeid(CEESymbolConstVar)) {
            m_value = embedded::operandOf(static_cast<CEESymbolConstVar&>(known).GetElemValue());
            return true;
        }
        CEEResult result;
        if (!known.Eval(0, nullptr, result))
            return false;
        take(std::move(result));
        return true;
    }

    /// A text has to live as long as the operand that lends it.
    void take(CEEResult&& result)
    {
        const bool isText = result.GetElemType() == orv::PolyString;
        m_value = embedded::operandOf(
            isText ? m_texts.emplace_front(std::move(result)).GetElem() : result.GetElem());
    }

    CEESymbolProvider* m_provider;
    PendingStack m_pending;
    std::vector<OpenCall> m_calls;
    Operand m_value;
    std::optional<CEEResult> m_called; // what a call gave, where no operator asked for it
    std::forward_list<CEEResult> m_texts;
};

template <typename Node>
bool evaluateTree(const Node& root, CEESymbolProvider* provider, CEEResult& result)
{
    Evaluation evaluation(provider);
    if (!evaluation.run(root))
        return false;
    evaluation.giveTo(result);
    return true;
}

} // namespace

bool CEEExpressionTree::evaluate(
    const CEEExpressionBinOp& root, CEESymbolProvider* provider, CEEResult& result)
{
    return evaluateTree(root, provider, result);
}

bool CEEExpressionTree::evaluate(
    const CEEExpressionUnOp& root, CEESymbolProvider* provider, CEEResult& result)
{
    return evaluateTree(root, provider, result);
}

bool CEEExpressionTree::evaluate(
    const CEEExpressionFun& root, CEESymbolProvider* provider, CEEResult& result)
{
    return evaluateTree(root, provider, result);
}
