// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <string>
#include <vector>

namespace tables {

/// One column of the grid as it was when the grid was made.
struct GridField {
    gis::CField* field = nullptr;
    orv::String name;
    gis::FieldFormat format = gis::FieldFormat::Text;
    bool isPredefined = false;
    bool isRequired = false;
    int decimalDigits = 0; // 0 to 10, whatever the constraint says
};

/// The columns of a table, in field order; none without library or table.
[[nodiscard]] std::vector<GridField> gridFields(gis::CLibGis* library, gis::CDBTable* table);

/// The text of a value in a cell: chosen by the value's kind, whatever the field's format.
/// Shape: no value and the date 0 are the empty text.
[[nodiscard]] orv::String cellText(const orv::CPolyValue& value, int decimalDigits);

/// The value that a cell's text stands for, read by the field's format; empty where the text is
/// empty (a date also where it is no real day).
[[nodiscard]] orv::CPolyValue valueOfCellText(const orv::String& text, gis::FieldFormat format);

/// What a user may choose in a cell: none, yes and no in the order of the list; the list's texts
/// after the host's entry for no value (index -1). Empty for the other formats.
[[nodiscard]] std::vector<orv::String> cellChoices(gis::CLibGis& library, const GridField& field);

/// Checks and puts into its final form a text that a user entered: numbers within the field's
/// bounds (inclusive, each only where it is set) become the digits of what was read. False, `text`
/// as it was, where a bound is broken. The empty text is always right: a value that is not required
/// can be cleared whatever its bounds.
[[nodiscard]] bool acceptCellText(gis::CLibGis& library, const GridField& field, orv::String& text);

} // namespace tables
