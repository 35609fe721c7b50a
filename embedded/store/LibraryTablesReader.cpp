// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ByteBuffer.h"
#include "embedded/store/CellText.h"
#include "embedded/store/LibraryBuilder.h"
#include "embedded/store/LibraryTables.h"
#include "embedded/store/Names.h"
#include "embedded/store/PartReader.h"
#include "embedded/store/Schema.h"
#include "embedded/store/Statement.h"
#include "embedded/store/TakeOver.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace embedded::store {
namespace {

template <typename Enum> Enum enumOf(std::int64_t value, std::initializer_list<Enum> known)
{
    for (const Enum candidate : known)
        if (static_cast<std::int64_t>(candidate) == value)
            return candidate;
    return *known.begin();
}

int intOf(Statement& row, int column)
{
    return static_cast<int>(
        std::clamp<std::int64_t>(row.integer(column), -2147483647 - 1, 2147483647));
}

gis::FieldFormat formatOf(std::int64_t value)
{
    using gis::FieldFormat;
    return enumOf(value,
        { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer, FieldFormat::Decimal,
            FieldFormat::List, FieldFormat::Date });
}

orv::String stringOf(Statement& row, int column)
{
    return orv::String(row.text(column));
}

/// Fields by the places that labels and maps name them by; null where another program took
/// the column away.
using FieldsByPlace = std::map<std::int64_t, std::vector<gis::CField*>>;

bool isGone(const StoredTable& stored, const std::string& column)
{
    return !stored.parts.empty()
        && std::none_of(stored.parts.begin(), stored.parts.end(),
            [&](const StoredPart& part) { return part.hasColumn(column); });
}

std::vector<std::string> columnNames(Connection& connection, std::int64_t tableId)
{
    std::vector<std::string> names;
    Statement rows(connection,
        "SELECT column_name FROM tematica_fields WHERE table_id = ?1 ORDER BY position");
    rows.bindInteger(1, tableId);
    while (rows.step())
        names.emplace_back(rows.text(0));
    return names;
}

std::vector<gis::CField*> readFields(Connection& connection, std::int64_t id, gis::CDBTable& table,
    StoredTable& stored, Report& report)
{
    std::vector<gis::CField*> fields;
    Statement rows(connection,
        "SELECT name, column_name, format, type, required, constraint_0, constraint_1, "
        "constraint_2, constraint_3 FROM tematica_fields WHERE table_id = ?1 "
        "ORDER BY position");
    rows.bindInteger(1, id);
    while (rows.step()) {
        fields.push_back(nullptr);
        const std::string column(rows.text(1));
        if (isGone(stored, column)) {
            report.add({ FindingCode::ColumnGone, FindingSeverity::Warning,
                std::string(rows.text(0)), table.name().Bytes(), 0, 0 });
            continue;
        }
        gis::CField* field = table.addField(stringOf(rows, 0), formatOf(rows.integer(2)));
        const std::int64_t type = rows.integer(3);
        if (type >= 0 && type <= static_cast<int>(gis::FieldType::Photo5))
            field->type = static_cast<gis::FieldType>(type);
        field->requested = rows.integer(4) != 0;
        for (int c = 0; c < gis::ConstraintCount; ++c)
            field->constraints[static_cast<std::size_t>(c)] = decodedValue(rows.text(5 + c));
        stored.columns.push_back({ field, column });
        fields.back() = field;
    }
    return fields;
}

struct PartRow {
    StoredPart part;
    int rows = 0;
    bool hasRuns = false;
};

std::vector<PartRow> readParts(Connection& connection, std::int64_t tableId, Report& report)
{
    std::vector<PartRow> parts;
    Statement rows(connection,
        "SELECT physical_name, theme_id, row_count, fids FROM tematica_parts "
        "WHERE table_id = ?1 ORDER BY theme_id");
    rows.bindInteger(1, tableId);
    while (rows.step()) {
        PartRow entry;
        entry.part.physicalName = rows.text(0);
        entry.part.themeId = rows.integer(1);
        entry.rows = intOf(rows, 2);
        entry.hasRuns = !rows.isNull(3) && parseRuns(rows.text(3), entry.rows, entry.part);
        if (connection.hasTable(entry.part.physicalName))
            parts.push_back(std::move(entry));
        else
            report.add({ FindingCode::LayerSkipped, FindingSeverity::Warning,
                entry.part.physicalName, "removed by another program", 0, 0 });
    }
    return parts;
}

void readTable(Connection& connection, Library& library, FileState& state, Statement& row,
    FieldsByPlace& fields, Report& report)
{
    const std::int64_t id = row.integer(0);
    if (id <= 0 || state.tables.contains(id))
        failWith(ErrorCode::DamagedFile, connection.path(), "a table without a number of its own");
    const int rowCount = intOf(row, 2);
    auto owned = std::make_unique<gis::CDBTable>(library, stringOf(row, 1));
    gis::CDBTable& table = *owned;
    StoredTable& stored = state.tables[id];
    const ChangeMarks marks = changeMarks(connection, id);
    bool isTrusted = !marks.rows;
    for (PartRow& entry : readParts(connection, id, report)) {
        isTrusted = isTrusted && entry.hasRuns && endsAsStored(connection, entry.part)
            && hasMarkTriggers(connection, entry.part.physicalName, entry.part.themeId != 0);
        stored.rowCount += entry.rows;
        stored.parts.push_back(std::move(entry.part));
    }
    isTrusted = isTrusted && stored.rowCount == rowCount;
    noteMissingColumns(connection, stored.parts, columnNames(connection, id));
    fields[id] = readFields(connection, id, table, stored, report);
    takeOverColumns(connection, table, stored, report);
    if (!isTrusted) {
        scanRuns(connection, stored);
        reportRows(table.name(), rowCount, stored, marks, report);
    }
    if (marks.cells || !isTrusted)
        reportCells(connection, table, stored, report);
    table.storeId = id;
    table.markStored(stored.rowCount);
    library.adoptTable(std::move(owned));
}

std::vector<int> placesOf(Connection& connection, std::int64_t themeId, const StoredPart& part)
{
    std::vector<int> places;
    Statement row(connection, "SELECT fids FROM tematica_entity_order WHERE theme_id = ?1");
    row.bindInteger(1, themeId);
    if (!row.step())
        return places;
    const CPlaceFinder finder(part);
    std::vector<bool> isPlaced(static_cast<std::size_t>(part.rowCount()));
    const auto put = [&](int place) {
        if (place < 0 || isPlaced[static_cast<std::size_t>(place)])
            return;
        isPlaced[static_cast<std::size_t>(place)] = true;
        places.push_back(place);
    };
    CByteReader reader(row.blob(0));
    while (reader.left() > 0 && reader.ok())
        put(finder.placeOf(static_cast<std::int64_t>(reader.varint())));
    // Rows that another program added follow, in the order of their numbers.
    for (int place = 0; place < part.rowCount(); ++place)
        put(place);
    return places;
}

gis::CField* fieldAt(const std::vector<gis::CField*>& fields, std::int64_t place)
{
    return place >= 0 && place < static_cast<std::int64_t>(fields.size())
        ? fields[static_cast<std::size_t>(place)]
        : nullptr;
}

void readLabel(
    Statement& row, int first, const std::vector<gis::CField*>& fields, gis::CTheme& theme)
{
    gis::TOpzLabel& label = theme.label;
    label.field = fieldAt(fields, row.integer(first));
    label.styleName = stringOf(row, first + 1);
    label.colour = intOf(row, first + 2);
    label.heightDrawingUnits = row.real(first + 3);
    label.rotationRadians = row.real(first + 4);
    label.horizontalOffset = row.real(first + 5);
    label.verticalOffset = row.real(first + 6);
    label.aligned = row.integer(first + 7) != 0;
}

void readClasses(Connection& connection, std::int64_t themeId, gis::CTheme& theme)
{
    Statement rows(connection,
        "SELECT colour, outline, hatch, width, symbol, scale, rotation, line_type, label, low, "
        "high, is_default FROM tematica_classes WHERE theme_id = ?1 ORDER BY position");
    rows.bindInteger(1, themeId);
    theme.map.classes.clear();
    while (rows.step()) {
        auto entry = std::make_unique<gis::CFeatureClass>();
        entry->colour = intOf(rows, 0);
        entry->colourOutLine = intOf(rows, 1);
        entry->hatchType = intOf(rows, 2);
        entry->width = intOf(rows, 3);
        entry->symbol = intOf(rows, 4);
        entry->scale = rows.real(5);
        entry->rotationRadians = rows.real(6);
        entry->ltypeName = stringOf(rows, 7);
        entry->label = stringOf(rows, 8);
        entry->low = decodedValue(rows.text(9));
        entry->high = decodedValue(rows.text(10));
        entry->isDefault = rows.integer(11) != 0;
        theme.map.classes.push_back(std::move(entry));
    }
}

// The layer as it is registered now: another program may have given it another system.
void readLayer(Connection& connection, const std::string& physicalName, std::int64_t storedSrs,
    gis::CTheme& theme, ShapeLayout& layout)
{
    layout.srsId = static_cast<std::int32_t>(storedSrs);
    Statement row(connection,
        "SELECT geometry_type_name, srs_id FROM gpkg_geometry_columns "
        "WHERE lower(table_name) = lower(?1)");
    row.bindText(1, physicalName);
    if (!row.step())
        return;
    layout.isMultiPoint = row.text(0) == "MULTIPOINT";
    if (row.integer(1) == storedSrs)
        return;
    theme.referenceSystem = referenceSystemOf(connection, row.integer(1));
    layout.srsId = static_cast<std::int32_t>(row.integer(1));
}

void readTheme(Connection& connection, Library& library, FileState& state, Statement& row,
    const FieldsByPlace& fields)
{
    const std::int64_t id = row.integer(0);
    if (id <= 0 || state.themes.contains(id))
        failWith(ErrorCode::DamagedFile, connection.path(), "a theme without a number of its own");
    const auto storedTable = state.tables.find(row.integer(2));
    const auto& tables = library.tables();
    const auto table = std::find_if(tables.begin(), tables.end(),
        [&](const gis::CDBTable* candidate) { return candidate->storeId == row.integer(2); });
    if (storedTable == state.tables.end() || table == tables.end())
        return;
    const StoredPart* part = storedTable->second.partOf(id);
    if (!part)
        return; // its layer was removed, which has been said
    using gis::EntType, gis::EntTypeCoords, gis::MapType;
    auto theme = std::make_unique<gis::CTheme>(library, *table, stringOf(row, 1),
        enumOf(row.integer(3), { EntType::Points, EntType::Lines, EntType::Polygons }),
        enumOf(row.integer(4), { EntTypeCoords::XY, EntTypeCoords::XYM, EntTypeCoords::XYZ }),
        row.integer(5) != 0);
    theme->storeId = id;
    theme->targetDrawing = row.integer(6);
    theme->visible = row.integer(7) != 0;
    theme->locked = row.integer(8) != 0;
    theme->referenceSystem
        = { std::string(row.text(16)), std::string(row.text(14)), intOf(row, 15) };
    const auto& placed = fields.at(storedTable->first);
    readLabel(row, 17, placed, *theme);
    theme->map.type
        = enumOf(row.integer(25), { MapType::None, MapType::SingleValue, MapType::Interval });
    theme->map.field = fieldAt(placed, row.integer(26));
    theme->map.classCount = intOf(row, 27);
    readClasses(connection, id, *theme);
    StoredTheme& stored = state.themes[id];
    stored.tableId = storedTable->first;
    stored.layout = { theme->type, theme->entities().hasZ(), theme->entities().hasM(), false, 0 };
    readLayer(connection, part->physicalName, row.integer(13), *theme, stored.layout);
    if (!row.isNull(9)) {
        stored.extent.add(row.real(9), row.real(10));
        stored.extent.add(row.real(11), row.real(12));
    }
    stored.isExtentExact = !changeMarks(connection, stored.tableId).shapes;
    stored.hasIndex = connection.hasTable(rtreeName(part->physicalName, stored.geometryColumn));
    stored.rowPlaces = placesOf(connection, id, *part);
    addStoredEntities(*theme, *part, stored);
    library.adoptTheme(std::move(theme));
}

void readThemes(
    Connection& connection, Library& library, FileState& state, const FieldsByPlace& fields)
{
    Statement rows(connection,
        "SELECT id, name, table_id, type, coords, has_m, drawing, visible, locked, min_x, "
        "min_y, max_x, max_y, srs_id, srs_authority, srs_code, srs_definition, label_field, "
        "label_style, label_colour, label_height, label_rotation, label_horizontal, "
        "label_vertical, label_aligned, map_type, map_field, map_classes FROM tematica_themes "
        "ORDER BY position");
    while (rows.step())
        readTheme(connection, library, state, rows, fields);
    Statement hints(connection, "SELECT DISTINCT theme_id FROM tematica_rings");
    while (hints.step())
        if (const auto theme = state.themes.find(hints.integer(0)); theme != state.themes.end())
            theme->second.hasHints = true;
    Statement links(connection, "SELECT DISTINCT theme_id FROM tematica_links");
    while (links.step())
        if (const auto theme = state.themes.find(links.integer(0)); theme != state.themes.end())
            theme->second.hasLinks = true;
}

/// Layers that another program put into the library's file, or renamed: they stay in the file and
/// are not the library's.
void noteOtherLayers(Connection& connection, const FileState& state, Report& report)
{
    std::set<std::string> own;
    for (const auto& [id, table] : state.tables)
        for (const StoredPart& part : table.parts)
            own.insert(orv::FoldAsciiCase(part.physicalName));
    Statement rows(connection,
        "SELECT table_name FROM gpkg_contents "
        "WHERE lower(data_type) IN ('features', 'attributes', 'aspatial') ORDER BY rowid");
    while (rows.step())
        if (!own.contains(orv::FoldAsciiCase(rows.text(0))))
            report.add({ FindingCode::LayerSkipped, FindingSeverity::Warning,
                std::string(rows.text(0)), "added by another program", 0, 0 });
}

void readLayersAndPoints(Connection& connection, Library& library, FileState& state)
{
    std::vector<Layer> layers;
    Statement rows(connection, "SELECT id, name FROM tematica_layers ORDER BY position");
    while (rows.step())
        layers.push_back({ rows.integer(0), stringOf(rows, 1) });
    library.restoreLayers(std::move(layers));
    Statement points(connection,
        "SELECT name, description, sketch, photo_1, photo_2, photo_3, photo_4, photo_5 FROM "
        "tematica_points ORDER BY id");
    while (points.step()) {
        LinkedPoint* point = library.addLinkedPoint();
        state.linkedPoints.push_back(point);
        point->name = stringOf(points, 0);
        point->description = stringOf(points, 1);
        point->sketch = stringOf(points, 2);
        for (int photo = 0; photo < 5; ++photo)
            point->photos[static_cast<std::size_t>(photo)] = stringOf(points, 3 + photo);
    }
    state.linkedPointsMark = linkedPointsMark(library);
}

} // namespace

void readLibraryTables(Connection& connection, Library& library, FileState& state, Report& report)
{
    Statement tables(
        connection, "SELECT id, name, row_count FROM tematica_tables ORDER BY position");
    FieldsByPlace fields;
    while (tables.step())
        readTable(connection, library, state, tables, fields, report);
    readThemes(connection, library, state, fields);
    noteOtherLayers(connection, state, report);
    readLayersAndPoints(connection, library, state);
    const std::int64_t active
        = connection.integerOf("SELECT value FROM tematica_library WHERE key = 'active_theme'");
    for (gis::CTheme* theme : library.themes())
        if (theme->storeId == active)
            library.restoreActiveTheme(theme);
    library.setTargetDrawing(
        connection.integerOf("SELECT value FROM tematica_library WHERE key = 'target_drawing'"));
    state.lastId = std::max(connection.integerOf("SELECT max(id) FROM tematica_tables"),
        connection.integerOf("SELECT max(id) FROM tematica_themes"));
}

} // namespace embedded::store
