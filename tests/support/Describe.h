// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Handles, values and enumerations as the short texts that recorded calls and failing tests show.

#include "host/gis/LibGis.h"

#include <string>

namespace support {

/// Tables and themes by name, fields as `Strade.codice`, rows as `Strade[3]`, entities as `Vie#3`.
/// Null is `null`; an empty name is `""`.
std::string describe(gis::CDBTable* table);
std::string describe(gis::CField* field);
std::string describe(gis::CTheme* theme);
std::string describe(gis::CEnt* ent);
std::string describe(gis::CEntPart* part);
std::string describe(gis::CFeatureClass* featureClass);
std::string describe(orv::CResultRow* row);
std::string describe(orv::CPolyValue* values);

/// `-` for no value, texts in single quotes (a quote doubled), `yes` and `no`, days as dd/mm/yyyy,
/// arrays in brackets.
std::string describe(const orv::CPolyValue& value);
std::string describe(const orv::String& text);
std::string describe(const char* text);
std::string describe(const gis::TOpzLabel& label);
std::string describe(gis::EntType type);
std::string describe(gis::EntTypeCoords coords);
std::string describe(gis::FieldFormat format);
std::string describe(gis::FieldType type);
std::string describe(bool value);
std::string describe(int value);
std::string describe(std::int64_t value);
std::string describe(double value);

/// A text between single quotes, inner quotes doubled.
std::string quoted(std::string_view text);

} // namespace support
