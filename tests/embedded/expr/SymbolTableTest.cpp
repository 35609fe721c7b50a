// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include <gtest/gtest.h>

namespace {

using orv::String;

/// A symbol that says when it is gone.
class CountedSymbol final : public CEESymbol {
public:
    CountedSymbol(int& alive, bool isFunction)
        : m_alive(alive)
        , m_isFunction(isFunction)
    {
        ++m_alive;
    }
    ~CountedSymbol() override { --m_alive; }
    bool Eval(int, CEEResult*, CEEResult&) override { return true; }
    [[nodiscard]] bool IsFunction() const override { return m_isFunction; }

private:
    int& m_alive;
    bool m_isFunction;
};

class SymbolTableTest : public testing::Test {
protected:
    CEESymbol* add(const char* name, bool isFunction = false)
    {
        auto* symbol = new CountedSymbol(alive, isFunction);
        table->AddSymbol(name, symbol);
        return symbol;
    }
    CEESymbol* found(const char* text)
    {
        String name(text);
        CEESymbol* symbol = table->GetSymbol(name);
        EXPECT_EQ(table->Find(text), symbol);
        EXPECT_EQ(name.View(), text);
        return symbol;
    }
    CEESymbol* foundFunction(const char* text)
    {
        String name(text);
        return table->GetFunction(name);
    }
    int alive = 0;
    std::unique_ptr<CEESymbolTable> table = std::make_unique<CEESymbolTable>();
};

TEST_F(SymbolTableTest, AnUnknownNameGivesNull)
{
    add("Nome");

    EXPECT_EQ(found("Altro"), nullptr);
    EXPECT_EQ(found(""), nullptr);
    EXPECT_EQ(found("Nome "), nullptr);
    EXPECT_EQ(foundFunction("Nome"), nullptr);
}

TEST_F(SymbolTableTest, TheExactNameComesBeforeTheFoldedOne)
{
    CEESymbol* lower = add("nome");
    CEESymbol* mixed = add("Nome");

    EXPECT_EQ(found("nome"), lower);
    EXPECT_EQ(found("Nome"), mixed);
    EXPECT_EQ(found("NOME"), lower);
}

TEST_F(SymbolTableTest, OnlyAsciiLettersAreFolded)
{
    CEESymbol* symbol = add("Città");

    EXPECT_EQ(found("CITTà"), symbol);
    EXPECT_EQ(found("CITTÀ"), nullptr);
}

TEST_F(SymbolTableTest, AFieldDoesNotHideAFunctionFromCalls)
{
    CEESymbol* field = add("year");
    CEESymbol* function = add("Year", true);
    CEESymbol* now = add("Now", true);

    EXPECT_EQ(found("Year"), field);
    EXPECT_EQ(found("year"), field);
    EXPECT_EQ(foundFunction("year"), function);
    EXPECT_EQ(foundFunction("Year"), function);
    EXPECT_EQ(found("NOW"), now);
    EXPECT_EQ(foundFunction("NOW"), now);
}

TEST_F(SymbolTableTest, ASecondSymbolOfANameIsKeptAliveButNotFound)
{
    CEESymbol* first = add("Nome");
    CEESymbol* second = add("Nome");

    EXPECT_NE(first, second);
    EXPECT_EQ(found("Nome"), first);
    EXPECT_EQ(alive, 2);
}

TEST_F(SymbolTableTest, TheTableDeletesItsSymbols)
{
    add("a");
    add("a");
    add("b", true);
    CEESymbol* alias = add("c");
    table->AddSymbol("d", alias);
    table->AddSymbol("nothing", nullptr);
    EXPECT_EQ(alive, 4);
    EXPECT_EQ(found("d"), alias);
    EXPECT_EQ(found("nothing"), nullptr);

    table.reset();

    EXPECT_EQ(alive, 0);
}

TEST(SymbolConstVarTest, TheValueSetIsTheValueGiven)
{
    CEESymbolConstVar symbol;
    CEEResult result(true);

    EXPECT_TRUE(symbol.Eval(0, nullptr, result));
    EXPECT_EQ(result.GetElemType(), 0);
    symbol.SetElemValue(orv::CPolyValue("x"));
    EXPECT_TRUE(symbol.Eval(0, nullptr, result));
    EXPECT_EQ(result.GetElem(), orv::CPolyValue("x"));
    EXPECT_EQ(symbol.GetElemValue(), orv::CPolyValue("x"));
    EXPECT_FALSE(symbol.IsFunction());
}

} // namespace
