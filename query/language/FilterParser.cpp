// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/FilterParser.h"

#include "query/language/ParseContext.h"

#include "FilterGrammar.h"

#include "host/base/Numbers.h"

#include <cstdio>
#include <limits>
#include <new>
#include <string>

int tematica_filter_lex(
    TEMATICA_FILTER_STYPE* value, TEMATICA_FILTER_LTYPE* place, query::ParseContext& context)
{
    orv::String* text = nullptr;
    const query::Token token = context.nextToken(text);
    place->first_line = place->last_line = context.line();
    place->first_column = token.span.begin;
    place->last_column = token.span.end;
    switch (token.code) {
    case TOKEN_IDENT:
    case TOKEN_STRING:
        value->text = text;
        break;
    case TOKEN_INTEGER:
        value->integer = token.integer;
        break;
    case TOKEN_FLOAT:
        value->number = token.number;
        break;
    case TOKEN_TRUE:
    case TOKEN_FALSE:
        value->truth = token.truth;
        break;
    default:
        break;
    }
    return token.code;
}

void tematica_filter_error(
    TEMATICA_FILTER_LTYPE*, query::ParseContext& context, const char* message)
{
    context.noteError(message);
}

namespace query {

namespace {

std::string_view slice(std::string_view text, Span span)
{
    return text.substr(
        static_cast<std::size_t>(span.begin), static_cast<std::size_t>(span.end - span.begin));
}

void reportError(const char* message)
{
    std::fprintf(stderr, "Syntax error: %s\n", message);
}

ParseFailure failureOf(const ParseContext& context)
{
    const char* const message = context.errorMessage();
    const bool isOverflow = message && std::string_view(message) == "parser stack overflow";
    return isOverflow ? ParseFailure::StackOverflow : ParseFailure::ParseError;
}

void describeError(std::string_view text, const ParseContext& context, ParseOutcome& outcome)
{
    outcome.failure = failureOf(context);
    outcome.errorPosition = context.lastToken().begin + 1;
    outcome.unexpectedToken = slice(text, context.lastToken());
    outcome.precedingToken = slice(text, context.tokenBeforeLast());
}

/// True when the parser takes `token` after `prefix`, whatever comes next.
bool fits(const std::string& prefix, std::string_view token)
{
    const std::string text = prefix + ' ' + std::string(token);
    const ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
    return outcome.status == 0 || static_cast<std::size_t>(outcome.errorPosition) > text.size();
}

} // namespace

ParseOutcome parseFilter(std::string_view text, ErrorReport report)
{
    // Positions are counted from 1, also that after the last byte.
    constexpr auto MaxLength = static_cast<std::size_t>(std::numeric_limits<int>::max()) - 1;
    ParseOutcome outcome;
    try {
        if (text.size() > MaxLength)
            throw std::bad_alloc(); // a condition cut short would pass for the whole
        ParseContext context(text.data(), static_cast<int>(text.size()));
        outcome.status = tematica_filter_parse(context) == 0 ? 0 : 1;
        if (context.isOutOfMemory())
            throw std::bad_alloc(); // the text is not to blame
        outcome.line = context.line();
        if (outcome.status != 0)
            describeError(text, context, outcome);
        outcome.root = context.releaseRoot();
        if (outcome.root) {
            outcome.conditionPosition = context.rootSpan().begin + 1;
            outcome.conditionBytes = context.rootSpan().end - context.rootSpan().begin;
        }
        if (outcome.status != 0 && report == ErrorReport::OnStandardError)
            reportError(context.errorMessage() ? context.errorMessage() : "parse error");
    } catch (const std::bad_alloc&) {
        outcome = ParseOutcome();
        outcome.failure = ParseFailure::OutOfMemory;
        if (report == ErrorReport::OnStandardError)
            reportError("out of memory");
    }
    return outcome;
}

ExpectedAt expectedAfter(std::string_view text, int length)
{
    ExpectedAt expected;
    if (length < 0)
        return expected;
    const std::string prefix(text.substr(0, static_cast<std::size_t>(length)));
    const ParseOutcome before = parseFilter(prefix, ErrorReport::Silent);
    if (before.status != 0 && before.errorPosition <= static_cast<int>(prefix.size()))
        return expected;

    const bool takesParenthesis = fits(prefix, "(");
    const bool afterNot = orv::CompareIgnoreAsciiCase(before.precedingToken, "not") == 0;
    expected.condition = fits(prefix, "NOT (") || (afterNot && takesParenthesis);
    expected.value = !expected.condition && fits(prefix, "1");
    expected.comparison = fits(prefix, "=");
    expected.likeOrIs = fits(prefix, "LIKE");
    expected.pattern = !expected.value && !expected.condition && fits(prefix, "'x'");
    expected.nullWord = fits(prefix, "NULL");
    expected.arithmetic = fits(prefix, "+") && !expected.value && !expected.condition;
    expected.connective = fits(prefix, "AND");
    expected.comma = fits(prefix, ",");
    expected.closingParenthesis = fits(prefix, ")");
    expected.end = before.status == 0;
    return expected;
}

} // namespace query
