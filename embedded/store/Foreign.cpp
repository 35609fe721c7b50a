// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Foreign.h"

#include "embedded/store/LibraryBuilder.h"
#include "embedded/store/Names.h"
#include "embedded/store/PartScan.h"
#include "embedded/store/Schema.h"
#include "embedded/store/Statement.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <array>
#include <memory>

namespace embedded::store {
namespace {

bool isSameName(std::string_view left, std::string_view right)
{
    return orv::CompareIgnoreAsciiCase(left, right) == 0;
}

struct ForeignLayer {
    std::string table;
    bool hasShapes = false;
    std::string shapeColumn;
    std::string shapeType;
    std::int64_t srsId = -1;
    std::int64_t z = 0; // as registered: 0 never, 1 always, 2 maybe
    std::int64_t m = 0;
};

std::vector<ForeignLayer> layersOf(Connection& connection)
{
    std::vector<ForeignLayer> layers;
    const bool hasShapes = connection.hasTable("gpkg_geometry_columns");
    Statement rows(connection,
        std::string("SELECT c.table_name, lower(c.data_type)")
            + (hasShapes ? ", g.column_name, g.geometry_type_name, g.srs_id, g.z, g.m "
                           "FROM gpkg_contents c LEFT JOIN gpkg_geometry_columns g "
                           "ON lower(g.table_name) = lower(c.table_name)"
                         : ", NULL, NULL, NULL, NULL, NULL FROM gpkg_contents c")
            + " WHERE lower(c.data_type) IN ('features', 'attributes', 'aspatial') "
              "ORDER BY c.rowid");
    while (rows.step()) {
        ForeignLayer layer;
        layer.table = rows.text(0);
        layer.hasShapes = rows.text(1) == "features";
        layer.shapeColumn = rows.text(2);
        layer.shapeType = orv::FoldAsciiCase(rows.text(3));
        layer.srsId = rows.isNull(4) ? -1 : rows.integer(4);
        layer.z = rows.integer(5);
        layer.m = rows.integer(6);
        layers.push_back(std::move(layer));
    }
    return layers;
}

bool canRead(Connection& connection, const std::string& sql)
{
    try {
        Statement probe(connection, sql);
        return true;
    } catch (const StoreFailure&) {
        return false;
    }
}

// The key where it is a whole number, else the row number that every table has; a view, or a
// table without row numbers, is read in the order that it gives.
std::string fidColumnOf(
    Connection& connection, const std::string& table, const std::vector<PhysicalColumn>& columns)
{
    Statement kind(connection,
        "SELECT type FROM sqlite_master WHERE lower(name) = lower(?1) "
        "AND type IN ('table', 'view')");
    kind.bindText(1, table);
    if (!kind.step() || kind.text(0) != "table")
        return {};
    const auto keys = std::count_if(
        columns.begin(), columns.end(), [](const PhysicalColumn& c) { return c.isKey; });
    for (const PhysicalColumn& column : columns)
        if (keys == 1 && column.isKey && isSameName(column.type, "integer"))
            return column.name;
    return canRead(connection, "SELECT _rowid_ FROM " + quoted(table)) ? "_rowid_" : std::string();
}

/// What the shapes of a layer are.
struct ShapeCensus {
    struct Kind {
        std::int64_t count = 0;
        bool hasZ = false;
        bool hasM = false;
    };
    std::array<Kind, 6> kinds {}; // by gis::EntType
    std::int64_t others = 0;
    [[nodiscard]] const Kind& of(gis::EntType type) const
    {
        return kinds[static_cast<std::size_t>(type)];
    }
};

ShapeCensus censusOf(Connection& connection, const ForeignLayer& layer)
{
    ShapeCensus census;
    const std::string column = quoted(layer.shapeColumn);
    Statement rows(connection,
        "SELECT " + column + " FROM " + quoted(layer.table) + " WHERE " + column + " IS NOT NULL");
    while (rows.step()) {
        const ShapeLook look = lookAtShape(rows.blob(0));
        if (look.kind < 0)
            ++census.others;
        if (look.kind <= 0)
            continue;
        ShapeCensus::Kind& kind = census.kinds[static_cast<std::size_t>(look.kind)];
        ++kind.count;
        kind.hasZ = kind.hasZ || look.hasZ;
        kind.hasM = kind.hasM || look.hasM;
    }
    return census;
}

// The declared kind, or where any is allowed the one that most shapes are of.
gis::EntType typeOf(const ForeignLayer& layer, const ShapeCensus& census)
{
    using gis::EntType;
    if (layer.shapeType.ends_with("point"))
        return EntType::Points;
    if (layer.shapeType.ends_with("linestring") || layer.shapeType.ends_with("curve"))
        return EntType::Lines;
    if (layer.shapeType.ends_with("polygon") || layer.shapeType.ends_with("surface"))
        return EntType::Polygons;
    EntType most = EntType::Points;
    for (const EntType type : { EntType::Lines, EntType::Polygons })
        if (census.of(type).count > census.of(most).count)
            most = type;
    return most;
}

void addTheme(Connection& connection, Library& library, FileState& state, const ForeignLayer& layer,
    gis::CDBTable* table, std::int64_t tableId, std::int64_t id, Report& report)
{
    const ShapeCensus census = censusOf(connection, layer);
    const gis::EntType type = typeOf(layer, census);
    // Heights and measures that are there are kept, also where the layer is registered without.
    const bool hasZ = layer.z == 1 || census.of(type).hasZ;
    const bool hasM = layer.m == 1 || census.of(type).hasM;
    using gis::EntTypeCoords;
    auto theme = std::make_unique<gis::CTheme>(library, table, orv::String(layer.table), type,
        hasZ       ? EntTypeCoords::XYZ
            : hasM ? EntTypeCoords::XYM
                   : EntTypeCoords::XY,
        hasM);
    theme->storeId = id;
    theme->referenceSystem = referenceSystemOf(connection, layer.srsId);
    StoredTheme& stored = state.themes[id];
    stored.tableId = tableId;
    stored.geometryColumn = layer.shapeColumn;
    stored.layout = { type, hasZ, hasM, false, static_cast<std::int32_t>(layer.srsId) };
    stored.isExtentExact = false;
    stored.hasIndex = connection.hasTable(rtreeName(layer.table, layer.shapeColumn));
    addStoredEntities(*theme, *state.tables.at(tableId).partOf(id), stored);
    std::int64_t unsupported = census.others;
    for (const gis::EntType other :
        { gis::EntType::Points, gis::EntType::Lines, gis::EntType::Polygons })
        if (other != type)
            unsupported += census.of(other).count;
    if (unsupported > 0)
        report.add({ FindingCode::GeometryUnsupported, FindingSeverity::Warning, layer.table, {},
            unsupported, 0 });
    library.adoptTheme(std::move(theme));
}

void addLayer(Connection& connection, Library& library, FileState& state, const ForeignLayer& layer,
    Report& report)
{
    const auto columns = columnsOf(connection, layer.table);
    StoredPart part;
    part.physicalName = layer.table;
    part.fidColumn = fidColumnOf(connection, layer.table, columns);
    std::vector<PhysicalColumn> attributes;
    for (const PhysicalColumn& column : columns)
        if (!isSameName(column.name, part.fidColumn)
            && !(layer.hasShapes && isSameName(column.name, layer.shapeColumn)))
            attributes.push_back(column);
    auto owned = std::make_unique<gis::CDBTable>(library, orv::String(layer.table));
    gis::CDBTable* table = owned.get();
    const std::int64_t tableId = state.newId();
    StoredTable& stored = state.tables[tableId];
    for (const GuessedField& field : guessFields(connection, layer.table, attributes, report))
        addGuessedField(*table, stored, field);
    const std::int64_t themeId = layer.hasShapes ? state.newId() : 0;
    part.themeId = themeId;
    stored.parts.push_back(std::move(part));
    scanRuns(connection, stored);
    table->storeId = tableId;
    table->markStored(stored.rowCount);
    library.adoptTable(std::move(owned));
    if (layer.hasShapes)
        addTheme(connection, library, state, layer, table, tableId, themeId, report);
}

// GDAL's placeholder in files that would have no layer at all.
bool isPlaceholder(const ForeignLayer& layer)
{
    return layer.table == "ogr_empty_table";
}

} // namespace

void readForeignTables(Connection& connection, Library& library, FileState& state, Report& report)
{
    for (const ForeignLayer& layer : layersOf(connection)) {
        std::string reason;
        if (isPlaceholder(layer))
            continue;
        if (!connection.hasTable(layer.table))
            reason = "registered, but not there";
        else if (layer.hasShapes && layer.shapeColumn.empty())
            reason = "no shape column is registered";
        if (reason.empty()) {
            addLayer(connection, library, state, layer, report);
            continue;
        }
        report.add(
            { FindingCode::LayerSkipped, FindingSeverity::Warning, layer.table, reason, 0, 0 });
    }
}

} // namespace embedded::store
