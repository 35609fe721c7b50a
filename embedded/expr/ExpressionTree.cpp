// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "embedded/expr/ExpressionTree.h"

#include <memory>
#include <typeinfo>
#include <utility>

namespace {

template <typename Node> Node* as(CEEExpression* node, CEEExpressionTree::Match match)
{
    if (!node)
        return nullptr;
    CEEExpression& expression = *node;
    if (&typeid(expression) == &typeid(Node))
        return static_cast<Node*>(node);
    return match == CEEExpressionTree::Match::Derived ? dynamic_cast<Node*>(node) : nullptr;
}

} // namespace

CEEExpressionConst* CEEExpressionTree::asConst(CEEExpression* node, Match match)
{
    return as<CEEExpressionConst>(node, match);
}

CEEExpressionVar* CEEExpressionTree::asVar(CEEExpression* node, Match match)
{
    return as<CEEExpressionVar>(node, match);
}

CEEExpressionUnOp* CEEExpressionTree::asUnOp(CEEExpression* node, Match match)
{
    return as<CEEExpressionUnOp>(node, match);
}

CEEExpressionBinOp* CEEExpressionTree::asBinOp(CEEExpression* node, Match match)
{
    return as<CEEExpressionBinOp>(node, match);
}

CEEExpressionFun* CEEExpressionTree::asFun(CEEExpression* node, Match match)
{
    return as<CEEExpressionFun>(node, match);
}

CEEExpression* CEEExpressionTree::clone(CEEExpression* root)
{
    // Shells first, then what belongs into their places: each shell is owned by its parent from
    // the start, so nothing is lost when memory ends.
    struct Place {
        CEEExpression* source;
        CEEExpression** target;
    };
    struct Root {
        CEEExpression* node = nullptr;
        ~Root() { delete node; }
    } copy;
    std::vector<Place> places { { root, &copy.node } };
    while (!places.empty()) {
        const Place place = places.back();
        places.pop_back();
        const Match match = place.source == root ? Match::Derived : Match::Exact;
        if (auto* binary = asBinOp(place.source, match)) {
            auto* shell = new CEEExpressionBinOp(binary->m_code, nullptr, nullptr);
            *place.target = shell;
            places.push_back({ binary->m_right, &shell->m_right });
            places.push_back({ binary->m_left, &shell->m_left });
        } else if (auto* unary = asUnOp(place.source, match)) {
            auto* shell = new CEEExpressionUnOp(unary->m_code, nullptr);
            *place.target = shell;
            places.push_back({ unary->m_operand, &shell->m_operand });
        } else if (auto* call = asFun(place.source, match)) {
            auto* shell = new CEEExpressionFun(
                call->m_name, std::vector<CEEExpression*>(call->m_arguments.size()));
            *place.target = shell;
            for (std::size_t index = 0; index < call->m_arguments.size(); ++index)
                places.push_back({ call->m_arguments[index], &shell->m_arguments[index] });
        } else if (place.source)
            *place.target = place.source->Clone();
    }
    return std::exchange(copy.node, nullptr);
}

bool CEEExpressionTree::isConst(const CEEExpressionBinOp& root)
{
    const CEEExpressionBinOp* node = &root;
    while (true) {
        if (!node->m_right || !node->m_right->IsConst())
            return false;
        const CEEExpressionBinOp* left = asBinOp(node->m_left);
        if (!left)
            return node->m_left && node->m_left->IsConst();
        node = left;
    }
}

void CEEExpressionTree::deleteChildren(CEEExpressionUnOp& node) noexcept
{
    while (auto* inner = asUnOp(node.m_operand)) {
        node.m_operand = std::exchange(inner->m_operand, nullptr);
        delete inner;
    }
    delete std::exchange(node.m_operand, nullptr);
}

void CEEExpressionTree::deleteChildren(CEEExpressionBinOp& node) noexcept
{
    // The tree is turned to the right node by node until it is a list, which is then cut from its
    // head: each node is turned once and deleted once. A call is turned about its last argument and
    // keeps the list in the place of its first one, which is looked at last.
    while (true) {
        if (auto* unary = asUnOp(node.m_left)) {
            node.m_left = std::exchange(unary->m_operand, nullptr);
            delete unary;
        } else if (auto* left = asBinOp(node.m_left)) {
            node.m_left = left->m_left;
            left->m_left = left->m_right;
            left->m_right = node.m_right;
            node.m_right = left;
        } else if (auto* call = asFun(node.m_left); call && !call->m_arguments.empty()) {
            auto& arguments = call->m_arguments;
            node.m_left = std::exchange(arguments.back(), arguments.front());
            arguments.front() = node.m_right;
            node.m_right = call;
        } else if (node.m_left) {
            delete std::exchange(node.m_left, nullptr);
        } else if (auto* negation = asUnOp(node.m_right)) {
            node.m_right = std::exchange(negation->m_operand, nullptr);
            delete negation;
        } else if (auto* right = asBinOp(node.m_right)) {
            node.m_left = std::exchange(right->m_left, nullptr);
            node.m_right = std::exchange(right->m_right, nullptr);
            delete right;
        } else if (auto* last = asFun(node.m_right); last && !last->m_arguments.empty()) {
            auto& arguments = last->m_arguments;
            (arguments.size() > 1 ? node.m_left : node.m_right) = arguments.back();
            arguments.pop_back();
            if (arguments.empty())
                delete last;
        } else {
            delete std::exchange(node.m_right, nullptr);
            return;
        }
    }
}

void CEEExpressionTree::deleteChildren(CEEExpressionFun& node) noexcept
{
    CEEExpressionBinOp list(EEAdd, nullptr, nullptr);
    for (CEEExpression* argument : node.m_arguments) {
        list.m_left = argument;
        deleteChildren(list);
    }
    node.m_arguments.clear();
}
