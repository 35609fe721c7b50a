// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// From the text of a filter to its tree (docs/filter-language.md).

#include "host/expr/Expression.h"

#include <memory>
#include <string_view>

namespace query {

/// Whether a refused text is told on standard error ("Syntax error: parse error"). A condition that
/// is parsed while its user still types is better parsed in silence.
enum class ErrorReport { OnStandardError, Silent };

enum class ParseFailure {
    None,
    ParseError,
    StackOverflow, ///< Nested deeper than the parser's stack of 10,000 entries: one for every
                   ///< symbol that waits for what follows, so `(` takes one and `1 + (` three.
    OutOfMemory, ///< Also a text of 2 GB or more, whose bytes cannot be numbered.
};

/// What became of a parse.
/// `status` tells whether the whole text is a filter; `root` may be set all the same: it is then
/// the last condition that was complete, on its own or in parentheses, before the parser stopped.
struct ParseOutcome {
    int status = 1; ///< 0 accepted, 1 refused.
    std::unique_ptr<CEEExpression> root;
    ParseFailure failure = ParseFailure::None;
    int line = 0; ///< Line feeds seen.

    /// Where the parser stopped: the first byte, counted from 1, of the token it could not take;
    /// one past the text when it misses something at the end. 0 when accepted, and out of memory.
    int errorPosition = 0;
    /// The token that did not fit; empty at the end of the text. Part of the text given.
    std::string_view unexpectedToken;
    /// The token before it; empty when there is none. Part of the text given.
    std::string_view precedingToken;

    /// The bytes of the text that `root` stands for, counted from 1; 0 and 0 without a root.
    int conditionPosition = 0;
    int conditionBytes = 0;

    /// What does not fit is a text or a name in brackets that begins at `errorPosition` and has no
    /// end: a quote or bracket that is closed is a token together with what it holds.
    [[nodiscard]] bool isTextOpen() const { return unexpectedToken == "'"; }
    [[nodiscard]] bool isNameOpen() const { return unexpectedToken == "["; }

    /// A condition is there, but not the one that was written.
    [[nodiscard]] bool isShortened() const { return status != 0 && root != nullptr; }
};

/// Parses a filter. A NUL byte outside quotes and brackets ends the text.
/// Errors: in the outcome; nothing is thrown. Owner, thread: the tree is the caller's; the
/// outcome's texts lie in `text`; any number of parses may run at a time.
[[nodiscard]] ParseOutcome parseFilter(std::string_view text, ErrorReport report);

/// What could stand at a place of a filter.
struct ExpectedAt {
    bool condition = false; ///< A comparison, LIKE or IS NULL, also in parentheses.
    bool value = false; ///< A field, literal, call or a value in parentheses.
    bool comparison = false; ///< = <> < > <= >=
    bool likeOrIs = false; ///< LIKE or IS [NOT] NULL, after a field.
    bool pattern = false; ///< A text in quotes, after LIKE.
    bool nullWord = false; ///< NULL, after IS.
    bool arithmetic = false; ///< + - * /
    bool connective = false; ///< AND or OR.
    bool comma = false; ///< Another argument of a call.
    bool closingParenthesis = false;
    bool end = false; ///< The text may end here.
};

/// What could stand after the first `length` bytes of a text, when these are tokens that the parser
/// took (for a refused text: up to `errorPosition - 1`). All false when they are not.
/// Cost: some twelve parses of these bytes; meant for one message to a user.
[[nodiscard]] ExpectedAt expectedAfter(std::string_view text, int length);

} // namespace query
