// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace testing_query {

/// Tells whether a row of token codes (258 to 284) is a filter, straight from the rules of the
/// grammar and without any of the parser's tables: for each symbol all places are followed where it
/// may end. For short rows only.
bool isFilter(const std::vector<int>& tokens);

} // namespace testing_query
