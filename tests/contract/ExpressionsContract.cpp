// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Expression nodes and symbols: one implementation a host library, so not by case.
#include "host/base/Dates.h"
#include "host/expr/Expression.h"
#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

using orv::CPolyValue;
using Node = std::unique_ptr<CEEExpression>;

CEEExpression* constant(const CPolyValue& value)
{
    return new CEEExpressionConst(value);
}

/// `failed`, `empty`, or the value as text.
std::string evaluated(CEEExpression* node, CEESymbolProvider* provider = nullptr)
{
    const Node owner(node);
    CEESymbolTable none;
    CEEResult result;
    if (!owner->Eval(provider ? provider : &none, result))
        return "failed";
    return result.GetElemType() == 0 ? "empty" : result.GetElemString().Bytes();
}

std::string binary(int code, const CPolyValue& left, const CPolyValue& right)
{
    return evaluated(new CEEExpressionBinOp(code, constant(left), constant(right)));
}

const CPolyValue Empty;
const CPolyValue True(true);
const CPolyValue False(false);

TEST(ExpressionsContract, NumbersCompareWithNumbersAndOtherKindsWithTheirOwn)
{
    EXPECT_EQ(binary(EEEqual, CPolyValue(2), CPolyValue(2.0)), "S\xC3\xAC");
    EXPECT_EQ(binary(EELess, CPolyValue(1), CPolyValue(1.5)), "S\xC3\xAC");
    EXPECT_EQ(binary(EEGreaterOrEqual, CPolyValue(1), CPolyValue(2)), "No");
    EXPECT_EQ(binary(EELessOrEqual, CPolyValue("a"), CPolyValue("b")), "S\xC3\xAC");
    EXPECT_EQ(binary(EEEqual, CPolyValue("a"), CPolyValue("A")), "No");
    EXPECT_EQ(binary(EEGreater, True, False), "S\xC3\xAC");
    EXPECT_EQ(binary(EENotEqual, True, True), "No");
    for (const int code : { EEEqual, EENotEqual, EELess }) {
        EXPECT_EQ(binary(code, CPolyValue(1), CPolyValue("1")), "failed");
        EXPECT_EQ(binary(code, True, CPolyValue(1)), "failed");
    }
}

TEST(ExpressionsContract, NoValueMakesComparisonsAndArithmeticEmpty)
{
    for (const int code :
        { EEEqual, EENotEqual, EELess, EEAdd, EESubtract, EEMultiply, EEDivide }) {
        EXPECT_EQ(binary(code, Empty, CPolyValue(1)), "empty");
        EXPECT_EQ(binary(code, CPolyValue(1), Empty), "empty");
        EXPECT_EQ(binary(code, Empty, CPolyValue("x")), "empty") << "before kinds are looked at";
    }
    EXPECT_EQ(binary(EEDivide, Empty, CPolyValue(0)), "empty");
}

TEST(ExpressionsContract, LogicHasThreeValues)
{
    EXPECT_EQ(binary(EEAnd, False, Empty), "No");
    EXPECT_EQ(binary(EEAnd, Empty, False), "No");
    EXPECT_EQ(binary(EEAnd, True, Empty), "empty");
    EXPECT_EQ(binary(EEOr, True, Empty), "S\xC3\xAC");
    EXPECT_EQ(binary(EEOr, Empty, True), "S\xC3\xAC");
    EXPECT_EQ(binary(EEOr, False, Empty), "empty");
    EXPECT_EQ(evaluated(new CEEExpressionUnOp(EENot, constant(Empty))), "empty");
    EXPECT_EQ(evaluated(new CEEExpressionUnOp(EENot, constant(True))), "No");
    EXPECT_FALSE(CEEResult().GetElemBool());
}

TEST(ExpressionsContract, ADecidedLeftSideEndsAndAFailingSideFails)
{
    const auto unknown = [] { return new CEEExpressionVar("ignoto"); };

    EXPECT_EQ(evaluated(new CEEExpressionBinOp(EEAnd, constant(False), unknown())), "No");
    EXPECT_EQ(evaluated(new CEEExpressionBinOp(EEOr, constant(True), unknown())), "S\xC3\xAC");
    EXPECT_EQ(evaluated(new CEEExpressionBinOp(EEAnd, unknown(), constant(False))), "failed");
    EXPECT_EQ(evaluated(new CEEExpressionBinOp(EEOr, constant(False), unknown())), "failed");
    EXPECT_EQ(evaluated(unknown()), "failed");
}

TEST(ExpressionsContract, ArithmeticKeepsWholeNumbersAndFailsOnOthers)
{
    EXPECT_EQ(binary(EEAdd, CPolyValue(2), CPolyValue(3)), "5");
    EXPECT_EQ(binary(EEAdd, CPolyValue(2147483647), CPolyValue(1)), "2147483648");
    EXPECT_EQ(binary(EEMultiply, CPolyValue(1.5), CPolyValue(2)), "3");
    EXPECT_EQ(binary(EEDivide, CPolyValue(3), CPolyValue(2)), "1.5");
    EXPECT_EQ(binary(EEDivide, CPolyValue(3), CPolyValue(0)), "failed");
    EXPECT_EQ(binary(EEAdd, CPolyValue("a"), CPolyValue("b")), "failed");
    EXPECT_EQ(binary(EESubtract, True, CPolyValue(1)), "failed");
    EXPECT_EQ(binary(EEMultiply, CPolyValue(1e300), CPolyValue(1e300)), "failed");
}

TEST(ExpressionsContract, SymbolsAreFoundExactlyFirstAndFunctionsApart)
{
    CEESymbolTable table;
    auto* year = new CEESymbolConstVar;
    year->SetElemValue(CPolyValue(1999));
    table.AddSymbol("Year", year);
    auto* lower = new CEESymbolConstVar;
    lower->SetElemValue(CPolyValue("lower"));
    table.AddSymbol("campo", lower);
    auto* upper = new CEESymbolConstVar;
    upper->SetElemValue(CPolyValue("upper"));
    table.AddSymbol("CAMPO", upper);
    auto* again = new CEESymbolConstVar;
    again->SetElemValue(CPolyValue("second"));
    table.AddSymbol("campo", again);
    table.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
    CPolyValue date;
    date.SetDateValue(orv::LocalMidnightOfDay(0));

    EXPECT_EQ(evaluated(new CEEExpressionVar("Year"), &table), "1999");
    EXPECT_EQ(evaluated(new CEEExpressionFun("year", { constant(date) }), &table), "1970");
    EXPECT_EQ(evaluated(new CEEExpressionVar("campo"), &table), "lower");
    EXPECT_EQ(evaluated(new CEEExpressionVar("CAMPO"), &table), "upper");
    EXPECT_EQ(evaluated(new CEEExpressionVar("Campo"), &table), "lower");
    orv::String unknown("ignoto");
    EXPECT_EQ(table.GetSymbol(unknown), nullptr);
}

struct Functions {
    Functions()
    {
        table.AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));
        table.AddSymbol("Now", new CEESymbolFunVarious(EEFunctionNow));
        table.AddSymbol("Day", new CEESymbolFunDate(EEFunctionDay));
        table.AddSymbol("Month", new CEESymbolFunDate(EEFunctionMonth));
    }
    std::string call(const char* name, const std::vector<CPolyValue>& arguments)
    {
        std::vector<CEEExpression*> nodes;
        for (const auto& value : arguments)
            nodes.push_back(constant(value));
        return evaluated(new CEEExpressionFun(name, nodes), &table);
    }
    CEESymbolTable table;
};

TEST(ExpressionsContract, DateTakesDayMonthYearOfRealDays)
{
    Functions functions;

    EXPECT_EQ(
        functions.call("Date", { CPolyValue(5), CPolyValue(3), CPolyValue(2016) }), "05/03/2016");
    EXPECT_EQ(
        functions.call("Date", { CPolyValue(5.0), CPolyValue(3), CPolyValue(2016) }), "05/03/2016");
    EXPECT_EQ(
        functions.call("Date", { CPolyValue(31), CPolyValue(2), CPolyValue(2016) }), "failed");
    EXPECT_EQ(
        functions.call("Date", { CPolyValue(5.5), CPolyValue(3), CPolyValue(2016) }), "failed");
    EXPECT_EQ(functions.call("Date", { CPolyValue(5), CPolyValue(3) }), "failed");
    EXPECT_EQ(functions.call("Date", { CPolyValue(5), Empty, CPolyValue(2016) }), "empty");
}

TEST(ExpressionsContract, PartsOfDatesAndNow)
{
    Functions functions;
    CPolyValue date;
    date.SetDateValue(orv::LocalMidnightOfDay(59));

    EXPECT_EQ(functions.call("Day", { date }), "1");
    EXPECT_EQ(functions.call("Month", { date }), "3");
    EXPECT_EQ(functions.call("Month", { Empty }), "empty");
    EXPECT_EQ(functions.call("Month", { CPolyValue("x") }), "failed");
    EXPECT_EQ(functions.call("Month", {}), "failed");
    EXPECT_NE(functions.call("Now", {}), "failed");
    EXPECT_EQ(functions.call("Now", { CPolyValue(1) }), "failed");
    EXPECT_NE(evaluated(new CEEExpressionVar("Now"), &functions.table), "failed");
}

TEST(ExpressionsContract, ClonesAreTreesOfTheirOwn)
{
    Node original(new CEEExpressionBinOp(EEAdd, constant(CPolyValue(1)),
        new CEEExpressionBinOp(EEMultiply, constant(CPolyValue(2)), constant(CPolyValue(3)))));
    CEEExpression* clone = original->Clone();
    original.reset();

    EXPECT_EQ(evaluated(clone), "7");
}

TEST(ExpressionsContract, LongChainsNeedNoDeepStack)
{
    constexpr int Terms = 200000;
    CEEExpression* chain = constant(False);
    for (int i = 0; i < Terms; ++i)
        chain = new CEEExpressionBinOp(EEOr, chain, constant(i + 1 == Terms ? True : False));
    const Node owner(chain);
    const Node clone(chain->Clone());
    CEESymbolTable none;
    CEEResult result;

    ASSERT_TRUE(clone->Eval(&none, result));
    EXPECT_TRUE(result.GetElemBool());
}

} // namespace
