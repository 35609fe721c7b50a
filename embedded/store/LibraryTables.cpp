// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/LibraryTables.h"

#include "embedded/store/GeoPackage.h"
#include "embedded/store/Statement.h"

#include <array>

namespace embedded::store {
namespace {

constexpr const char* Tables = R"sql(
CREATE TABLE tematica_library (key TEXT PRIMARY KEY NOT NULL, value);
CREATE TABLE tematica_tables (
  id INTEGER PRIMARY KEY NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL,
  row_count INTEGER NOT NULL);
CREATE TABLE tematica_fields (
  table_id INTEGER NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL,
  column_name TEXT NOT NULL, format INTEGER NOT NULL, type INTEGER NOT NULL,
  required INTEGER NOT NULL, constraint_0 TEXT, constraint_1 TEXT, constraint_2 TEXT,
  constraint_3 TEXT, PRIMARY KEY (table_id, position));
CREATE TABLE tematica_parts (
  physical_name TEXT PRIMARY KEY NOT NULL, table_id INTEGER NOT NULL, theme_id INTEGER NOT NULL,
  row_count INTEGER NOT NULL, fids TEXT);
CREATE TABLE tematica_marks (
  table_id INTEGER PRIMARY KEY NOT NULL, rows_changed INTEGER NOT NULL DEFAULT 0,
  cells_changed INTEGER NOT NULL DEFAULT 0, shapes_changed INTEGER NOT NULL DEFAULT 0);
CREATE TABLE tematica_themes (
  id INTEGER PRIMARY KEY NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL,
  table_id INTEGER NOT NULL, type INTEGER NOT NULL, coords INTEGER NOT NULL,
  has_m INTEGER NOT NULL, drawing INTEGER NOT NULL, visible INTEGER NOT NULL,
  locked INTEGER NOT NULL, entity_count INTEGER NOT NULL, min_x, min_y, max_x, max_y,
  srs_id INTEGER NOT NULL, srs_authority TEXT, srs_code INTEGER, srs_definition TEXT,
  label_field INTEGER NOT NULL, label_style TEXT, label_colour INTEGER, label_height,
  label_rotation, label_horizontal, label_vertical, label_aligned INTEGER,
  map_type INTEGER NOT NULL, map_field INTEGER NOT NULL, map_classes INTEGER NOT NULL);
CREATE TABLE tematica_classes (
  theme_id INTEGER NOT NULL, position INTEGER NOT NULL, colour INTEGER, outline INTEGER,
  hatch INTEGER, width INTEGER, symbol INTEGER, scale, rotation, line_type TEXT, label TEXT,
  low TEXT, high TEXT, is_default INTEGER, PRIMARY KEY (theme_id, position));
CREATE TABLE tematica_entity_order (theme_id INTEGER PRIMARY KEY NOT NULL, fids BLOB NOT NULL);
CREATE TABLE tematica_rings (
  theme_id INTEGER NOT NULL, fid INTEGER NOT NULL, layout BLOB NOT NULL,
  PRIMARY KEY (theme_id, fid)) WITHOUT ROWID;
CREATE TABLE tematica_layers (position INTEGER PRIMARY KEY NOT NULL, id INTEGER NOT NULL,
  name TEXT NOT NULL);
CREATE TABLE tematica_points (
  id INTEGER PRIMARY KEY NOT NULL, name TEXT, description TEXT, sketch TEXT, photo_1 TEXT,
  photo_2 TEXT, photo_3 TEXT, photo_4 TEXT, photo_5 TEXT);
CREATE TABLE tematica_links (
  theme_id INTEGER NOT NULL, fid INTEGER NOT NULL, part INTEGER NOT NULL, vertex INTEGER NOT NULL,
  point INTEGER NOT NULL, PRIMARY KEY (theme_id, fid, part, vertex)) WITHOUT ROWID;
)sql";

constexpr std::array<const char*, 12> Names
    = { "tematica_library", "tematica_tables", "tematica_fields", "tematica_parts",
          "tematica_marks", "tematica_themes", "tematica_classes", "tematica_entity_order",
          "tematica_rings", "tematica_layers", "tematica_points", "tematica_links" };

void mix(std::uint64_t& mark, std::string_view text)
{
    // FNV-1a, with the length so that neighbouring texts cannot trade bytes.
    constexpr std::uint64_t Prime = 1099511628211ull;
    for (const char c : text)
        mark = (mark ^ static_cast<unsigned char>(c)) * Prime;
    mark = (mark ^ text.size()) * Prime;
}

} // namespace

void createLibraryTables(Connection& connection)
{
    connection.execute(Tables);
    Statement extension(connection,
        "INSERT INTO gpkg_extensions VALUES (?1, NULL, 'tematica_library', "
        "'docs/library-format.md of Tematica', 'write-only')");
    for (const char* name : Names) {
        extension.bindText(1, name);
        extension.run();
    }
    connection.execute("INSERT INTO tematica_library VALUES ('format_version', "
        + std::to_string(LibraryFormatVersion) + ")");
}

int libraryFormatOf(Connection& connection)
{
    if (!connection.hasTable("tematica_library"))
        return 0;
    return static_cast<int>(
        connection.integerOf("SELECT value FROM tematica_library WHERE key = 'format_version'"));
}

std::uint64_t linkedPointsMark(const Library& library)
{
    std::uint64_t mark = 14695981039346656037ull;
    const std::size_t count = library.linkedPointCount();
    for (std::size_t i = 0; i < count; ++i) {
        const LinkedPoint& point = library.linkedPoints()[i];
        mix(mark, point.name.View());
        mix(mark, point.description.View());
        mix(mark, point.sketch.View());
        for (const orv::String& photo : point.photos)
            mix(mark, photo.View());
    }
    return mark ^ count;
}

} // namespace embedded::store
