// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/ParseContext.h"

#include "query/nodes/ExpressionFieldIsNull.h"
#include "query/nodes/ExpressionLike.h"

#include "FilterGrammar.h"

#include <cstring>

namespace query {

LiteralValue LiteralValue::ofInteger(std::int32_t value)
{
    LiteralValue literal { Kind::Integer, {} };
    literal.integer = value;
    return literal;
}

LiteralValue LiteralValue::ofNumber(double value)
{
    LiteralValue literal { Kind::Number, {} };
    literal.number = value;
    return literal;
}

LiteralValue LiteralValue::ofText(orv::String* value)
{
    LiteralValue literal { Kind::Text, {} };
    literal.text = value;
    return literal;
}

LiteralValue LiteralValue::ofTruth(bool value)
{
    LiteralValue literal { Kind::Truth, {} };
    literal.truth = value;
    return literal;
}

ParseContext::ParseContext(const char* text, int length)
    : m_scanner(text, length)
{
}

ParseContext::~ParseContext()
{
    for (CEEExpression* node : m_liveNodes)
        delete node;
    for (orv::String* text : m_liveTexts)
        delete text;
}

void ParseContext::setRoot(CEEExpression* node, Span span)
{
    m_root = node;
    m_rootSpan = span;
}

CEEExpression* ParseContext::keep(std::unique_ptr<CEEExpression> node)
{
    m_liveNodes.insert(node.get());
    return node.release();
}

std::unique_ptr<orv::String> ParseContext::consume(orv::String* text)
{
    m_liveTexts.erase(text);
    return std::unique_ptr<orv::String>(text);
}

CEEExpression* ParseContext::binary(int code, CEEExpression* left, CEEExpression* right)
{
    auto node = std::make_unique<CEEExpressionBinOp>(code, left, right);
    m_liveNodes.erase(left);
    m_liveNodes.erase(right);
    return keep(std::move(node));
}

CEEExpression* ParseContext::negation(CEEExpression* operand)
{
    auto node = std::make_unique<CEEExpressionUnOp>(EENot, operand);
    m_liveNodes.erase(operand);
    return keep(std::move(node));
}

CEEExpression* ParseContext::like(orv::String* field, const orv::String* pattern)
{
    const auto name = consume(field);
    return keep(std::make_unique<CExpressionLike>(*name, *pattern));
}

CEEExpression* ParseContext::nullTest(orv::String* field, bool isNull)
{
    const auto name = consume(field);
    return keep(std::make_unique<CExpressionFieldIsNull>(*name, isNull));
}

CEEExpression* ParseContext::variable(orv::String* field)
{
    const auto name = consume(field);
    return keep(std::make_unique<CEEExpressionVar>(*name));
}

CEEExpression* ParseContext::constant(const LiteralValue& literal)
{
    orv::CPolyValue value;
    switch (literal.kind) {
    case LiteralValue::Kind::Integer:
        value = static_cast<int>(literal.integer);
        break;
    case LiteralValue::Kind::Number:
        value = literal.number;
        break;
    case LiteralValue::Kind::Text:
        value = *consume(literal.text);
        break;
    case LiteralValue::Kind::Truth:
        value = literal.truth;
        break;
    }
    return keep(std::make_unique<CEEExpressionConst>(value));
}

CEEExpression* ParseContext::call(orv::String* name, const ArgumentList* arguments)
{
    const auto ownName = consume(name);
    auto node = std::make_unique<CEEExpressionFun>(*ownName, *arguments);
    for (CEEExpression* argument : *arguments)
        m_liveNodes.erase(argument);
    return keep(std::move(node));
}

ArgumentList* ParseContext::emptyList()
{
    return m_argumentLists.emplace_back(std::make_unique<ArgumentList>()).get();
}

ArgumentList* ParseContext::listOf(CEEExpression* node)
{
    return append(emptyList(), node);
}

ArgumentList* ParseContext::append(ArgumentList* list, CEEExpression* node)
{
    list->push_back(node);
    return list;
}

Token ParseContext::nextToken(orv::String*& text)
{
    const Token token = m_scanner.next();
    m_tokenBeforeLast = m_lastToken;
    m_lastToken = token.span;
    if (token.code == TOKEN_IDENT || token.code == TOKEN_STRING) {
        auto ownText = std::make_unique<orv::String>(token.text);
        m_liveTexts.insert(ownText.get());
        text = ownText.release();
    }
    return token;
}

void ParseContext::noteError(const char* message)
{
    // The generator's own wording differs from release to release.
    m_errorMessage
        = std::strcmp(message, "memory exhausted") == 0 ? "parser stack overflow" : "parse error";
}

std::unique_ptr<CEEExpression> ParseContext::releaseRoot()
{
    CEEExpression* const root = m_root;
    m_root = nullptr;
    if (!root)
        return nullptr;
    if (m_liveNodes.erase(root) > 0)
        return std::unique_ptr<CEEExpression>(root);
    return std::unique_ptr<CEEExpression>(root->Clone());
}

} // namespace query
