// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/expr/Expression.h"

CEEExpressionConstVisitor::~CEEExpressionConstVisitor() = default;
CEEExpressionVisitor::~CEEExpressionVisitor() = default;

void CEEExpressionConstVisitor::VisitConst(const CEEExpressionConst& node)
{
    Visit(node);
}

void CEEExpressionVisitor::VisitConst(CEEExpressionConst& node)
{
    Visit(node);
}

void CEEExpressionConst::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitConst(*this);
}

void CEEExpressionConst::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitConst(*this);
}

void CEEExpressionConstVisitor::VisitVar(const CEEExpressionVar& node)
{
    Visit(node);
}

void CEEExpressionVisitor::VisitVar(CEEExpressionVar& node)
{
    Visit(node);
}

void CEEExpressionVar::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitVar(*this);
}

void CEEExpressionVar::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitVar(*this);
}

void CEEExpressionConstVisitor::VisitUnOp(const CEEExpressionUnOp& node)
{
    Visit(node);
}

void CEEExpressionVisitor::VisitUnOp(CEEExpressionUnOp& node)
{
    Visit(node);
}

void CEEExpressionUnOp::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitUnOp(*this);
}

void CEEExpressionUnOp::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitUnOp(*this);
}

void CEEExpressionConstVisitor::VisitBinOp(const CEEExpressionBinOp& node)
{
    Visit(node);
}

void CEEExpressionVisitor::VisitBinOp(CEEExpressionBinOp& node)
{
    Visit(node);
}

void CEEExpressionBinOp::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitBinOp(*this);
}

void CEEExpressionBinOp::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitBinOp(*this);
}

void CEEExpressionConstVisitor::VisitFun(const CEEExpressionFun& node)
{
    Visit(node);
}

void CEEExpressionVisitor::VisitFun(CEEExpressionFun& node)
{
    Visit(node);
}

void CEEExpressionFun::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitFun(*this);
}

void CEEExpressionFun::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitFun(*this);
}
