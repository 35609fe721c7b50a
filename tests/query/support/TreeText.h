// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/expr/Expression.h"

#include <string>

namespace testing_query {

/// A tree on one line, its structure and kinds plain to see: "(AND (= [A] 1) (like [B] 'x%'))".
/// Integers as 1, doubles as 1.5d, booleans as true and false, no tree as "none".
std::string treeText(CEEExpression* root);

} // namespace testing_query
