// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Theme.h"
#include "embedded/store/Connection.h"
#include "embedded/store/Wkb.h"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded::store {

/// Makes an empty file a GeoPackage with the tables that every library has.
/// Source: OGC 12-128r15 (GeoPackage 1.2.1); docs/library-format.md for the tables of ours.
void createLibraryFile(Connection& connection);

/// A column as it is declared in the file.
struct DeclaredColumn {
    std::string name;
    std::string type;
};

/// The type with which a field's column is declared, so that other programs know what it holds.
std::string declaredType(gis::FieldFormat format);

/// A table for rows without shapes, registered under an identifier that nobody has.
void createAttributesTable(Connection& connection, const std::string& name,
    const std::vector<DeclaredColumn>& columns, const std::string& identifier);

/// A layer with its spatial index (still empty), registered. The shapes lie in the last column, so
/// that reading attributes does not pass over them.
void createFeatureTable(Connection& connection, const std::string& name,
    const std::vector<DeclaredColumn>& columns, const std::string& identifier,
    const ShapeLayout& layout);

/// Triggers with which other programs keep the index right (as the GeoPackage extension defines
/// them), and those by which they tell us that they changed the table. Made last: they would only
/// slow down the filling.
void createTriggers(
    Connection& connection, const std::string& name, std::int64_t tableId, std::int64_t themeId);
/// True when all triggers by which other programs tell of changes are there.
bool hasMarkTriggers(Connection& connection, const std::string& name, bool isLayer);

/// Removes a table of rows or a layer with everything that is registered for it.
void dropPhysicalTable(Connection& connection, const std::string& name);

void setContents(Connection& connection, const std::string& name, const std::string& identifier,
    const Box* extent);

/// The number of a reference system in the file; it is registered when it was not yet.
std::int32_t registeredReferenceSystem(
    Connection& connection, const ReferenceSystem& referenceSystem);
/// The reference system of a number; an empty one for the undefined ones.
ReferenceSystem referenceSystemOf(Connection& connection, std::int64_t srsId);

} // namespace embedded::store
