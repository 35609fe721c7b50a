// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Cuts a filter text into tokens. What the tokens mean together is the parser's.

#include "query/language/Span.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace query {

/// One token; `text`, `integer`, `number` and `truth` are set where its code has such a value.
struct Token {
    int code = 0; ///< 0 at the end of the text, 258 to 284 as in the grammar, else the character.
    Span span {};
    std::string_view text; ///< Without quotes or brackets; valid until the next token.
    std::int32_t integer = 0;
    double number = 0.0;
    bool truth = false;
};

/// A character that no rule accepts, given in place of a token when memory runs out (see
/// FilterScanner::isOutOfMemory; a text may hold the same byte).
inline constexpr int BrokenToken = 1;

struct ScanState;

/// Tokens of one text, first to last. All state lies in the object, so that any number of texts
/// may be scanned at a time.
/// Units: positions in bytes. Owner, thread: the text is lent and must outlive the scanner.
class FilterScanner final {
public:
    FilterScanner(const char* text, int length);
    FilterScanner(const FilterScanner&) = delete;
    FilterScanner& operator=(const FilterScanner&) = delete;
    ~FilterScanner();

    [[nodiscard]] Token next();
    /// Line feeds seen outside quotes and brackets.
    [[nodiscard]] int line() const;
    /// The memory was not enough for the next token.
    [[nodiscard]] bool isOutOfMemory() const { return m_isOutOfMemory; }

private:
    std::unique_ptr<ScanState> m_state;
    void* m_scanner = nullptr;
    bool m_isOutOfMemory = false;
};

} // namespace query
