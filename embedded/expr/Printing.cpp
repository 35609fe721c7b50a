// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "embedded/expr/ExpressionTree.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <array>
#include <string>

namespace {

// How tightly a node binds; an operand that binds less than its place needs gets brackets.
enum Binding : int {
    BindsOr = 1,
    BindsAnd,
    BindsNot,
    BindsComparison,
    BindsSum,
    BindsProduct,
    BindsLeaf,
};

struct OperatorText {
    std::string_view text;
    int binding;
};

OperatorText operatorText(int code)
{
    switch (code) {
    case EESubtract:
        return { " - ", BindsSum };
    case EEAdd:
        return { " + ", BindsSum };
    case EEDivide:
        return { " / ", BindsProduct };
    case EEMultiply:
        return { " * ", BindsProduct };
    case EEAnd:
        return { " AND ", BindsAnd };
    case EEOr:
        return { " OR ", BindsOr };
    case EEEqual:
        return { " = ", BindsComparison };
    case EENotEqual:
        return { " <> ", BindsComparison };
    case EEGreater:
        return { " > ", BindsComparison };
    case EELess:
        return { " < ", BindsComparison };
    case EEGreaterOrEqual:
        return { " >= ", BindsComparison };
    case EELessOrEqual:
        return { " <= ", BindsComparison };
    default:
        return { " ? ", BindsOr };
    }
}

int bindingOf(CEEExpression* node)
{
    if (const auto* binary = CEEExpressionTree::asBinOp(node))
        return operatorText(binary->GetCode()).binding;
    return CEEExpressionTree::asUnOp(node) ? BindsNot : BindsLeaf;
}

bool isNameStart(char byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || byte == '_'
        || byte == '!' || byte == '#' || byte == '$' || byte == '%'
        || static_cast<unsigned char>(byte) >= 0x80;
}

bool isKeyword(std::string_view name)
{
    static constexpr std::array<std::string_view, 10> Keywords { "TRUE", "FALSE", "AND", "OR",
        "NULL", "IS", "NOT", "BETWEEN", "IN", "LIKE" };
    for (const auto keyword : Keywords)
        if (orv::CompareIgnoreAsciiCase(name, keyword) == 0)
            return true;
    return false;
}

/// The name as the filter language reads it: in square brackets when it is not a plain word.
std::string nameText(std::string_view name)
{
    bool hasStart = false;
    bool isPlain = !isKeyword(name);
    for (const char byte : name) {
        hasStart = hasStart || isNameStart(byte);
        isPlain = isPlain && (isNameStart(byte) || (byte >= '0' && byte <= '9'));
    }
    std::string text(name);
    return isPlain && hasStart ? text : '[' + text + ']';
}

/// Always with a point, since "2" would be an integer and "1e+20" a name.
std::string doubleText(double value)
{
    std::string text = orv::ShortestText(value);
    if (text.find('.') == std::string::npos)
        text.insert(std::min(text.find('e'), text.size()), ".0");
    return text;
}

std::string dateText(std::int64_t moment)
{
    std::int32_t dayNumber = 0;
    if (!orv::LocalDayNumber(moment, dayNumber))
        return "NULL";
    const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
    orv::String text("Date(");
    text = text + orv::String::ValueOf(day.day) + "," + orv::String::ValueOf(day.month) + ","
        + orv::String::ValueOf(day.year) + ")";
    return text.Bytes();
}

/// Text with a quote inside cannot be written in the language; its quotes are doubled to be read.
std::string quotedText(std::string_view text)
{
    std::string quoted = "'";
    for (const char byte : text)
        quoted.append(byte == '\'' ? 2 : 1, byte);
    return quoted + '\'';
}

std::string constantText(const orv::CPolyValue& value)
{
    switch (value.GetType()) {
    case orv::PolyBool:
        return value.GetBoolValue() ? "TRUE" : "FALSE";
    case orv::PolyInt32:
        return value.GetStringValue().Bytes();
    case orv::PolyDouble:
        return doubleText(value.GetDoubleValue());
    case orv::PolyString:
        return quotedText(value.TextView());
    case orv::PolyDate:
        return dateText(value.GetDateValue());
    default:
        return "NULL";
    }
}

/// What is still to be written, last first: a node or a piece of text.
struct Piece {
    CEEExpression* node;
    std::string_view text;
};

using Pieces = std::vector<Piece>;

void pushOperand(Pieces& pieces, CEEExpression* operand, int leastBinding)
{
    const bool needsBrackets = bindingOf(operand) < leastBinding;
    if (needsBrackets)
        pieces.push_back({ nullptr, ")" });
    pieces.push_back({ operand, {} });
    if (needsBrackets)
        pieces.push_back({ nullptr, "(" });
}

void pushCall(Pieces& pieces, const CEEExpressionFun& call)
{
    pieces.push_back({ nullptr, ")" });
    const auto& arguments = call.GetArguments();
    for (std::size_t index = arguments.size(); index-- > 0;) {
        pieces.push_back({ arguments[index], {} });
        if (index > 0)
            pieces.push_back({ nullptr, "," });
    }
    pieces.push_back({ nullptr, "(" });
    pieces.push_back({ nullptr, call.GetName().View() });
}

void writeNode(
    Pieces& pieces, CEEExpression* node, CEEExpressionTree::Match match, std::string& text)
{
    using Tree = CEEExpressionTree;
    if (const auto* binary = Tree::asBinOp(node, match)) {
        const OperatorText symbol = operatorText(binary->GetCode());
        // Operators of one rank group to the left, and comparisons do not chain.
        const bool isComparison = symbol.binding == BindsComparison;
        pushOperand(pieces, binary->GetRight(), symbol.binding + 1);
        pieces.push_back({ nullptr, symbol.text });
        pushOperand(pieces, binary->GetLeft(), symbol.binding + (isComparison ? 1 : 0));
    } else if (const auto* unary = Tree::asUnOp(node, match)) {
        pushOperand(pieces, unary->GetOperand(), BindsNot + 1);
        pieces.push_back({ nullptr, "NOT " });
    } else if (const auto* call = Tree::asFun(node, match))
        pushCall(pieces, *call);
    else if (const auto* variable = Tree::asVar(node, match))
        text += nameText(variable->GetVarName().View());
    else if (const auto* constant = Tree::asConst(node, match))
        text += constantText(constant->GetValue());
    else if (node)
        text += node->ToString().View();
}

} // namespace

orv::String CEEExpressionTree::print(const CEEExpression& root)
{
    std::string text;
    // Nodes are asked for their class only; the visitors' const forms would cost a class more.
    Pieces pieces { { const_cast<CEEExpression*>(&root), {} } };
    while (!pieces.empty()) {
        const Piece piece = pieces.back();
        pieces.pop_back();
        text += piece.text;
        const Match match = piece.node == &root ? Match::Derived : Match::Exact;
        if (piece.node)
            writeNode(pieces, piece.node, match, text);
    }
    return orv::String(std::string_view(text));
}
