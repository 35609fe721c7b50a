// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <QString>

namespace query {

/// A filter text with its caret, after something was inserted.
struct FilterInsertion {
    QString text;
    int caret = 0;
};

/// Puts `inserted` at the caret (an empty selection from `start` to `end`), or in the place of
/// every occurrence of the selected text in the whole filter: who corrects a field's name means all
/// of them. The search goes from left to right, without overlaps and not into what was inserted;
/// letter case counts. The caret stands at the old end of the selection plus the length of the
/// insertion, within the text. Units: characters of the edit.
[[nodiscard]] FilterInsertion insertIntoFilter(
    const QString& text, int start, int end, const QString& inserted);

/// How a value from the list of values is written in a filter on a field of this format. Quotes in
/// texts are not doubled, since the language has no escape.
[[nodiscard]] QString filterLiteral(const QString& value, gis::FieldFormat format);

} // namespace query
