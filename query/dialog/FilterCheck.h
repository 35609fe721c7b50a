// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace query {

/// Whether a text is a filter and, where it is not, what is wrong with it in the user's words.
struct FilterCheck {
    bool isFilter = false;
    /// "atteso un valore dopo AND"; empty for a filter and for an empty text.
    QString message;
    /// The part to be marked, in characters of the text; the last word where something is missing
    /// at the end.
    int start = 0;
    int length = 0;
};

/// A name or word of a filter as a line has room for it: cut with "…" when it is very long.
[[nodiscard]] QString shortened(const QString& text);

/// Parses in silence: a text that is still being typed is wrong most of the time.
[[nodiscard]] FilterCheck checkFilter(const QString& text);

} // namespace query
