// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"
#include "host/gis/Types.h"

#include <vector>

namespace query {

/// A name that a filter uses.
struct FilterName {
    orv::String name; ///< As written.
    bool isFunction = false; ///< Used in a call.
    bool isKnown = false;
};

/// The names that a filter uses, each once (as written), in order of first use. A name that is not
/// known is no error of the language: what uses it cannot be computed, so that its rows are not
/// selected, which a user should be told.
[[nodiscard]] std::vector<FilterName> filterNames(
    CEEExpression& filter, CEESymbolProvider& symbols);

/// The same with the names that queries of this theme know.
[[nodiscard]] std::vector<FilterName> filterNames(
    CEEExpression& filter, gis::CLibGis* library, gis::CTheme* theme);

} // namespace query
