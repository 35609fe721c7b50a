// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the import does with each file of the test data that is not simply taken.

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"

#include <map>
#include <set>
#include <string>

namespace shapetest {

using Codes = std::set<embedded::FindingCode>;

/// Files that are refused, by path in the test data.
const std::map<std::string, embedded::ErrorCode>& refusals();
/// Files that are taken with warnings; all others have none.
const std::map<std::string, Codes>& warnings();

/// Where the import reads a file otherwise than GDAL; tests of their own state what it reads there.
struct Deviation {
    bool rows = false; // more or fewer of them
    bool shapes = false;
    bool names = false;
    std::set<std::string> fields = {}; // "*": all of them
};
const std::map<std::string, Deviation>& deviations();

} // namespace shapetest
