// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

namespace trees {

namespace {

class ForeignNode final : public CEEExpression {
public:
    ForeignNode(const Outcome& outcome, int* asked, int* alive)
        : m_outcome(outcome)
        , m_asked(asked)
        , m_alive(alive)
    {
        if (m_alive)
            ++*m_alive;
    }
    ~ForeignNode() override
    {
        if (m_alive)
            --*m_alive;
    }
    int GetType() override { return EETypeOther; }
    bool Eval(CEESymbolProvider*, CEEResult& result) override
    {
        if (m_asked)
            ++*m_asked;
        result.SetElem(m_outcome.value);
        return m_outcome.succeeds;
    }
    orv::String ToString() const override { return "foreign"; }
    bool IsConst() override { return false; }
    void Accept(CEEExpressionConstVisitor& visitor) const override { visitor.Visit(*this); }
    void Accept(CEEExpressionVisitor& visitor) override { visitor.Visit(*this); }
    CEEExpression* Clone() override { return new ForeignNode(m_outcome, m_asked, m_alive); }

private:
    Outcome m_outcome;
    int* m_asked;
    int* m_alive;
};

} // namespace

CEEExpression* foreign(const Outcome& outcome, int* asked, int* alive)
{
    return new ForeignNode(outcome, asked, alive);
}

Outcome evaluate(CEEExpression* root, CEESymbolProvider* provider)
{
    const Node owner(root);
    CEEResult result;
    if (!root->Eval(provider, result))
        return fails;
    return gives(result.GetElem());
}

} // namespace trees
