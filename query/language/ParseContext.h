// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What one parse builds and owns until the tree is handed over. One object a parse, nothing
// shared, so that any number of parses may run at a time.

#include "query/language/FilterScanner.h"
#include "query/language/Span.h"

#include "host/expr/Expression.h"

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

namespace query {

using ArgumentList = std::vector<CEEExpression*>;

/// A literal on the parser's stack; trivially copyable. The text is one of the context's.
struct LiteralValue {
    enum class Kind { Integer, Number, Text, Truth };
    Kind kind;
    union {
        std::int32_t integer;
        double number;
        orv::String* text;
        bool truth;
    };

    static LiteralValue ofInteger(std::int32_t value);
    static LiteralValue ofNumber(double value);
    static LiteralValue ofText(orv::String* value);
    static LiteralValue ofTruth(bool value);
};

/// Nodes, texts and argument lists of a parse.
/// The context owns every node that has no parent. The root only points at a node, which may later
/// become a child of another: a text that fails after "(A = 1)" still answers with A = 1.
class ParseContext final {
public:
    ParseContext(const char* text, int length);
    ParseContext(const ParseContext&) = delete;
    ParseContext& operator=(const ParseContext&) = delete;
    ~ParseContext();

    // What the grammar's actions call. Operands pass into the node that is built.
    void setRoot(CEEExpression* node, Span span);
    CEEExpression* binary(int code, CEEExpression* left, CEEExpression* right);
    CEEExpression* negation(CEEExpression* operand);
    /// The pattern's text stays the context's.
    CEEExpression* like(orv::String* field, const orv::String* pattern);
    CEEExpression* nullTest(orv::String* field, bool isNull);
    CEEExpression* variable(orv::String* field);
    CEEExpression* constant(const LiteralValue& literal);
    CEEExpression* call(orv::String* name, const ArgumentList* arguments);
    ArgumentList* emptyList();
    ArgumentList* listOf(CEEExpression* node);
    static ArgumentList* append(ArgumentList* list, CEEExpression* node);

    // What the parser itself calls
    /// The next token; its text, where it has one, is `text`.
    Token nextToken(orv::String*& text);
    /// Notes the parser's message; the last token read is where it stopped.
    void noteError(const char* message);

    // What is read when the parse is over
    /// Hands the root over: a node without a parent as it is, one that has a parent as a clone
    /// (only a failed parse leaves such a root). Null when no condition was complete.
    [[nodiscard]] std::unique_ptr<CEEExpression> releaseRoot();
    [[nodiscard]] Span rootSpan() const { return m_rootSpan; }
    [[nodiscard]] const char* errorMessage() const { return m_errorMessage; }
    [[nodiscard]] Span lastToken() const { return m_lastToken; }
    [[nodiscard]] Span tokenBeforeLast() const { return m_tokenBeforeLast; }
    [[nodiscard]] int line() const { return m_scanner.line(); }
    [[nodiscard]] bool isOutOfMemory() const { return m_scanner.isOutOfMemory(); }
    [[nodiscard]] std::size_t liveNodeCount() const { return m_liveNodes.size(); }

private:
    CEEExpression* keep(std::unique_ptr<CEEExpression> node);
    std::unique_ptr<orv::String> consume(orv::String* text);

    FilterScanner m_scanner;
    CEEExpression* m_root = nullptr;
    Span m_rootSpan { 0, 0 };
    std::set<CEEExpression*> m_liveNodes;
    std::set<orv::String*> m_liveTexts;
    std::vector<std::unique_ptr<ArgumentList>> m_argumentLists;
    const char* m_errorMessage = nullptr;
    Span m_lastToken { 0, 0 };
    Span m_tokenBeforeLast { 0, 0 };
};

} // namespace query
