// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/nodes/ExpressionFieldIsNull.h"

#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

std::string evaluated(CEEExpression& node, const orv::CPolyValue& value)
{
    CEESymbolTable table;
    auto* symbol = new CEESymbolConstVar();
    symbol->SetElemValue(value);
    table.AddSymbol("Campo", symbol);
    CEEResult result;
    if (!node.Eval(&table, result))
        return "fails";
    if (result.GetElemType() != orv::PolyBool)
        return "not a truth";
    return result.GetElemBool() ? "true" : "false";
}

TEST(ExpressionFieldIsNullTest, AnEmptyFieldIsNull)
{
    CExpressionFieldIsNull isNull("Campo", true);
    CExpressionFieldIsNull isNotNull("Campo", false);

    EXPECT_EQ(evaluated(isNull, orv::CPolyValue()), "true");
    EXPECT_EQ(evaluated(isNotNull, orv::CPolyValue()), "false");
}

TEST(ExpressionFieldIsNullTest, AnyValueIsNotNull)
{
    CExpressionFieldIsNull isNull("Campo", true);
    CExpressionFieldIsNull isNotNull("Campo", false);

    for (const orv::CPolyValue& value :
        { orv::CPolyValue(0), orv::CPolyValue(false), orv::CPolyValue(""), orv::CPolyValue(0.0) }) {
        EXPECT_EQ(evaluated(isNull, value), "false");
        EXPECT_EQ(evaluated(isNotNull, value), "true");
    }
}

TEST(ExpressionFieldIsNullTest, AnUnknownFieldCannotBeComputed)
{
    CExpressionFieldIsNull isNull("Altro", true);

    EXPECT_EQ(evaluated(isNull, orv::CPolyValue()), "fails");
}

TEST(ExpressionFieldIsNullTest, ItPrintsAsItsField)
{
    CExpressionFieldIsNull isNull("Campo", true);

    EXPECT_EQ(isNull.ToString(), "Campo");
    EXPECT_EQ(isNull.GetType(), EETypeVar);
    EXPECT_FALSE(isNull.IsConst());
}

TEST(ExpressionFieldIsNullTest, ACloneTestsTheSame)
{
    for (const bool wanted : { true, false }) {
        CExpressionFieldIsNull original("Campo", wanted);
        const std::unique_ptr<CEEExpression> copy(original.Clone());
        const auto* other = dynamic_cast<CExpressionFieldIsNull*>(copy.get());
        ASSERT_NE(other, nullptr);
        EXPECT_EQ(other->IsNull(), wanted);
        EXPECT_EQ(evaluated(*copy, orv::CPolyValue()), wanted ? "true" : "false");
    }
}

} // namespace
