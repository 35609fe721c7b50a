// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include <gtest/gtest.h>

#include <functional>

#include <pthread.h>

namespace {

using namespace trees;
using orv::CPolyValue;

constexpr int Terms = 200000;

/// Runs on a stack of its own size, since a host may call from any thread.
void runOnStack(std::size_t sizeBytes, const std::function<void()>& act)
{
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, sizeBytes), 0);
    pthread_t thread {};
    auto run = [](void* given) -> void* {
        (*static_cast<const std::function<void()>*>(given))();
        return nullptr;
    };
    auto* argument = const_cast<std::function<void()>*>(&act);
    ASSERT_EQ(pthread_create(&thread, &attributes, run, argument), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}

constexpr std::size_t SmallStack = 256 * 1024;
constexpr std::size_t WorkerStack = 4 * 1024 * 1024; // what worker threads commonly get

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

TEST_F(DeepTreeTest, CallsNestedAsDeepAsTheParserAllowsAreEvaluatedOnAWorkersStack)
{
    table.AddSymbol("f", new Identity);
    // Its stack of 10,000 places takes two for each f(.
    runOnStack(WorkerStack, [this] {
        symbol->SetElemValue(CPolyValue(1));
        CEEExpression* calls = variable("a");
        for (int index = 0; index < 5000; ++index)
            calls = call("f", { calls });
        EXPECT_EQ(valueOf(*Node(calls)), gives(1));
    });
}

} // namespace
