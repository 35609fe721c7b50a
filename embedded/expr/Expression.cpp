// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/expr/Expression.h"

#include "embedded/expr/ExpressionTree.h"
#include "host/expr/Symbols.h"

#include <utility>

CEEExpression::~CEEExpression() = default;

// Literal

CEEExpressionConst::CEEExpressionConst(const orv::CPolyValue& value)
    : m_value(value)
{
}

CEEExpressionConst::~CEEExpressionConst() = default;

int CEEExpressionConst::GetType()
{
    return EETypeConst;
}

bool CEEExpressionConst::Eval(CEESymbolProvider* /*provider*/, CEEResult& result)
{
    result.SetElem(m_value);
    return true;
}

orv::String CEEExpressionConst::ToString() const
{
    return CEEExpressionTree::print(*this);
}

bool CEEExpressionConst::IsConst()
{
    return true;
}

CEEExpression* CEEExpressionConst::Clone()
{
    return new CEEExpressionConst(m_value);
}

// Variable

CEEExpressionVar::CEEExpressionVar(const orv::String& name)
    : m_name(name)
{
}

CEEExpressionVar::~CEEExpressionVar() = default;

int CEEExpressionVar::GetType()
{
    return EETypeVar;
}

bool CEEExpressionVar::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    orv::String name(m_name); // a provider may change its argument, and threads share the node
    CEESymbol* symbol = provider ? provider->GetSymbol(name) : nullptr;
    return symbol && symbol->Eval(0, nullptr, result);
}

orv::String CEEExpressionVar::ToString() const
{
    // The bare name; the square brackets that some names need come with the tree around it.
    return m_name;
}

bool CEEExpressionVar::IsConst()
{
    return false;
}

CEEExpression* CEEExpressionVar::Clone()
{
    return new CEEExpressionVar(m_name);
}

// Unary operator

CEEExpressionUnOp::CEEExpressionUnOp(int code, CEEExpression* operand)
    : m_code(code)
    , m_operand(operand)
{
}

CEEExpressionUnOp::~CEEExpressionUnOp()
{
    CEEExpressionTree::deleteChildren(*this);
}

int CEEExpressionUnOp::GetType()
{
    return EETypeUnOp;
}

bool CEEExpressionUnOp::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    return CEEExpressionTree::evaluate(*this, provider, result);
}

orv::String CEEExpressionUnOp::ToString() const
{
    return CEEExpressionTree::print(*this);
}

bool CEEExpressionUnOp::IsConst()
{
    return m_operand && m_operand->IsConst();
}

CEEExpression* CEEExpressionUnOp::Clone()
{
    return CEEExpressionTree::clone(this);
}

// Binary operator

CEEExpressionBinOp::CEEExpressionBinOp(int code, CEEExpression* left, CEEExpression* right)
    : m_code(code)
    , m_left(left)
    , m_right(right)
{
}

CEEExpressionBinOp::~CEEExpressionBinOp()
{
    CEEExpressionTree::deleteChildren(*this);
}

int CEEExpressionBinOp::GetType()
{
    return EETypeBinOp;
}

bool CEEExpressionBinOp::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    return CEEExpressionTree::evaluate(*this, provider, result);
}

orv::String CEEExpressionBinOp::ToString() const
{
    return CEEExpressionTree::print(*this);
}

bool CEEExpressionBinOp::IsConst()
{
    return CEEExpressionTree::isConst(*this);
}

CEEExpression* CEEExpressionBinOp::Clone()
{
    return CEEExpressionTree::clone(this);
}

// Function call

CEEExpressionFun::CEEExpressionFun(const orv::String& name, std::vector<CEEExpression*> arguments)
    : m_name(name)
    , m_arguments(std::move(arguments))
{
}

CEEExpressionFun::~CEEExpressionFun()
{
    CEEExpressionTree::deleteChildren(*this);
}

int CEEExpressionFun::GetType()
{
    return EETypeFun;
}

bool CEEExpressionFun::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    return CEEExpressionTree::evaluate(*this, provider, result);
}

orv::String CEEExpressionFun::ToString() const
{
    return CEEExpressionTree::print(*this);
}

bool CEEExpressionFun::IsConst()
{
    return false; // Now() gives another value each time
}

CEEExpression* CEEExpressionFun::Clone()
{
    return CEEExpressionTree::clone(this);
}
