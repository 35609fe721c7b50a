// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Work over whole trees that must not recurse down the left side: chains of operators grow there
// with the length of a filter, while all other nesting is bounded by the parser's stack.

#include "host/expr/Expression.h"

/// Owner: nodes keep their children; what is cloned is the caller's.
class CEEExpressionTree final {
public:
    CEEExpressionTree() = delete;

    static bool evaluate(
        const CEEExpressionBinOp& root, CEESymbolProvider* provider, CEEResult& result);
    static bool evaluate(
        const CEEExpressionUnOp& root, CEESymbolProvider* provider, CEEResult& result);
    /// Copy of a tree; null of null.
    static CEEExpression* clone(CEEExpression* root);
    /// The tree in the filter language, with the brackets that it needs to be read back.
    static orv::String print(const CEEExpression& root);
    static bool isConst(const CEEExpressionBinOp& root);

    /// Deletes the nodes below. Neither recurses nor allocates, so it cannot fail.
    static void deleteChildren(CEEExpressionUnOp& node) noexcept;
    static void deleteChildren(CEEExpressionBinOp& node) noexcept;

    /// The node as one of this library's own, null for any other: what derives from them evaluates
    /// and copies itself.
    static CEEExpressionConst* asConst(CEEExpression* node);
    static CEEExpressionVar* asVar(CEEExpression* node);
    static CEEExpressionUnOp* asUnOp(CEEExpression* node);
    static CEEExpressionBinOp* asBinOp(CEEExpression* node);
    static CEEExpressionFun* asFun(CEEExpression* node);
};
