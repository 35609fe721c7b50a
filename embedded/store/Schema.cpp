// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Schema.h"

#include "embedded/store/LibraryTables.h"
#include "embedded/store/Names.h"
#include "embedded/store/Statement.h"

#include <array>

namespace embedded::store {
namespace {

constexpr const char* BaseTables = R"sql(
PRAGMA application_id = 1196444487;
PRAGMA user_version = 10200;
CREATE TABLE gpkg_spatial_ref_sys (
  srs_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL PRIMARY KEY,
  organization TEXT NOT NULL,
  organization_coordsys_id INTEGER NOT NULL,
  definition TEXT NOT NULL,
  description TEXT);
CREATE TABLE gpkg_contents (
  table_name TEXT NOT NULL PRIMARY KEY,
  data_type TEXT NOT NULL,
  identifier TEXT UNIQUE,
  description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE, min_y DOUBLE, max_x DOUBLE, max_y DOUBLE,
  srs_id INTEGER,
  CONSTRAINT fk_gc_r_srs_id FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE gpkg_geometry_columns (
  table_name TEXT NOT NULL,
  column_name TEXT NOT NULL,
  geometry_type_name TEXT NOT NULL,
  srs_id INTEGER NOT NULL,
  z TINYINT NOT NULL,
  m TINYINT NOT NULL,
  CONSTRAINT pk_geom_cols PRIMARY KEY (table_name, column_name),
  CONSTRAINT uk_gc_table_name UNIQUE (table_name),
  CONSTRAINT fk_gc_tn FOREIGN KEY (table_name) REFERENCES gpkg_contents(table_name),
  CONSTRAINT fk_gc_srs FOREIGN KEY (srs_id) REFERENCES gpkg_spatial_ref_sys (srs_id));
CREATE TABLE gpkg_extensions (
  table_name TEXT,
  column_name TEXT,
  extension_name TEXT NOT NULL,
  definition TEXT NOT NULL,
  scope TEXT NOT NULL,
  CONSTRAINT ge_tce UNIQUE (table_name, column_name, extension_name));
INSERT INTO gpkg_spatial_ref_sys VALUES
  ('Undefined Cartesian SRS', -1, 'NONE', -1, 'undefined',
   'undefined Cartesian coordinate reference system'),
  ('Undefined geographic SRS', 0, 'NONE', 0, 'undefined',
   'undefined geographic coordinate reference system'),
  ('WGS 84 geodetic', 4326, 'EPSG', 4326,
   'GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,'
   || 'AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],PRIMEM["Greenwich",0,'
   || 'AUTHORITY["EPSG","8901"]],UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],'
   || 'AXIS["Latitude",NORTH],AXIS["Longitude",EAST],AUTHORITY["EPSG","4326"]]',
   'longitude/latitude coordinates in decimal degrees on the WGS 84 spheroid');
)sql";

std::string tableSql(const std::string& name, const std::vector<DeclaredColumn>& columns,
    const std::string& shapeType)
{
    std::string sql = "CREATE TABLE " + quoted(name) + " (" + quoted(FidColumn)
        + " INTEGER PRIMARY KEY NOT NULL";
    for (const DeclaredColumn& column : columns)
        sql += ", " + quoted(column.name) + " " + column.type;
    if (!shapeType.empty())
        sql += ", " + quoted(GeometryColumn) + " " + shapeType;
    return sql + ")";
}

std::string shapeTypeOf(const ShapeLayout& layout)
{
    switch (layout.type) {
    case gis::EntType::Points:
        return layout.isMultiPoint ? "MULTIPOINT" : "POINT";
    case gis::EntType::Lines:
        return "MULTILINESTRING";
    case gis::EntType::Polygons:
        break;
    }
    return "MULTIPOLYGON";
}

// Identifiers must differ; two themes' names need not.
std::string freeIdentifier(
    Connection& connection, const std::string& wanted, const std::string& table)
{
    Statement taken(
        connection, "SELECT 1 FROM gpkg_contents WHERE identifier = ?1 AND table_name <> ?2");
    std::string identifier = wanted;
    for (int number = 2;; ++number) {
        taken.bindText(1, identifier);
        taken.bindText(2, table);
        const bool isTaken = taken.step();
        taken.reset();
        if (!isTaken)
            return identifier;
        identifier = wanted + "_" + std::to_string(number);
    }
}

void registerTable(Connection& connection, const std::string& name, const std::string& dataType,
    const std::string& identifier, std::int32_t srsId)
{
    const std::string free = freeIdentifier(connection, identifier, name);
    Statement insert(connection,
        "INSERT INTO gpkg_contents (table_name, data_type, identifier, srs_id) "
        "VALUES (?1, ?2, ?3, ?4)");
    insert.bindText(1, name);
    insert.bindText(2, dataType);
    insert.bindText(3, free);
    insert.bindInteger(4, srsId);
    insert.run();
}

// T, I and C stand for the table, its index and the shape column.
std::string withNames(std::string_view pattern, const std::string& table)
{
    const std::string index = rtreeName(table, GeometryColumn);
    std::string sql;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] != '$') {
            sql += pattern[i];
            continue;
        }
        const char what = pattern[++i];
        sql += what == 'T' ? quoted(table) : what == 'I' ? quoted(index) : std::string();
        if (what == 'i')
            for (const char c : index)
                sql += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return sql;
}

// Source: GeoPackage 1.2.1, F.3 RTree Spatial Indexes.
constexpr std::array<std::string_view, 6> IndexTriggers = {
    R"(CREATE TRIGGER "$i_insert" AFTER INSERT ON $T
WHEN (NEW."geom" NOT NULL AND NOT ST_IsEmpty(NEW."geom"))
BEGIN INSERT OR REPLACE INTO $I VALUES (NEW."fid",
ST_MinX(NEW."geom"), ST_MaxX(NEW."geom"), ST_MinY(NEW."geom"), ST_MaxY(NEW."geom")); END)",
    R"(CREATE TRIGGER "$i_update1" AFTER UPDATE OF "geom" ON $T
WHEN OLD."fid" = NEW."fid" AND (NEW."geom" NOTNULL AND NOT ST_IsEmpty(NEW."geom"))
BEGIN INSERT OR REPLACE INTO $I VALUES (NEW."fid",
ST_MinX(NEW."geom"), ST_MaxX(NEW."geom"), ST_MinY(NEW."geom"), ST_MaxY(NEW."geom")); END)",
    R"(CREATE TRIGGER "$i_update2" AFTER UPDATE OF "geom" ON $T
WHEN OLD."fid" = NEW."fid" AND (NEW."geom" ISNULL OR ST_IsEmpty(NEW."geom"))
BEGIN DELETE FROM $I WHERE id = OLD."fid"; END)",
    R"(CREATE TRIGGER "$i_update3" AFTER UPDATE ON $T
WHEN OLD."fid" != NEW."fid" AND (NEW."geom" NOTNULL AND NOT ST_IsEmpty(NEW."geom"))
BEGIN DELETE FROM $I WHERE id = OLD."fid"; INSERT OR REPLACE INTO $I VALUES (NEW."fid",
ST_MinX(NEW."geom"), ST_MaxX(NEW."geom"), ST_MinY(NEW."geom"), ST_MaxY(NEW."geom")); END)",
    R"(CREATE TRIGGER "$i_update4" AFTER UPDATE ON $T
WHEN OLD."fid" != NEW."fid" AND (NEW."geom" ISNULL OR ST_IsEmpty(NEW."geom"))
BEGIN DELETE FROM $I WHERE id IN (OLD."fid", NEW."fid"); END)",
    R"(CREATE TRIGGER "$i_delete" AFTER DELETE ON $T WHEN OLD."geom" NOT NULL
BEGIN DELETE FROM $I WHERE id = OLD."fid"; END)",
};

std::string markTriggerName(const std::string& table, const std::string& event)
{
    return "tematica_" + table + "_" + event;
}

void createMarkTrigger(Connection& connection, const std::string& table, const std::string& event,
    const std::string& when, const std::string& body)
{
    connection.execute("CREATE TRIGGER " + quoted(markTriggerName(table, event)) + " AFTER " + when
        + " ON " + quoted(table) + " BEGIN " + body + " END");
}

std::string markSql(std::int64_t tableId, const std::string& mark)
{
    return "UPDATE tematica_marks SET " + mark + " = 1 WHERE table_id = " + std::to_string(tableId)
        + " AND " + mark + " = 0;";
}

} // namespace

void createLibraryFile(Connection& connection)
{
    connection.execute(BaseTables);
    createLibraryTables(connection);
}

std::string declaredType(gis::FieldFormat format)
{
    switch (format) {
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        return "TEXT";
    case gis::FieldFormat::Boolean:
        return "BOOLEAN";
    case gis::FieldFormat::Integer:
        return "MEDIUMINT";
    case gis::FieldFormat::Decimal:
        return "DOUBLE";
    case gis::FieldFormat::Date:
        return "DATE";
    }
    return "TEXT";
}

void createAttributesTable(Connection& connection, const std::string& name,
    const std::vector<DeclaredColumn>& columns, const std::string& identifier)
{
    connection.execute(tableSql(name, columns, {}));
    registerTable(connection, name, "attributes", identifier, 0);
}

void createFeatureTable(Connection& connection, const std::string& name,
    const std::vector<DeclaredColumn>& columns, const std::string& identifier,
    const ShapeLayout& layout)
{
    const std::string shapeType = shapeTypeOf(layout);
    connection.execute(tableSql(name, columns, shapeType));
    registerTable(connection, name, "features", identifier, layout.srsId);
    Statement insert(
        connection, "INSERT INTO gpkg_geometry_columns VALUES (?1, 'geom', ?2, ?3, ?4, ?5)");
    insert.bindText(1, name);
    insert.bindText(2, shapeType);
    insert.bindInteger(3, layout.srsId);
    insert.bindInteger(4, layout.hasZ ? 1 : 0);
    insert.bindInteger(5, layout.hasM ? 1 : 0);
    insert.run();
    connection.execute(
        withNames("CREATE VIRTUAL TABLE $I USING rtree(id, minx, maxx, miny, maxy)", name));
    Statement extension(connection,
        "INSERT INTO gpkg_extensions VALUES (?1, 'geom', 'gpkg_rtree_index', "
        "'http://www.geopackage.org/spec121/#extension_rtree', 'write-only')");
    extension.bindText(1, name);
    extension.run();
}

void createTriggers(
    Connection& connection, const std::string& name, std::int64_t tableId, std::int64_t themeId)
{
    const std::string rows = markSql(tableId, "rows_changed");
    const std::string cells = markSql(tableId, "cells_changed");
    const std::string shapes = themeId == 0 ? "" : markSql(tableId, "shapes_changed");
    // What is said about a shape's vertices does not hold for another shape.
    std::string forget;
    for (const char* about : { "tematica_rings", "tematica_links" })
        forget += std::string("DELETE FROM ") + about
            + " WHERE theme_id = " + std::to_string(themeId) + " AND fid = OLD.\"fid\";";
    if (themeId == 0)
        forget.clear();
    createMarkTrigger(connection, name, "insert", "INSERT", rows + cells + shapes);
    createMarkTrigger(connection, name, "delete", "DELETE", rows + shapes + forget);
    createMarkTrigger(connection, name, "renumber", "UPDATE OF \"fid\"", rows);
    createMarkTrigger(connection, name, "update", "UPDATE", cells);
    if (themeId == 0)
        return;
    createMarkTrigger(connection, name, "reshape", "UPDATE OF \"geom\"", shapes + forget);
    for (const std::string_view trigger : IndexTriggers)
        connection.execute(withNames(trigger, name));
}

bool hasMarkTriggers(Connection& connection, const std::string& name, bool isLayer)
{
    Statement find(connection,
        "SELECT 1 FROM sqlite_master WHERE type = 'trigger' AND name = ?1 AND tbl_name = ?2");
    static constexpr std::array<const char*, 5> Events
        = { "insert", "delete", "renumber", "update", "reshape" };
    const std::size_t count = isLayer ? Events.size() : 4;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string trigger = markTriggerName(name, Events[i]);
        find.bindText(1, trigger);
        find.bindText(2, name);
        const bool isThere = find.step();
        find.reset();
        if (!isThere)
            return false;
    }
    return true;
}

void dropPhysicalTable(Connection& connection, const std::string& name)
{
    connection.execute("DROP TABLE IF EXISTS " + quoted(rtreeName(name, GeometryColumn)));
    connection.execute("DROP TABLE IF EXISTS " + quoted(name));
    // The last four are made by other programs, where they are at all.
    for (const char* registry :
        { "gpkg_geometry_columns", "gpkg_extensions", "gpkg_contents", "gpkg_data_columns",
            "gpkg_metadata_reference", "gpkg_ogr_contents", "layer_styles" }) {
        if (!connection.hasTable(registry))
            continue;
        const bool isStyles = std::string_view(registry) == "layer_styles";
        connection.execute(std::string("DELETE FROM ") + registry + " WHERE lower("
            + (isStyles ? "f_table_name" : "table_name") + ") = lower(" + literal(name) + ")");
    }
}

void setContents(Connection& connection, const std::string& name, const std::string& identifier,
    const Box* extent)
{
    const std::string free = freeIdentifier(connection, identifier, name);
    Statement update(connection,
        "UPDATE gpkg_contents SET identifier = ?2, min_x = ?3, min_y = ?4, max_x = ?5, max_y = ?6, "
        "last_change = strftime('%Y-%m-%dT%H:%M:%fZ','now') WHERE table_name = ?1");
    update.bindText(1, name);
    update.bindText(2, free);
    if (extent && !extent->isEmpty()) {
        update.bindReal(3, extent->minX);
        update.bindReal(4, extent->minY);
        update.bindReal(5, extent->maxX);
        update.bindReal(6, extent->maxY);
    }
    update.run();
}

} // namespace embedded::store
