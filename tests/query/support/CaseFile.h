// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Tables of cases kept as text: a case a line, its columns apart by "=>" and "|"; blank lines and
// lines beginning with "--" are left out. \n, \t, \r, \0 and \\ stand for these bytes.

#include <string>
#include <vector>

namespace testing_query {

struct CaseLine {
    int number = 0; // in its file, from 1
    std::vector<std::string> columns;
};

/// Cases of `tests/query/<path>`; fails the test when there are none or one has not `columnCount`
/// columns.
std::vector<CaseLine> readCases(const std::string& path, std::size_t columnCount);

} // namespace testing_query
