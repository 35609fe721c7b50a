// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/support/TreeText.h"

#include "host/base/Numbers.h"
#include "query/nodes/ExpressionFieldIsNull.h"
#include "query/nodes/ExpressionLike.h"

namespace testing_query {

namespace {

std::string constantText(const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyInt32:
        return value.GetStringValue().Bytes();
    case orv::PolyDouble:
        return orv::ShortestText(value.GetDoubleValue()) + "d";
    case orv::PolyBool:
        return value.GetBoolValue() ? "true" : "false";
    case orv::PolyString:
        return "'" + value.GetStringValue().Bytes() + "'";
    default:
        return "?";
    }
}

std::string operatorText(int code)
{
    switch (code) {
    case 1:
        return "-";
    case 2:
        return "+";
    case 3:
        return "/";
    case 4:
        return "*";
    case 7:
        return "AND";
    case 8:
        return "OR";
    case 10:
        return "=";
    case 11:
        return "<>";
    case 12:
        return ">";
    case 13:
        return "<";
    case 14:
        return ">=";
    case 15:
        return "<=";
    default:
        return "?";
    }
}

std::string callText(const CEEExpressionFun& call)
{
    std::string text = "(call " + call.GetName().Bytes();
    for (CEEExpression* argument : call.GetArguments())
        text += " " + treeText(argument);
    return text + ")";
}

} // namespace

std::string treeText(CEEExpression* root)
{
    if (!root)
        return "none";
    if (auto* node = dynamic_cast<CExpressionFieldIsNull*>(root))
        return (node->IsNull() ? "(null [" : "(notnull [") + node->GetVarName().Bytes() + "])";
    if (auto* node = dynamic_cast<CExpressionLike*>(root))
        return "(like [" + node->GetFieldName().Bytes() + "] '" + node->GetPattern().Bytes() + "')";
    if (auto* node = dynamic_cast<CEEExpressionConst*>(root))
        return constantText(node->GetValue());
    if (auto* node = dynamic_cast<CEEExpressionVar*>(root))
        return "[" + node->GetVarName().Bytes() + "]";
    if (auto* node = dynamic_cast<CEEExpressionUnOp*>(root))
        return (node->GetCode() == 2 ? "(NOT " : "(? ") + treeText(node->GetOperand()) + ")";
    if (auto* node = dynamic_cast<CEEExpressionBinOp*>(root))
        return "(" + operatorText(node->GetCode()) + " " + treeText(node->GetLeft()) + " "
            + treeText(node->GetRight()) + ")";
    if (auto* node = dynamic_cast<CEEExpressionFun*>(root))
        return callText(*node);
    return "?";
}

} // namespace testing_query
