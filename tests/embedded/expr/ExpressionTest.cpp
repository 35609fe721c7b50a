// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include "tests/support/TimeZoneScope.h"

#include <gtest/gtest.h>

namespace {

using namespace trees;
using orv::CPolyValue;

std::string textOf(CEEExpression* tree)
{
    return Node(tree)->ToString().Bytes();
}

CEEExpression* equality(const char* name, int value)
{
    return binary(EEEqual, variable(name), constant(value));
}

TEST(ExpressionTest, EachNodeTellsItsType)
{
    EXPECT_EQ(Node(constant(1))->GetType(), EETypeConst);
    EXPECT_EQ(Node(variable("a"))->GetType(), EETypeVar);
    EXPECT_EQ(Node(negation(constant(1)))->GetType(), EETypeUnOp);
    EXPECT_EQ(Node(equality("a", 1))->GetType(), EETypeBinOp);
    EXPECT_EQ(Node(call("Now"))->GetType(), EETypeFun);
}

TEST(ExpressionTest, OnlyTreesOfLiteralsAreConstant)
{
    const auto isConst = [](CEEExpression* tree) { return Node(tree)->IsConst(); };

    EXPECT_TRUE(isConst(constant(1)));
    EXPECT_FALSE(isConst(variable("a")));
    EXPECT_TRUE(isConst(negation(constant(CPolyValue(true)))));
    EXPECT_FALSE(isConst(negation(variable("a"))));
    EXPECT_TRUE(isConst(binary(EEAdd, binary(EEAdd, constant(1), constant(2)), constant(3))));
    EXPECT_FALSE(isConst(binary(EEAdd, binary(EEAdd, variable("a"), constant(2)), constant(3))));
    EXPECT_FALSE(isConst(binary(EEAdd, constant(1), variable("a"))));
    EXPECT_FALSE(isConst(call("Now")));
    EXPECT_FALSE(isConst(binary(EEAdd, nullptr, constant(1))));
    EXPECT_FALSE(isConst(binary(EEAdd, constant(1), nullptr)));
    EXPECT_FALSE(isConst(negation(nullptr)));
}

/// Writes which operation was called.
class ConstRecorder : public CEEExpressionConstVisitor {
public:
    virtual ~ConstRecorder() = default;
    void Visit(const CEEExpression&) override { text += "any "; }
    std::string text;
};
class Recorder : public CEEExpressionVisitor {
public:
    virtual ~Recorder() = default;
    void Visit(const CEEExpression&) override { text += "any "; }
    std::string text;
};
class NamingConstRecorder final : public ConstRecorder {
public:
    void VisitConst(const CEEExpressionConst&) override { text += "const "; }
    void VisitVar(const CEEExpressionVar&) override { text += "var "; }
    void VisitUnOp(const CEEExpressionUnOp&) override { text += "unary "; }
    void VisitBinOp(const CEEExpressionBinOp&) override { text += "binary "; }
    void VisitFun(const CEEExpressionFun&) override { text += "call "; }
};
class NamingRecorder final : public Recorder {
public:
    void VisitConst(CEEExpressionConst&) override { text += "const "; }
    void VisitVar(CEEExpressionVar&) override { text += "var "; }
    void VisitUnOp(CEEExpressionUnOp&) override { text += "unary "; }
    void VisitBinOp(CEEExpressionBinOp&) override { text += "binary "; }
    void VisitFun(CEEExpressionFun&) override { text += "call "; }
};

template <typename Visitor> std::string visits()
{
    Visitor visitor;
    for (CEEExpression* tree :
        { constant(1), variable("a"), negation(constant(1)), equality("a", 1), call("Now") }) {
        const Node node(tree);
        if constexpr (std::is_base_of_v<CEEExpressionConstVisitor, Visitor>)
            std::as_const(*node).Accept(visitor);
        else
            node->Accept(visitor);
    }
    return visitor.text;
}

TEST(ExpressionTest, VisitorsMeetEachNodeByItsKindAndElseByTheFirstOperation)
{
    EXPECT_EQ(visits<NamingConstRecorder>(), "const var unary binary call ");
    EXPECT_EQ(visits<NamingRecorder>(), "const var unary binary call ");
    EXPECT_EQ(visits<ConstRecorder>(), "any any any any any ");
    EXPECT_EQ(visits<Recorder>(), "any any any any any ");
}

TEST(ExpressionTest, NodesOwnTheirChildrenAndCopiesAreTheirOwn)
{
    int alive = 0;
    const auto leaf = [&] { return foreign(gives(true), nullptr, &alive); };
    // Every shape of two and three levels, so that each way of taking a tree apart is met.
    const auto shapes = [&](int index) -> CEEExpression* {
        switch (index) {
        case 0:
            return binary(EEAnd, leaf(), leaf());
        case 1:
            return binary(EEAnd, binary(EEOr, leaf(), leaf()), binary(EEOr, leaf(), leaf()));
        case 2:
            return negation(negation(binary(EEAnd, negation(leaf()), negation(leaf()))));
        case 3:
            return binary(EEAnd, negation(binary(EEOr, leaf(), leaf())),
                negation(binary(EEOr, leaf(), negation(leaf()))));
        case 4:
            return call("f", { leaf(), binary(EEAnd, leaf(), call("g", { leaf() })) });
        case 5:
            return binary(EEAnd, call("f", { leaf() }), call("g", { leaf(), nullptr }));
        case 6:
            return binary(EEAnd, nullptr, negation(nullptr));
        default:
            return binary(EEAnd, binary(EEOr, nullptr, leaf()), binary(EEOr, leaf(), nullptr));
        }
    };
    for (int index = 0; index < 8; ++index) {
        Node tree(shapes(index));
        const int inOne = alive;
        const Node copy(tree->Clone());
        EXPECT_EQ(alive, 2 * inOne) << index;
        EXPECT_EQ(copy->ToString(), tree->ToString()) << index;
        tree.reset();
        EXPECT_EQ(alive, inOne) << index;
    }
    EXPECT_EQ(alive, 0);
}

TEST(ExpressionTest, LeavesAreWrittenAsTheLanguageReadsThem)
{
    const support::TimeZoneScope rome("Europe/Rome");

    EXPECT_EQ(textOf(constant(-5)), "-5");
    EXPECT_EQ(textOf(constant(CPolyValue(2.5))), "2.5");
    EXPECT_EQ(textOf(constant(CPolyValue(2.0))), "2.0");
    EXPECT_EQ(textOf(constant(CPolyValue(1e20))), "1.0e+20");
    EXPECT_EQ(textOf(constant(CPolyValue("Via Roma"))), "'Via Roma'");
    EXPECT_EQ(textOf(constant(CPolyValue("l'Aquila"))), "'l''Aquila'");
    EXPECT_EQ(textOf(constant(CPolyValue(true))), "TRUE");
    EXPECT_EQ(textOf(constant(CPolyValue(false))), "FALSE");
    EXPECT_EQ(textOf(constant(date(1457132400))), "Date(5,3,2016)");
    EXPECT_EQ(textOf(constant(none)), "NULL");
    EXPECT_EQ(textOf(call("Now")), "Now()");
    EXPECT_EQ(textOf(call("Date", { constant(5), constant(3), constant(2016) })), "Date(5,3,2016)");
}

TEST(ExpressionTest, AVariableIsItsNameAndGetsSquareBracketsInsideATree)
{
    EXPECT_EQ(textOf(variable("Data rilievo")), "Data rilievo");
    const struct {
        const char* name;
        const char* text;
    } cases[] = { { "Nome", "Nome = 1" }, { "Data rilievo", "[Data rilievo] = 1" },
        { "And", "[And] = 1" }, { "in", "[in] = 1" }, { "12abc", "12abc = 1" },
        { "12", "[12] = 1" }, { "", "[] = 1" }, { "città", "città = 1" }, { "a-b", "[a-b] = 1" },
        { "5%", "5% = 1" } };
    for (const auto& [name, text] : cases)
        EXPECT_EQ(textOf(equality(name, 1)), text);
}

TEST(ExpressionTest, BracketsAreWrittenWhereTheTreeNeedsThem)
{
    const auto a = [] { return equality("a", 1); };
    const auto b = [] { return equality("b", 2); };
    const auto c = [] { return equality("c", 3); };

    EXPECT_EQ(textOf(binary(EEOr, a(), binary(EEAnd, b(), c()))), "a = 1 OR b = 2 AND c = 3");
    EXPECT_EQ(textOf(binary(EEAnd, binary(EEOr, a(), b()), c())), "(a = 1 OR b = 2) AND c = 3");
    EXPECT_EQ(textOf(binary(EEAnd, a(), binary(EEOr, b(), c()))), "a = 1 AND (b = 2 OR c = 3)");
    EXPECT_EQ(textOf(binary(EEOr, binary(EEOr, a(), b()), c())), "a = 1 OR b = 2 OR c = 3");
    EXPECT_EQ(textOf(binary(EEOr, a(), binary(EEOr, b(), c()))), "a = 1 OR (b = 2 OR c = 3)");
    EXPECT_EQ(textOf(negation(a())), "NOT a = 1");
    EXPECT_EQ(textOf(negation(negation(a()))), "NOT (NOT a = 1)");
    EXPECT_EQ(textOf(negation(binary(EEAnd, a(), b()))), "NOT (a = 1 AND b = 2)");
    EXPECT_EQ(textOf(binary(EEAnd, negation(a()), b())), "NOT a = 1 AND b = 2");
}

TEST(ExpressionTest, BracketsOfArithmetic)
{
    const auto x = [] { return variable("x"); };

    EXPECT_EQ(textOf(binary(EEAdd, binary(EEMultiply, x(), x()), x())), "x * x + x");
    EXPECT_EQ(textOf(binary(EEMultiply, binary(EEAdd, x(), x()), x())), "(x + x) * x");
    EXPECT_EQ(textOf(binary(EESubtract, x(), binary(EESubtract, x(), x()))), "x - (x - x)");
    EXPECT_EQ(textOf(binary(EESubtract, binary(EESubtract, x(), x()), x())), "x - x - x");
    EXPECT_EQ(textOf(binary(EEDivide, x(), binary(EEMultiply, x(), x()))), "x / (x * x)");
    EXPECT_EQ(textOf(binary(EESubtract, x(), constant(-1))), "x - -1");
    EXPECT_EQ(textOf(binary(EEGreaterOrEqual, binary(EEAdd, x(), x()), x())), "x + x >= x");
    EXPECT_EQ(textOf(call("Year", { binary(EEAdd, x(), x()) })), "Year(x + x)");
}

TEST(ExpressionTest, AllOperatorsHaveTheirSign)
{
    const struct {
        int code;
        const char* text;
    } cases[] = { { 1, "x - 1" }, { 2, "x + 1" }, { 3, "x / 1" }, { 4, "x * 1" }, { 7, "x AND 1" },
        { 8, "x OR 1" }, { 10, "x = 1" }, { 11, "x <> 1" }, { 12, "x > 1" }, { 13, "x < 1" },
        { 14, "x >= 1" }, { 15, "x <= 1" } };
    for (const auto& [code, text] : cases)
        EXPECT_EQ(textOf(binary(code, variable("x"), constant(1))), text);
}

TEST(ExpressionTest, NodesOfOthersWriteThemselves)
{
    EXPECT_EQ(textOf(binary(EEAnd, foreign(fails), equality("a", 1))), "foreign AND a = 1");
}

} // namespace
