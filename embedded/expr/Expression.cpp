// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/expr/Expression.h"

#include "host/base/Numbers.h"
#include "host/expr/Symbols.h"

#include <utility>

CEEExpression::~CEEExpression() = default;
CEEExpressionConstVisitor::~CEEExpressionConstVisitor() = default;
CEEExpressionVisitor::~CEEExpressionVisitor() = default;

void CEEExpressionConstVisitor::VisitConst(const CEEExpressionConst& node)
{
    Visit(node);
}
void CEEExpressionConstVisitor::VisitVar(const CEEExpressionVar& node)
{
    Visit(node);
}
void CEEExpressionConstVisitor::VisitUnOp(const CEEExpressionUnOp& node)
{
    Visit(node);
}
void CEEExpressionConstVisitor::VisitBinOp(const CEEExpressionBinOp& node)
{
    Visit(node);
}
void CEEExpressionConstVisitor::VisitFun(const CEEExpressionFun& node)
{
    Visit(node);
}
void CEEExpressionVisitor::VisitConst(CEEExpressionConst& node)
{
    Visit(node);
}
void CEEExpressionVisitor::VisitVar(CEEExpressionVar& node)
{
    Visit(node);
}
void CEEExpressionVisitor::VisitUnOp(CEEExpressionUnOp& node)
{
    Visit(node);
}
void CEEExpressionVisitor::VisitBinOp(CEEExpressionBinOp& node)
{
    Visit(node);
}
void CEEExpressionVisitor::VisitFun(CEEExpressionFun& node)
{
    Visit(node);
}

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

bool CEEExpressionConst::Eval(CEESymbolProvider*, CEEResult& result)
{
    result.SetElem(m_value);
    return true;
}

orv::String CEEExpressionConst::ToString() const
{
    switch (m_value.GetType()) {
    case orv::PolyString:
        return "'" + m_value.GetStringValue() + "'";
    case orv::PolyBool:
        return m_value.GetBoolValue() ? "TRUE" : "FALSE";
    case orv::PolyEmpty:
        return "NULL";
    default:
        return m_value.GetStringValue();
    }
}

bool CEEExpressionConst::IsConst()
{
    return true;
}
void CEEExpressionConst::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitConst(*this);
}
void CEEExpressionConst::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitConst(*this);
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
    if (!provider)
        return false;
    orv::String name(m_name); // the provider may change what it is given
    CEESymbol* symbol = provider->GetSymbol(name);
    return symbol && symbol->Eval(0, nullptr, result);
}

orv::String CEEExpressionVar::ToString() const
{
    return m_name;
}
bool CEEExpressionVar::IsConst()
{
    return false;
}
void CEEExpressionVar::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitVar(*this);
}
void CEEExpressionVar::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitVar(*this);
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
    delete m_operand;
}

int CEEExpressionUnOp::GetType()
{
    return EETypeUnOp;
}

bool CEEExpressionUnOp::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    if (m_code != EENot || !m_operand || !m_operand->Eval(provider, result))
        return false;
    if (result.GetElemType() == orv::PolyEmpty)
        return true; // not known stays not known
    if (result.GetElemType() != orv::PolyBool)
        return false;
    result.SetElemBool(!result.GetElemBool());
    return true;
}

orv::String CEEExpressionUnOp::ToString() const
{
    return "NOT (" + (m_operand ? m_operand->ToString() : orv::String()) + ")";
}
bool CEEExpressionUnOp::IsConst()
{
    return m_operand && m_operand->IsConst();
}
void CEEExpressionUnOp::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitUnOp(*this);
}
void CEEExpressionUnOp::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitUnOp(*this);
}
CEEExpression* CEEExpressionUnOp::Clone()
{
    return new CEEExpressionUnOp(m_code, m_operand ? m_operand->Clone() : nullptr);
}

// Function call

CEEExpressionFun::CEEExpressionFun(const orv::String& name, std::vector<CEEExpression*> arguments)
    : m_name(name)
    , m_arguments(std::move(arguments))
{
}
CEEExpressionFun::~CEEExpressionFun()
{
    for (CEEExpression* argument : m_arguments)
        delete argument;
}

int CEEExpressionFun::GetType()
{
    return EETypeFun;
}

bool CEEExpressionFun::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    if (!provider)
        return false;
    orv::String name(m_name);
    CEESymbol* function = provider->GetFunction(name);
    if (!function)
        return false;
    std::vector<CEEResult> values(m_arguments.size());
    for (std::size_t i = 0; i < values.size(); ++i)
        if (!m_arguments[i] || !m_arguments[i]->Eval(provider, values[i]))
            return false;
    return function->Eval(static_cast<int>(values.size()), values.data(), result);
}

orv::String CEEExpressionFun::ToString() const
{
    orv::String text = m_name + "(";
    for (std::size_t i = 0; i < m_arguments.size(); ++i)
        text
            = text + (i ? "," : "") + (m_arguments[i] ? m_arguments[i]->ToString() : orv::String());
    return text + ")";
}
bool CEEExpressionFun::IsConst()
{
    return false; // Now() differs from call to call
}
void CEEExpressionFun::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.VisitFun(*this);
}
void CEEExpressionFun::Accept(CEEExpressionVisitor& visitor)
{
    visitor.VisitFun(*this);
}
CEEExpression* CEEExpressionFun::Clone()
{
    std::vector<CEEExpression*> arguments;
    arguments.reserve(m_arguments.size());
    for (CEEExpression* argument : m_arguments)
        arguments.push_back(argument ? argument->Clone() : nullptr);
    return new CEEExpressionFun(m_name, std::move(arguments));
}
