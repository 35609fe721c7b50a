// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/TableWriter.h"

#include "embedded/store/Schema.h"

#include <numeric>

namespace embedded::store {
namespace {

std::vector<int> allFields(const gis::CDBTable& table)
{
    std::vector<int> fields(static_cast<std::size_t>(table.fieldCount()));
    std::iota(fields.begin(), fields.end(), 0);
    return fields;
}

void nameColumns(const gis::CDBTable& table, StoredTable& stored)
{
    CNameSet names;
    names.take(FidColumn);
    names.take(GeometryColumn);
    names.take("rowid"); // hides the row number of the same name from other programs
    for (int i = 0; i < table.fieldCount(); ++i) {
        const gis::CField* field = table.field(i);
        stored.columns.push_back({ field, names.takeFree(safeColumnName(field->name.View())) });
    }
}

std::vector<DeclaredColumn> declared(const StoredTable& stored)
{
    std::vector<DeclaredColumn> columns;
    for (const StoredColumn& column : stored.columns)
        columns.push_back({ column.name, declaredType(column.field->format) });
    return columns;
}

bool hasRowWithoutEntity(const gis::CDBTable& table)
{
    for (int row = 0; row < table.rowCount(); ++row)
        if (!gis::CDBTable::entityOf(table.row(row)))
            return true;
    return false;
}

bool isMultiPointTheme(const gis::CTheme& theme)
{
    const EntityStore& entities = theme.entities();
    for (int i = 0; i < entities.entityCount(); ++i)
        if (needsMultiPoint(entities, i))
            return true;
    return false;
}

void writeThemePart(SaveContext& context, gis::CDBTable& table, StoredTable& stored,
    gis::CTheme& theme, std::int64_t themeId)
{
    StoredPart& part = createPart(context, table, stored, &theme, themeId);
    StoredTheme& state = context.state.themes.at(themeId);
    CShapeWriter shapes(
        context.connection, themeId, theme.entities(), state.layout, context.points);
    appendRows(context, table, stored, part, &theme, 0, &shapes);
    writePackedIndex(context.connection, rtreeName(part.physicalName, GeometryColumn),
        std::move(shapes.indexEntries()));
    state.entityCount = theme.entities().entityCount();
    state.extent = shapes.extent();
    state.hasHints = shapes.hasHints();
    state.hasLinks = shapes.hasLinks();
    noteEntityOrder(context, theme, themeId);
}

} // namespace

std::vector<std::pair<gis::CTheme*, std::int64_t>> themesOn(
    const SaveContext& context, const gis::CDBTable& table)
{
    std::vector<std::pair<gis::CTheme*, std::int64_t>> themes;
    for (gis::CTheme* theme : context.library.themes())
        if (theme->table == &table)
            themes.emplace_back(theme, context.ids.themes.at(theme));
    return themes;
}

ShapeLayout layoutOf(Connection& connection, const gis::CTheme& theme)
{
    ShapeLayout layout;
    layout.type = theme.type;
    layout.hasZ = theme.entities().hasZ();
    layout.hasM = theme.entities().hasM();
    layout.isMultiPoint = theme.type == gis::EntType::Points && isMultiPointTheme(theme);
    layout.srsId = registeredReferenceSystem(connection, theme.referenceSystem);
    return layout;
}

bool needsMultiPoint(const EntityStore& entities, int entityIndex)
{
    const int parts = entities.partCount(entityIndex);
    return parts > 1 || (parts == 1 && entities.part(entityIndex, 0).count != 1);
}

StoredPart& createPart(SaveContext& context, gis::CDBTable& table, StoredTable& stored,
    gis::CTheme* theme, std::int64_t themeId)
{
    const orv::String& wanted = theme ? theme->name : table.name();
    StoredPart part;
    part.physicalName = context.names.takeFree(safeTableName(wanted.View()));
    part.themeId = themeId;
    if (theme) {
        StoredTheme& state = context.state.themes[themeId];
        state = {};
        state.tableId = context.ids.tables.at(&table);
        state.layout = layoutOf(context.connection, *theme);
        createFeatureTable(
            context.connection, part.physicalName, declared(stored), wanted.Bytes(), state.layout);
    } else {
        createAttributesTable(
            context.connection, part.physicalName, declared(stored), wanted.Bytes());
    }
    stored.parts.push_back(std::move(part));
    return stored.parts.back();
}

void appendRows(SaveContext& context, gis::CDBTable& table, StoredTable& stored, StoredPart& part,
    const gis::CTheme* theme, int firstRow, CShapeWriter* shapes)
{
    Statement insert(
        context.connection, insertSql(part.physicalName, stored.columns, shapes != nullptr));
    CCellBinder cells(table, allFields(table));
    const int shapeParameter = table.fieldCount() + 2;
    for (int row = firstRow; row < table.rowCount(); ++row) {
        const gis::CEnt* ent = gis::CDBTable::entityOf(table.row(row));
        if (EntityStore::themeOf(ent) != theme)
            continue;
        const std::int64_t fid = static_cast<std::int64_t>(row) + 1;
        insert.bindInteger(1, fid);
        cells.bind(insert, row, 2);
        if (shapes)
            shapes->bind(insert, shapeParameter, EntityStore::indexOf(ent), fid);
        insert.run();
        part.addRow(fid, row);
        context.progress.rowWritten();
    }
}

void writeWholeTable(SaveContext& context, gis::CDBTable& table)
{
    const std::int64_t tableId = context.ids.tables.at(&table);
    StoredTable& stored = context.state.tables[tableId];
    stored = {};
    nameColumns(table, stored);
    const auto themes = themesOn(context, table);
    for (const auto& [theme, themeId] : themes)
        writeThemePart(context, table, stored, *theme, themeId);
    if (themes.empty() || hasRowWithoutEntity(table)) {
        StoredPart& part = createPart(context, table, stored, nullptr, 0);
        appendRows(context, table, stored, part, nullptr, 0, nullptr);
    }
    stored.rowCount = table.rowCount();
    context.connection.execute(
        "DELETE FROM tematica_marks WHERE table_id = " + std::to_string(tableId));
    for (const StoredPart& part : stored.parts)
        createTriggers(context.connection, part.physicalName, tableId, part.themeId);
}

void noteEntityOrder(SaveContext& context, const gis::CTheme& theme, std::int64_t themeId)
{
    StoredTheme& state = context.state.themes.at(themeId);
    const StoredPart* part = context.state.tables.at(state.tableId).partOf(themeId);
    const EntityStore& entities = theme.entities();
    state.rowPlaces.clear();
    if (!part || part->rowCount() != entities.entityCount())
        failWith(ErrorCode::Internal, context.connection.path(), "an entity without a row");
    std::vector<int> places(static_cast<std::size_t>(entities.entityCount()));
    bool isSame = true;
    int place = 0;
    for (const FidRun& run : part->runs)
        for (int i = 0; i < run.count; ++i, ++place) {
            const int entity
                = EntityStore::indexOf(gis::CDBTable::entityOf(theme.table->row(run.firstRow + i)));
            isSame = isSame && entity == place;
            places[static_cast<std::size_t>(entity)] = place;
        }
    if (!isSame)
        state.rowPlaces = std::move(places);
}

} // namespace embedded::store
