// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Result.h"

#include <vector>

class CEESymbolProvider;
class CEEExpression;
class CEEExpressionConst;
class CEEExpressionVar;
class CEEExpressionUnOp;
class CEEExpressionBinOp;
class CEEExpressionFun;
class CEEExpressionTree; // the library's loops over whole trees

/// Operator codes of unary and binary nodes.
enum EEOperator : int {
    EESubtract = 1,
    EEAdd = 2,
    EEDivide = 3,
    EEMultiply = 4,
    EEAnd = 7,
    EEOr = 8,
    EEEqual = 10,
    EENotEqual = 11,
    EEGreater = 12,
    EELess = 13,
    EEGreaterOrEqual = 14,
    EELessOrEqual = 15,
};
/// The only unary operator: NOT. (As a binary code the same number adds.)
inline constexpr int EENot = 2;

/// What `CEEExpression::GetType` answers for the nodes of this library; nodes of others answer 0.
enum EEExpressionType : int {
    EETypeOther = 0,
    EETypeConst = 1,
    EETypeVar = 2,
    EETypeUnOp = 3,
    EETypeBinOp = 4,
    EETypeFun = 5,
};

/// Visitor of nodes that may not change them. Operations left out go to the first.
class TEMATICA_HOST_API CEEExpressionConstVisitor {
public:
    virtual void Visit(const CEEExpression& node) = 0;
    virtual void VisitConst(const CEEExpressionConst& node);
    virtual void VisitVar(const CEEExpressionVar& node);
    virtual void VisitUnOp(const CEEExpressionUnOp& node);
    virtual void VisitBinOp(const CEEExpressionBinOp& node);
    virtual void VisitFun(const CEEExpressionFun& node);

protected:
    ~CEEExpressionConstVisitor();
};

/// Visitor of nodes; operations left out go to the first.
class TEMATICA_HOST_API CEEExpressionVisitor {
public:
    virtual void Visit(const CEEExpression& node) = 0;
    virtual void VisitConst(CEEExpressionConst& node);
    virtual void VisitVar(CEEExpressionVar& node);
    virtual void VisitUnOp(CEEExpressionUnOp& node);
    virtual void VisitBinOp(CEEExpressionBinOp& node);
    virtual void VisitFun(CEEExpressionFun& node);

protected:
    ~CEEExpressionVisitor();
};

/// Base of all expression nodes. The order of the virtual operations is the binary contract with
/// hosts. Nodes own their children and do not change once built. Operators and calls are evaluated,
/// cloned, written and destroyed in a loop, so that neither a filter of 200,000 terms nor calls
/// nested as deep as the parser allows need a deep stack. Rules of evaluation:
/// docs/filter-language.md. Thread: a tree may be evaluated by several threads, each with its own
/// provider.
class TEMATICA_HOST_API CEEExpression {
public:
    CEEExpression() = default;
    CEEExpression(const CEEExpression&) = delete;
    CEEExpression& operator=(const CEEExpression&) = delete;
    virtual ~CEEExpression();
    virtual int GetType() = 0;
    /// Errors: false when a value cannot be computed (unknown name, types that do not fit, division
    /// by zero).
    virtual bool Eval(CEESymbolProvider* provider, CEEResult& result) = 0;
    virtual orv::String ToString() const = 0;
    virtual bool IsConst() = 0;
    virtual void Accept(CEEExpressionConstVisitor& visitor) const = 0;
    virtual void Accept(CEEExpressionVisitor& visitor) = 0;
    /// Owner: the caller.
    virtual CEEExpression* Clone() = 0;
};

/// A literal.
class TEMATICA_HOST_API CEEExpressionConst : public CEEExpression {
public:
    explicit CEEExpressionConst(const orv::CPolyValue& value);
    ~CEEExpressionConst() override;
    int GetType() override;
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;
    [[nodiscard]] const orv::CPolyValue& GetValue() const { return m_value; }

private:
    orv::CPolyValue m_value;
};

/// A variable by name; evaluation looks the name up and evaluates the symbol without arguments.
class TEMATICA_HOST_API CEEExpressionVar : public CEEExpression {
public:
    explicit CEEExpressionVar(const orv::String& name);
    ~CEEExpressionVar() override;
    int GetType() override;
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;
    [[nodiscard]] const orv::String& GetVarName() const { return m_name; }

private:
    orv::String m_name;
};

/// A unary operator; code 2 is NOT. Owns its operand.
class TEMATICA_HOST_API CEEExpressionUnOp : public CEEExpression {
public:
    CEEExpressionUnOp(int code, CEEExpression* operand);
    ~CEEExpressionUnOp() override;
    int GetType() override;
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;
    [[nodiscard]] int GetCode() const { return m_code; }
    [[nodiscard]] CEEExpression* GetOperand() const { return m_operand; }

private:
    friend class CEEExpressionTree;
    int m_code;
    CEEExpression* m_operand;
};

/// A binary operator (`EEOperator`). Owns its operands.
class TEMATICA_HOST_API CEEExpressionBinOp : public CEEExpression {
public:
    CEEExpressionBinOp(int code, CEEExpression* left, CEEExpression* right);
    ~CEEExpressionBinOp() override;
    int GetType() override;
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;
    [[nodiscard]] int GetCode() const { return m_code; }
    [[nodiscard]] CEEExpression* GetLeft() const { return m_left; }
    [[nodiscard]] CEEExpression* GetRight() const { return m_right; }

private:
    friend class CEEExpressionTree;
    int m_code;
    CEEExpression* m_left;
    CEEExpression* m_right;
};

/// A function call. Owns its arguments.
class TEMATICA_HOST_API CEEExpressionFun : public CEEExpression {
public:
    CEEExpressionFun(const orv::String& name, std::vector<CEEExpression*> arguments);
    ~CEEExpressionFun() override;
    int GetType() override;
    bool Eval(CEESymbolProvider* provider, CEEResult& result) override;
    orv::String ToString() const override;
    bool IsConst() override;
    void Accept(CEEExpressionConstVisitor& visitor) const override;
    void Accept(CEEExpressionVisitor& visitor) override;
    CEEExpression* Clone() override;
    [[nodiscard]] const orv::String& GetName() const { return m_name; }
    [[nodiscard]] const std::vector<CEEExpression*>& GetArguments() const { return m_arguments; }

private:
    friend class CEEExpressionTree;
    orv::String m_name;
    std::vector<CEEExpression*> m_arguments;
};
