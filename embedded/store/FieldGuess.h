// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/store/PartScan.h"

#include "host/gis/Types.h"

#include <string>
#include <vector>

namespace embedded::store {

/// A column of another program as a field.
struct GuessedField {
    std::string column;
    gis::FieldFormat format = gis::FieldFormat::Text;
    int digits = 0; // decimals: the fewest that show every value, at most 10
};

/// Formats for columns that another program made, by their declared types and by what they hold:
/// whole numbers become decimals without digits, or text, where they do not fit. Columns of bytes
/// and shapes are left out. `report`: what was left out or does not fit.
std::vector<GuessedField> guessFields(Connection& connection, const std::string& table,
    const std::vector<PhysicalColumn>& columns, Report& report);

} // namespace embedded::store
