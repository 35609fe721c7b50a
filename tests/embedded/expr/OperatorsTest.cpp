// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "tests/embedded/expr/Trees.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace {

using namespace trees;
using orv::CPolyValue;

Outcome apply(const CPolyValue& left, int code, const CPolyValue& right)
{
    return evaluate(binary(code, constant(left), constant(right)));
}

const CPolyValue Text("b");
const CPolyValue True(true);
const CPolyValue False(false);

TEST(OperatorsTest, ValuesOfOneKindAreComparedByOrder)
{
    struct Pair {
        CPolyValue smaller;
        CPolyValue larger;
    };
    const Pair pairs[] = { { CPolyValue(1), CPolyValue(2) }, { CPolyValue(-2), CPolyValue(1) },
        { CPolyValue(INT_MIN), CPolyValue(INT_MAX) }, { CPolyValue(1.5), CPolyValue(1.75) },
        { CPolyValue(1), CPolyValue(1.5) }, { CPolyValue(0.5), CPolyValue(1) },
        { CPolyValue("A"), CPolyValue("a") }, { CPolyValue("a"), CPolyValue("ab") },
        { CPolyValue(""), CPolyValue("a") }, { CPolyValue("z"), CPolyValue("\xC3\xA0") },
        { CPolyValue("9"), CPolyValue("a") }, { CPolyValue("10"), CPolyValue("9") },
        { False, True }, { date(-5), date(5) }, { date(5000000000), date(5000000001) } };
    for (const auto& [smaller, larger] : pairs) {
        SCOPED_TRACE(smaller.GetStringValue().Bytes() + " < " + larger.GetStringValue().Bytes());
        EXPECT_EQ(apply(smaller, EELess, larger), gives(true));
        EXPECT_EQ(apply(larger, EELess, smaller), gives(false));
        EXPECT_EQ(apply(smaller, EELess, smaller), gives(false));
        EXPECT_EQ(apply(smaller, EELessOrEqual, larger), gives(true));
        EXPECT_EQ(apply(larger, EELessOrEqual, smaller), gives(false));
        EXPECT_EQ(apply(larger, EELessOrEqual, larger), gives(true));
        EXPECT_EQ(apply(larger, EEGreater, smaller), gives(true));
        EXPECT_EQ(apply(smaller, EEGreater, larger), gives(false));
        EXPECT_EQ(apply(larger, EEGreater, larger), gives(false));
        EXPECT_EQ(apply(larger, EEGreaterOrEqual, smaller), gives(true));
        EXPECT_EQ(apply(smaller, EEGreaterOrEqual, larger), gives(false));
        EXPECT_EQ(apply(larger, EEGreaterOrEqual, larger), gives(true));
        EXPECT_EQ(apply(smaller, EEEqual, larger), gives(false));
        EXPECT_EQ(apply(smaller, EEEqual, smaller), gives(true));
        EXPECT_EQ(apply(smaller, EENotEqual, larger), gives(true));
        EXPECT_EQ(apply(smaller, EENotEqual, smaller), gives(false));
    }
}

TEST(OperatorsTest, IntegersAndDoublesAreComparedAsNumbers)
{
    EXPECT_EQ(apply(CPolyValue(2), EEEqual, CPolyValue(2.0)), gives(true));
    EXPECT_EQ(apply(CPolyValue(-0.0), EEEqual, CPolyValue(0)), gives(true));
    EXPECT_EQ(apply(CPolyValue(INT_MAX), EELess, CPolyValue(3e9)), gives(true));
}

TEST(OperatorsTest, ANumberThatIsNoneIsEqualToNothing)
{
    const CPolyValue notANumber(std::nan(""));
    EXPECT_EQ(apply(notANumber, EEEqual, notANumber), gives(false));
    EXPECT_EQ(apply(notANumber, EENotEqual, notANumber), gives(true));
    EXPECT_EQ(apply(notANumber, EELessOrEqual, CPolyValue(1)), gives(false));
    EXPECT_EQ(apply(CPolyValue(1), EEGreaterOrEqual, notANumber), gives(false));
}

TEST(OperatorsTest, TextsAreComparedOverNulBytes)
{
    EXPECT_EQ(apply(CPolyValue(orv::String("a\0b", 0, 3)), EEEqual, CPolyValue("a")), gives(false));
    EXPECT_EQ(
        apply(CPolyValue(orv::String("a\0b", 0, 3)), EELess, CPolyValue(orv::String("a\0c", 0, 3))),
        gives(true));
}

TEST(OperatorsTest, DifferentKindsCannotBeCompared)
{
    const CPolyValue kinds[] = { CPolyValue(1), CPolyValue("1"), True, date(1) };
    for (const auto& left : kinds)
        for (const auto& right : kinds)
            for (int code = EEEqual; code <= EELessOrEqual; ++code)
                if (left.GetType() != right.GetType()) {
                    EXPECT_EQ(apply(left, code, right), fails)
                        << left.GetType() << ' ' << code << ' ' << right.GetType();
                }
    for (int code = EEEqual; code <= EELessOrEqual; ++code) {
        EXPECT_EQ(apply(list(), code, list()), fails);
        EXPECT_EQ(apply(CPolyValue(1.0), code, CPolyValue("1")), fails);
    }
}

TEST(OperatorsTest, IntegersGiveIntegersAndWiden)
{
    const struct {
        int left;
        int code;
        int right;
        Outcome outcome;
    } cases[] = { { 2, EEAdd, 3, gives(5) }, { 2, EESubtract, 3, gives(-1) },
        { 2, EEMultiply, -3, gives(-6) }, { INT_MAX, EEAdd, 1, gives(2147483648.0) },
        { INT_MAX, EEAdd, 0, gives(INT_MAX) }, { INT_MIN, EESubtract, 1, gives(-2147483649.0) },
        { INT_MIN, EEAdd, 0, gives(INT_MIN) }, { INT_MIN, EEMultiply, -1, gives(2147483648.0) },
        { 65536, EEMultiply, 65536, gives(4294967296.0) },
        { INT_MAX, EEMultiply, INT_MAX, gives(4611686014132420609.0) },
        { 1, EEDivide, 2, gives(0.5) }, { 4, EEDivide, 2, gives(2.0) },
        { -7, EEDivide, 2, gives(-3.5) }, { INT_MIN, EEDivide, -1, gives(2147483648.0) } };
    for (const auto& [left, code, right, outcome] : cases)
        EXPECT_EQ(apply(CPolyValue(left), code, CPolyValue(right)), outcome)
            << left << ' ' << code << ' ' << right;
}

TEST(OperatorsTest, DoublesGiveDoubles)
{
    EXPECT_EQ(apply(CPolyValue(1.5), EEAdd, CPolyValue(2)), gives(3.5));
    EXPECT_EQ(apply(CPolyValue(2), EESubtract, CPolyValue(0.5)), gives(1.5));
    EXPECT_EQ(apply(CPolyValue(2.0), EEMultiply, CPolyValue(3)), gives(6.0));
    EXPECT_EQ(apply(CPolyValue(3.0), EEDivide, CPolyValue(2.0)), gives(1.5));
}

TEST(OperatorsTest, DivisionsByZeroFail)
{
    for (const auto& zero : { CPolyValue(0), CPolyValue(0.0), CPolyValue(-0.0) })
        for (const auto& left : { CPolyValue(1), CPolyValue(0), CPolyValue(1.5) })
            EXPECT_EQ(apply(left, EEDivide, zero), fails);
}

TEST(OperatorsTest, InfiniteResultsAndThoseThatAreNoNumbersFail)
{
    const CPolyValue largest(std::numeric_limits<double>::max());
    const CPolyValue infinite(std::numeric_limits<double>::infinity());

    EXPECT_EQ(apply(largest, EEAdd, largest), fails);
    EXPECT_EQ(apply(largest, EEMultiply, CPolyValue(2)), fails);
    EXPECT_EQ(apply(largest, EEDivide, CPolyValue(0.5)), fails);
    EXPECT_EQ(apply(infinite, EESubtract, infinite), fails);
    EXPECT_EQ(apply(infinite, EEMultiply, CPolyValue(0)), fails);
    EXPECT_EQ(apply(CPolyValue(std::nan("")), EEAdd, CPolyValue(1)), fails);
}

TEST(OperatorsTest, OnlyNumbersAreCalculatedWith)
{
    for (const auto& other : { Text, True, date(1), list() })
        for (int code = EESubtract; code <= EEMultiply; ++code) {
            EXPECT_EQ(apply(CPolyValue(1), code, other), fails) << other.GetType() << ' ' << code;
            EXPECT_EQ(apply(other, code, CPolyValue(1)), fails) << other.GetType() << ' ' << code;
            EXPECT_EQ(apply(other, code, other), fails) << other.GetType() << ' ' << code;
        }
}

TEST(OperatorsTest, NoValueOnEitherSideGivesNoValueWhateverTheOtherIs)
{
    const int codes[] = { EESubtract, EEAdd, EEDivide, EEMultiply, EEEqual, EENotEqual, EEGreater,
        EELess, EEGreaterOrEqual, EELessOrEqual };
    for (const int code : codes)
        for (const auto& other :
            { none, CPolyValue(0), CPolyValue(1.5), Text, True, date(1), list() }) {
            EXPECT_EQ(apply(none, code, other), gives(none)) << code << ' ' << other.GetType();
            EXPECT_EQ(apply(other, code, none), gives(none)) << code << ' ' << other.GetType();
        }
}

TEST(OperatorsTest, AndOrAndNotAreThreeValued)
{
    const struct {
        CPolyValue left;
        CPolyValue right;
        CPolyValue both;
        CPolyValue either;
    } cases[] = { { True, True, True, True }, { True, False, False, True },
        { False, True, False, True }, { False, False, False, False }, { none, True, none, True },
        { True, none, none, True }, { none, False, False, none }, { False, none, False, none },
        { none, none, none, none } };
    for (const auto& [left, right, both, either] : cases) {
        SCOPED_TRACE(left.GetStringValue().Bytes() + ',' + right.GetStringValue().Bytes());
        EXPECT_EQ(apply(left, EEAnd, right), gives(both));
        EXPECT_EQ(apply(left, EEOr, right), gives(either));
    }
    EXPECT_EQ(evaluate(negation(constant(True))), gives(false));
    EXPECT_EQ(evaluate(negation(constant(False))), gives(true));
    EXPECT_EQ(evaluate(negation(constant(none))), gives(none));
}

TEST(OperatorsTest, OnlyTruthsAreCombined)
{
    for (const auto& other :
        { CPolyValue(1), CPolyValue(0), CPolyValue(1.0), Text, date(1), list() }) {
        SCOPED_TRACE(other.GetType());
        EXPECT_EQ(evaluate(negation(constant(other))), fails);
        for (const int code : { int(EEAnd), int(EEOr) }) {
            const bool decisive = code == EEOr;
            EXPECT_EQ(apply(other, code, True), fails);
            EXPECT_EQ(apply(other, code, False), fails);
            EXPECT_EQ(apply(CPolyValue(!decisive), code, other), fails);
            EXPECT_EQ(apply(none, code, other), fails);
            EXPECT_EQ(apply(CPolyValue(decisive), code, other), gives(decisive));
        }
    }
}

TEST(OperatorsTest, OtherCodesAreNoOperators)
{
    for (const int code : { -1, 0, 5, 6, 9, 16, 1000, INT_MAX, INT_MIN }) {
        EXPECT_EQ(apply(CPolyValue(1), code, CPolyValue(1)), fails) << code;
        EXPECT_EQ(apply(none, code, none), fails) << code;
    }
    for (const int code : { 0, 1, 3, 7, -1 })
        EXPECT_EQ(evaluate(new CEEExpressionUnOp(code, constant(True))), fails) << code;
}

} // namespace
