// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The English sentences of the command line: one for each thing that the embedded host can report,
// and why a filter is refused. Only here are codes made into text.

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <string>
#include <string_view>

namespace query {
struct ParseOutcome;
}

namespace cli {

/// The sentence, without "tematica: " and line end; empty for a code without text.
[[nodiscard]] std::string sentence(const embedded::Error& error);
[[nodiscard]] std::string sentence(const embedded::Finding& finding);

/// Why a filter is refused, and where: the sentence as above.
[[nodiscard]] std::string refusal(const query::ParseOutcome& filter);
/// What is wrong at the place where a filter is refused, where the word that stands there does not
/// show it (nested too deep, a text without an end); else empty.
[[nodiscard]] std::string hiddenSlip(const query::ParseOutcome& filter);

/// A finding's code as a word for report files ("text-cut"); empty for an unknown code.
[[nodiscard]] std::string_view word(embedded::FindingCode code);

} // namespace cli
