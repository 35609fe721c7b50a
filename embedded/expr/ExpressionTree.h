// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Work over whole trees without recursion: chains of operators grow to the left with the length of
// a filter, calls nest as deep as the parser allows, and a host may call from a thread with a small
// stack.

#include "host/expr/Expression.h"

/// Owner: nodes keep their children; what is cloned is the caller's.
class CEEExpressionTree final {
public:
    CEEExpressionTree() = delete;

    static bool evaluate(
        const CEEExpressionBinOp& root, CEESymbolProvider* provider, CEEResult& result);
    static bool evaluate(
        const CEEExpressionUnOp& root, CEESymbolProvider* provider, CEEResult& result);
    static bool evaluate(
        const CEEExpressionFun& root, CEESymbolProvider* provider, CEEResult& result);
    /// Copy of a tree; null of null.
    static CEEExpression* clone(CEEExpression* root);
    /// The tree in the filter language, with the brackets that it needs to be read back.
    static orv::String print(const CEEExpression& root);
    static bool isConst(const CEEExpressionBinOp& root);

    /// Deletes the nodes below. Neither recurses nor allocates, so it cannot fail.
    static void deleteChildren(CEEExpressionUnOp& node) noexcept;
    static void deleteChildren(CEEExpressionBinOp& node) noexcept;
    static void deleteChildren(CEEExpressionFun& node) noexcept;

    /// Which classes count as a node of this library: only its own, since what derives from them
    /// evaluates and copies itself, or also those, where the node itself has asked for the work.
    enum class Match { Exact, Derived };
    static CEEExpressionConst* asConst(CEEExpression* node, Match match = Match::Exact);
    static CEEExpressionVar* asVar(CEEExpression* node, Match match = Match::Exact);
    static CEEExpressionUnOp* asUnOp(CEEExpression* node, Match match = Match::Exact);
    static CEEExpressionBinOp* asBinOp(CEEExpression* node, Match match = Match::Exact);
    static CEEExpressionFun* asFun(CEEExpression* node, Match match = Match::Exact);
};
