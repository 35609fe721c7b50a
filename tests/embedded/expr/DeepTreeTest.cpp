// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"
#include "tests/support/SmallStack.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace trees;
using orv::CPolyValue;
using support::runOnStack;

constexpr int Terms = 200000;

constexpr std::size_t SmallStack = 256 * 1024;

CEEExpression* equality(int value)
{
    return binary(EEEqual, variable("a"), constant(value));
}

/// a = 0 OR a = 1 OR ... as the parser groups it.
Node leftChain(int code, const std::function<CEEExpression*(int)>& term)
{
    CEEExpression* tree = term(0);
    for (int index = 1; index < Terms; ++index)
        tree = binary(code, tree, term(index));
    return Node(tree);
}

class DeepTreeTest : public testing::Test {
protected:
    DeepTreeTest()
    {
        symbol = new CEESymbolConstVar;
        table.AddSymbol("a", symbol);
    }
    Outcome valueOf(CEEExpression& tree)
    {
        CEEResult result;
        return tree.Eval(&table, result) ? gives(result.GetElem()) : fails;
    }
    CEESymbolTable table;
    CEESymbolConstVar* symbol;
};

TEST_F(DeepTreeTest, AChainOfConditionsIsEvaluatedCopiedWrittenAndDestroyedOnASmallStack)
{
    runOnStack(SmallStack, [this] {
        Node tree = leftChain(EEOr, equality);
        symbol->SetElemValue(CPolyValue(Terms - 1));
        EXPECT_EQ(valueOf(*tree), gives(true));
        symbol->SetElemValue(CPolyValue(Terms));
        EXPECT_EQ(valueOf(*tree), gives(false));
        symbol->SetElemValue(none);
        EXPECT_EQ(valueOf(*tree), gives(none));
        EXPECT_FALSE(tree->IsConst());

        const Node copy(tree->Clone());
        const std::string text = tree->ToString().Bytes();
        tree.reset();

        EXPECT_EQ(copy->ToString().View(), text);
        EXPECT_EQ(text.substr(0, 24), "a = 0 OR a = 1 OR a = 2 ");
        EXPECT_EQ(text.substr(text.size() - 14), " OR a = 199999");
        symbol->SetElemValue(CPolyValue(7));
        EXPECT_EQ(valueOf(*copy), gives(true));
    });
}

TEST_F(DeepTreeTest, AChainOfSumsIsEvaluatedOnASmallStack)
{
    runOnStack(SmallStack, [this] {
        const Node sum = leftChain(EEAdd, [](int) { return constant(1); });
        EXPECT_EQ(valueOf(*sum), gives(Terms));
        EXPECT_TRUE(sum->IsConst());
        const Node difference = leftChain(EESubtract, [](int) { return variable("a"); });
        symbol->SetElemValue(CPolyValue(1));
        EXPECT_EQ(valueOf(*difference), gives(2 - Terms));
    });
}

TEST_F(DeepTreeTest, ChainsOfAnyShapeAreEvaluatedCopiedAndDestroyedOnASmallStack)
{
    int alive = 0;
    runOnStack(SmallStack, [&] {
        const auto leaf = [&] { return foreign(gives(true), nullptr, &alive); };
        CEEExpression* toTheRight = leaf();
        CEEExpression* negated = leaf();
        CEEExpression* zigzag = leaf();
        for (int index = 0; index < Terms; ++index) {
            toTheRight = binary(EEAnd, leaf(), toTheRight);
            negated = negation(negated);
            zigzag = index % 3 == 0 ? binary(EEAnd, zigzag, leaf())
                : index % 3 == 1    ? binary(EEAnd, leaf(), zigzag)
                                    : negation(zigzag);
        }
        for (CEEExpression* tree : { toTheRight, negated, zigzag }) {
            const Node owner(tree);
            const Node copy(tree->Clone());
            EXPECT_GT(copy->ToString().Length(), Terms);
            EXPECT_EQ(valueOf(*copy).value.GetType(), orv::PolyBool);
        }
    });
    EXPECT_EQ(alive, 0);
}

/// Answers with its argument.
class Identity final : public CEESymbol {
public:
    bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) override
    {
        result = arguments[0];
        return argumentCount == 1;
    }
    [[nodiscard]] bool IsFunction() const override { return true; }
};

TEST_F(DeepTreeTest, NestedCallsAreEvaluatedCopiedWrittenAndDestroyedOnASmallStack)
{
    table.AddSymbol("f", new Identity);
    runOnStack(SmallStack, [this] {
        symbol->SetElemValue(CPolyValue(1));
        CEEExpression* calls = variable("a");
        for (int index = 0; index < Terms; ++index)
            calls = call("f", { calls });
        Node tree(calls);
        EXPECT_EQ(valueOf(*tree), gives(1));
        const Node copy(tree->Clone());
        tree.reset();
        EXPECT_EQ(copy->ToString().Length(), 3 * Terms + 1);
        EXPECT_EQ(valueOf(*copy), gives(1));
    });
}

TEST_F(DeepTreeTest, CallsWithOperatorsInsideAreEvaluatedCopiedAndDestroyedOnASmallStack)
{
    table.AddSymbol("f", new Identity);
    runOnStack(SmallStack, [this] {
        symbol->SetElemValue(CPolyValue(1));
        CEEExpression* toTheRight = variable("a");
        CEEExpression* toTheLeft = variable("a");
        CEEExpression* negated = binary(EEEqual, variable("a"), constant(1));
        for (int index = 0; index < Terms; ++index) {
            toTheRight = call("f", { binary(EEAdd, constant(1), toTheRight) });
            toTheLeft = binary(EEAdd, call("f", { toTheLeft }), constant(1));
            negated = negation(call("f", { negated }));
        }
        for (CEEExpression* tree : { toTheRight, toTheLeft }) {
            const Node owner(tree);
            EXPECT_EQ(valueOf(*Node(tree->Clone())), gives(Terms + 1));
        }
        EXPECT_EQ(valueOf(*Node(negated)), gives(true));
    });
}

/// Adds its arguments up; fails without any.
class Sum final : public CEESymbol {
public:
    bool Eval(int argumentCount, CEEResult* arguments, CEEResult& result) override
    {
        int sum = 0;
        for (int index = 0; index < argumentCount; ++index)
            sum += arguments[index].GetElem().GetInt32Value();
        result.SetElem(CPolyValue(sum));
        return argumentCount > 0;
    }
    [[nodiscard]] bool IsFunction() const override { return true; }
};

TEST_F(DeepTreeTest, CallsOfManyArgumentsMayNestInAnyOfThem)
{
    table.AddSymbol("sum", new Sum);
    int alive = 0;
    runOnStack(SmallStack, [&] {
        const auto leaf = [&](int value) { return foreign(gives(value), nullptr, &alive); };
        CEEExpression* tree = leaf(1);
        for (int index = 0; index < Terms; ++index) {
            std::vector<CEEExpression*> arguments(static_cast<std::size_t>(index % 4));
            for (CEEExpression*& argument : arguments)
                argument
                    = index % 5 == 0 ? binary(EEAdd, leaf(0), call("sum", { leaf(1) })) : leaf(1);
            arguments.insert(arguments.begin() + (index % 7) % (index % 4 + 1), tree);
            tree = call("sum", std::move(arguments));
        }
        const Node owner(tree);
        const Node copy(tree->Clone());
        const int expected = 1 + (0 + 1 + 2 + 3) * (Terms / 4);
        EXPECT_EQ(valueOf(*owner), gives(expected));
        EXPECT_EQ(valueOf(*copy), gives(expected));
    });
    EXPECT_EQ(alive, 0);
}

TEST_F(DeepTreeTest, ACallThatFailsFailsWhateverStandsAroundIt)
{
    table.AddSymbol("f", new Identity);
    table.AddSymbol("sum", new Sum);
    symbol->SetElemValue(CPolyValue(1));
    int asked = 0;
    const auto counted = [&] { return foreign(gives(1), &asked); };

    EXPECT_EQ(evaluate(call("f", { call("sum") }), &table), fails);
    EXPECT_EQ(evaluate(call("sum", { call("unknown", { counted() }), counted() }), &table), fails);
    EXPECT_EQ(asked, 0) << "who is not known gets no arguments, and nobody after him";
    EXPECT_EQ(evaluate(call("sum", { counted(), nullptr, counted() }), &table), fails);
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(
        evaluate(call("sum", { counted(), binary(EEDivide, constant(1), constant(0)) }), &table),
        fails);
    EXPECT_EQ(evaluate(call("f", { constant(1) }), nullptr), fails) << "nobody knows any name";
    EXPECT_EQ(
        evaluate(binary(EEAnd, constant(CPolyValue(false)), call("unknown")), &table), gives(false))
        << "the right side is not asked";
}

TEST_F(DeepTreeTest, WhatACallGivesReachesTheNextCallAsItIs)
{
    table.AddSymbol("f", new Identity);
    for (const CPolyValue& value :
        { none, date(86400), list(), CPolyValue("testo"), CPolyValue(2.5), CPolyValue(true) }) {
        symbol->SetElemValue(value);
        const Outcome outcome
            = evaluate(call("f", { call("f", { call("f", { variable("a") }) }) }), &table);
        EXPECT_TRUE(outcome.succeeds);
        EXPECT_EQ(outcome.value.GetType(), value.GetType());
        EXPECT_EQ(outcome.value.GetStringValue(), value.GetStringValue());
    }
    symbol->SetElemValue(CPolyValue("testo"));
    EXPECT_EQ(evaluate(binary(EEEqual, call("f", { call("f", { variable("a") }) }),
                           call("f", { constant(CPolyValue("testo")) })),
                  &table),
        gives(true));
}

} // namespace
