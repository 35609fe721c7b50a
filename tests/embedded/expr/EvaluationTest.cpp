// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace trees;
using orv::CPolyValue;

class EvaluationTest : public testing::Test {
protected:
    EvaluationTest()
    {
        add("Corsie", none);
        add("Nome", CPolyValue("Via Roma, con un nome che non sta dentro l'oggetto"));
        add("Larghezza", CPolyValue(3.5));
        add("Attivo", CPolyValue(true));
    }
    void add(const char* name, const CPolyValue& value)
    {
        auto* symbol = new CEESymbolConstVar;
        symbol->SetElemValue(value);
        table.AddSymbol(name, symbol);
    }
    CEESymbolTable table;
};

TEST_F(EvaluationTest, ALiteralIsItsValue)
{
    EXPECT_EQ(evaluate(constant(CPolyValue("x"))), gives("x"));
    EXPECT_EQ(evaluate(constant(none)), gives(none));
    EXPECT_EQ(evaluate(constant(date(5))), gives(date(5)));
}

TEST_F(EvaluationTest, AVariableIsTheValueOfItsSymbol)
{
    EXPECT_EQ(evaluate(variable("Larghezza"), &table), gives(3.5));
    EXPECT_EQ(evaluate(variable("LARGHEZZA"), &table), gives(3.5));
    EXPECT_EQ(evaluate(variable("Corsie"), &table), gives(none));
    EXPECT_EQ(evaluate(variable("Altezza"), &table), fails);
    EXPECT_EQ(evaluate(variable("Larghezza"), nullptr), fails);
}

TEST_F(EvaluationTest, VariablesAreOperands)
{
    EXPECT_EQ(evaluate(binary(EEGreater, variable("Larghezza"), constant(3)), &table), gives(true));
    EXPECT_EQ(evaluate(binary(EELess, constant(3), variable("Larghezza")), &table), gives(true));
    EXPECT_EQ(evaluate(binary(EEEqual, variable("Nome"), variable("Nome")), &table), gives(true));
    EXPECT_EQ(evaluate(binary(EEMultiply, variable("Larghezza"), variable("Larghezza")), &table),
        gives(12.25));
    EXPECT_EQ(evaluate(negation(variable("Attivo")), &table), gives(false));
    EXPECT_EQ(evaluate(binary(EEEqual, variable("Altezza"), constant(1)), &table), fails);
    EXPECT_EQ(evaluate(binary(EEEqual, constant(1), variable("Altezza")), &table), fails);
    EXPECT_EQ(evaluate(binary(EEEqual, variable("Larghezza"), constant(1)), nullptr), fails);
}

TEST_F(EvaluationTest, NoValueComesBeforeTheKindsAndAFailureBeforeBoth)
{
    EXPECT_EQ(evaluate(binary(EEAdd, variable("Corsie"), constant(CPolyValue("x"))), &table),
        gives(none));
    EXPECT_EQ(evaluate(binary(EEDivide, variable("Corsie"), constant(0)), &table), gives(none));
    EXPECT_EQ(evaluate(binary(EEAdd, variable("Corsie"), variable("Altezza")), &table), fails);
    EXPECT_EQ(evaluate(binary(EEAdd, variable("Altezza"), variable("Corsie")), &table), fails);
    EXPECT_EQ(evaluate(binary(EEDivide, constant(CPolyValue("x")), constant(0)), &table), fails);
}

TEST_F(EvaluationTest, TheLeftOperandIsAskedFirstAndAFailureEndsTheSearch)
{
    int left = 0;
    int right = 0;
    for (const int code : { int(EEAdd), int(EEEqual), int(EEAnd), int(EEOr) }) {
        EXPECT_EQ(
            evaluate(binary(code, foreign(fails, &left), foreign(gives(true), &right))), fails);
        EXPECT_EQ(right, 0) << code;
    }
    EXPECT_EQ(left, 4);
}

TEST_F(EvaluationTest, ADecidedSideIsNotAskedFurther)
{
    int asked = 0;
    const auto combined = [&](int code, const CPolyValue& left) {
        return evaluate(binary(code, constant(left), foreign(fails, &asked)));
    };

    EXPECT_EQ(combined(EEAnd, CPolyValue(false)), gives(false));
    EXPECT_EQ(combined(EEOr, CPolyValue(true)), gives(true));
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(combined(EEAnd, CPolyValue(true)), fails);
    EXPECT_EQ(combined(EEOr, CPolyValue(false)), fails);
    EXPECT_EQ(combined(EEAnd, none), fails);
    EXPECT_EQ(combined(EEOr, none), fails);
    EXPECT_EQ(asked, 4);
}

TEST_F(EvaluationTest, AFailureInAChainFailsTheWholeUnlessItWasNotAsked)
{
    const auto failing = [] { return foreign(fails); };
    const auto truth = [](bool value) { return constant(CPolyValue(value)); };

    // (FALSE AND failure) OR TRUE
    EXPECT_EQ(
        evaluate(binary(EEOr, binary(EEAnd, truth(false), failing()), truth(true))), gives(true));
    // (TRUE AND failure) OR TRUE
    EXPECT_EQ(evaluate(binary(EEOr, binary(EEAnd, truth(true), failing()), truth(true))), fails);
    // (TRUE OR failure) AND TRUE OR failure
    EXPECT_EQ(evaluate(binary(EEOr,
                  binary(EEAnd, binary(EEOr, truth(true), failing()), truth(true)), failing())),
        gives(true));
    // FALSE AND (1 / 0 = 1)
    EXPECT_EQ(evaluate(binary(EEAnd, truth(false),
                  binary(EEEqual, binary(EEDivide, constant(1), constant(0)), constant(1)))),
        gives(false));
}

TEST_F(EvaluationTest, OperatorsGroupAsTheTreeIsBuilt)
{
    // (10 - 4) - 3 and 10 - (4 - 3)
    EXPECT_EQ(
        evaluate(binary(EESubtract, binary(EESubtract, constant(10), constant(4)), constant(3))),
        gives(3));
    EXPECT_EQ(
        evaluate(binary(EESubtract, constant(10), binary(EESubtract, constant(4), constant(3)))),
        gives(9));
    // Larghezza * 2 + 1 > 7
    EXPECT_EQ(evaluate(binary(EEGreater,
                           binary(EEAdd, binary(EEMultiply, variable("Larghezza"), constant(2)),
                               constant(1)),
                           constant(7)),
                  &table),
        gives(true));
}

TEST_F(EvaluationTest, TextsOfNodesOfOthersAreComparedWhole)
{
    const CPolyValue longText("a text that does not lie inside the object itself");
    EXPECT_EQ(
        evaluate(binary(EEEqual, foreign(gives(longText)), foreign(gives(longText)))), gives(true));
    EXPECT_EQ(evaluate(binary(EEEqual, foreign(gives(longText)), constant(longText))), gives(true));
}

TEST_F(EvaluationTest, TextsOfNodesOfOthersLiveUntilTheyAreCompared)
{
    const auto text = [](const char* value) { return foreign(gives(CPolyValue(value))); };
    const char* longText = "a text that does not lie inside the object itself";

    // The left text waits while a whole condition with texts of its own is computed to its right.
    CEEExpression* right = binary(EEEqual, text("another text that is allocated"), text(longText));
    EXPECT_EQ(evaluate(binary(EEEqual, text(longText), right)), fails);
    EXPECT_EQ(evaluate(binary(EEOr, binary(EEEqual, text("x"), text(longText)),
                  binary(EEEqual, text(longText), text(longText)))),
        gives(true));
}

TEST_F(EvaluationTest, MissingOperandsFail)
{
    EXPECT_EQ(evaluate(binary(EEAdd, nullptr, constant(1))), fails);
    EXPECT_EQ(evaluate(binary(EEAdd, constant(1), nullptr)), fails);
    EXPECT_EQ(evaluate(binary(EEAdd, nullptr, nullptr)), fails);
    EXPECT_EQ(evaluate(negation(nullptr)), fails);
    EXPECT_EQ(evaluate(call("Year", { nullptr }), &table), fails);
}

TEST_F(EvaluationTest, ACallEvaluatesItsArgumentsAndSeesFunctionsOnly)
{
    table.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
    table.AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));
    const auto dateCall = [] { return call("Date", { constant(5), constant(3), constant(2016) }); };

    EXPECT_EQ(evaluate(call("Year", { dateCall() }), &table), gives(2016));
    EXPECT_EQ(
        evaluate(call("YEAR", { call("date", { constant(1), constant(1), constant(7) }) }), &table),
        gives(7));
    EXPECT_EQ(evaluate(binary(EEEqual, call("Year", { dateCall() }), constant(2016)), &table),
        gives(true));
    EXPECT_EQ(evaluate(binary(EELess, dateCall(), dateCall()), &table), gives(false));
    EXPECT_EQ(evaluate(call("Larghezza"), &table), fails);
    EXPECT_EQ(evaluate(call("Sconosciuta"), &table), fails);
    EXPECT_EQ(evaluate(call("Year", { variable("Altezza") }), &table), fails);
    EXPECT_EQ(evaluate(call("Year", { dateCall() }), nullptr), fails);
}

/// A provider of somebody else, which changes the name that it is given.
class ForeignProvider final : public CEESymbolProvider {
public:
    CEESymbol* GetSymbol(orv::String& name) override
    {
        asked += name.Bytes() + ' ';
        name = "changed";
        return &symbol;
    }
    CEESymbol* GetFunction(orv::String& name) override { return GetSymbol(name); }
    std::string asked;
    CEESymbolConstVar symbol;
};

TEST_F(EvaluationTest, AProviderThatChangesTheNameDoesNotChangeTheNode)
{
    ForeignProvider provider;
    provider.symbol.SetElemValue(CPolyValue(4));
    const Node tree(binary(EEAdd, variable("a"), binary(EEAdd, variable("b"), call("c"))));
    CEEResult result;

    EXPECT_TRUE(tree->Eval(&provider, result));
    EXPECT_TRUE(tree->Eval(&provider, result));

    EXPECT_EQ(provider.asked, "a b c a b c ");
    EXPECT_EQ(result.GetElem(), CPolyValue(12));
}

/// A variable with rules of its own, as the filter's IS NULL.
class DerivedVariable final : public CEEExpressionVar {
public:
    using CEEExpressionVar::CEEExpressionVar;
    bool Eval(CEESymbolProvider*, CEEResult& result) override
    {
        result.SetElemBool(true);
        return true;
    }
    CEEExpression* Clone() override { return new DerivedVariable(GetVarName()); }
};

class DerivedOperator final : public CEEExpressionBinOp {
public:
    using CEEExpressionBinOp::CEEExpressionBinOp;
    bool Eval(CEESymbolProvider*, CEEResult& result) override
    {
        result.SetElem(CPolyValue(77));
        return true;
    }
};

TEST_F(EvaluationTest, WhatDerivesFromANodeKeepsItsOwnRules)
{
    const Node tree(binary(EEAnd, new DerivedVariable("Corsie"), new DerivedVariable("Nome")));
    const Node copy(tree->Clone());
    CEEResult result;

    EXPECT_TRUE(copy->Eval(&table, result));
    EXPECT_TRUE(result.GetElemBool());
    EXPECT_EQ(
        evaluate(binary(EEAdd, new DerivedOperator(EEAdd, constant(1), constant(2)), constant(1))),
        gives(78));
}

/// Nodes of others that add nothing but data of their own.
template <typename Node> class Plain final : public Node {
public:
    using Node::Node;
};

TEST_F(EvaluationTest, WhatDerivesWithoutRulesOfItsOwnWorksAsTheNodeDoes)
{
    const auto check = [this](CEEExpression* tree, const Outcome& outcome, const char* text) {
        const Node node(tree);
        const Node copy(tree->Clone());
        EXPECT_EQ(node->ToString().View(), text);
        EXPECT_EQ(copy->ToString().View(), text);
        EXPECT_EQ(evaluate(tree->Clone(), &table), outcome);
        EXPECT_EQ(
            evaluate(binary(EEAnd, constant(CPolyValue(true)), tree->Clone()), &table), outcome);
    };
    table.AddSymbol("Now", new CEESymbolFunVarious(EEFunctionNow));

    check(new Plain<CEEExpressionBinOp>(EEEqual, constant(1), constant(1)), gives(true), "1 = 1");
    check(new Plain<CEEExpressionUnOp>(EENot, variable("Attivo")), gives(false), "NOT Attivo");
    check(new Plain<CEEExpressionConst>(CPolyValue(true)), gives(true), "TRUE");
    check(new Plain<CEEExpressionVar>("Attivo"), gives(true), "Attivo");
    EXPECT_EQ(Node(new Plain<CEEExpressionFun>("Now", std::vector<CEEExpression*>()))->ToString(),
        "Now()");
    EXPECT_EQ(evaluate(new Plain<CEEExpressionBinOp>(EEAdd, constant(1), constant(2))), gives(3));
    EXPECT_EQ(evaluate(binary(EEAdd, new Plain<CEEExpressionBinOp>(EEAdd, constant(1), constant(2)),
                  constant(3))),
        gives(6));
}

TEST(ResultTest, ABooleanIsReadOnlyFromABoolean)
{
    CEEResult result;
    EXPECT_EQ(result.GetElemType(), 0);
    EXPECT_FALSE(result.GetElemBool());
    result.SetElem(CPolyValue(1));
    EXPECT_FALSE(result.GetElemBool());
    EXPECT_EQ(result.GetElemString().View(), "1");
    result.SetElemBool(true);
    EXPECT_TRUE(result.GetElemBool());
    EXPECT_EQ(result.GetElemString().View(), "Sì");
    EXPECT_EQ(result.GetElemType(), orv::PolyBool);
    EXPECT_TRUE(CEEResult(true).GetElemBool());
    result = CEEResult();
    EXPECT_EQ(result.GetElemType(), 0);
}

} // namespace
