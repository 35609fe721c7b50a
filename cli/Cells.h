// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Cells as text for the several output formats.

#include "host/gis/LibGis.h"

#include <string>
#include <string_view>
#include <vector>

namespace cli {

/// A column of the output.
struct OutputColumn {
    std::string name;
    gis::FieldFormat format = gis::FieldFormat::Text;
    int digits = 0; // after the point of decimals
};

[[nodiscard]] OutputColumn columnOf(gis::CLibGis& library, gis::CField* field);

/// As people read it: dd/mm/yyyy, Sì and No, decimals with the field's digits, nothing for no
/// value.
[[nodiscard]] std::string shownText(const orv::CPolyValue& value, const OutputColumn& column);

/// Appends a value as JSON: numbers and booleans as such, dates as yyyy-mm-dd, null for no value.
void appendJson(std::string& out, const orv::CPolyValue& value);
/// Appends a text as a JSON string; bytes that are no UTF-8 become U+FFFD.
void appendJsonText(std::string& out, std::string_view text);
/// Appends a number as JSON has it (null for NaN and infinities).
void appendJsonNumber(std::string& out, double value);

/// A text for a line of output: control characters (names hold anything) as blanks, bytes that are
/// no UTF-8 as U+FFFD.
[[nodiscard]] std::string plainText(std::string_view text);
/// Bytes that are no UTF-8 as U+FFFD, everything else as it is.
[[nodiscard]] std::string validText(std::string_view text);

/// Cells that a text takes on a terminal: two for wide letters, none for marks that combine.
[[nodiscard]] int terminalWidth(std::string_view text);

} // namespace cli
