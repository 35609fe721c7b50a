// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ByteBuffer.h"
#include "embedded/store/CellText.h"
#include "embedded/store/LibraryTables.h"
#include "embedded/store/Schema.h"
#include "embedded/store/Statement.h"

#include <array>

namespace embedded::store {
namespace {

// A part whose row numbers come in more runs than this is not worth telling about: reading the
// numbers themselves is as quick.
constexpr std::size_t MostRuns = 2000;

/// Fills a statement's parameters one after another. Texts that are made here are kept until
/// the row is written.
class CRowBinder final {
public:
    CRowBinder(Connection& connection, const std::string& table, int columns)
        : m_statement(connection, sqlFor(table, columns))
    {
    }
    CRowBinder& integer(std::int64_t value)
    {
        m_statement.bindInteger(++m_next, value);
        return *this;
    }
    CRowBinder& real(double value)
    {
        m_statement.bindReal(++m_next, value);
        return *this;
    }
    CRowBinder& text(std::string_view value)
    {
        m_statement.bindText(++m_next, value);
        return *this;
    }
    CRowBinder& blob(std::string_view bytes)
    {
        m_statement.bindBlob(++m_next, bytes);
        return *this;
    }
    CRowBinder& null()
    {
        m_statement.bindNull(++m_next);
        return *this;
    }
    void write()
    {
        m_statement.run();
        m_next = 0;
    }

private:
    static std::string sqlFor(const std::string& table, int columns)
    {
        std::string sql = "INSERT INTO " + table + " VALUES (?";
        for (int i = 1; i < columns; ++i)
            sql += ", ?";
        return sql + ")";
    }
    Statement m_statement;
    int m_next = 0;
};

std::string runText(const StoredPart& part)
{
    std::string text;
    for (const FidRun& run : part.runs)
        text += (text.empty() ? "" : ",") + std::to_string(run.firstFid) + "-"
            + std::to_string(run.firstFid + run.count - 1);
    return text;
}

void writeFields(
    CRowBinder& rows, const gis::CDBTable& table, std::int64_t tableId, const StoredTable& stored)
{
    for (int i = 0; i < table.fieldCount(); ++i) {
        const gis::CField& field = *table.field(i);
        const StoredColumn* column = stored.columnOf(&field);
        rows.integer(tableId).integer(i).text(field.name.View());
        rows.text(column ? std::string_view(column->name) : std::string_view());
        rows.integer(static_cast<int>(field.format)).integer(static_cast<int>(field.type));
        rows.integer(field.requested ? 1 : 0);
        std::array<std::string, gis::ConstraintCount> texts;
        for (std::size_t c = 0; c < texts.size(); ++c) {
            texts[c] = encodedValue(field.constraints[c]);
            rows.text(texts[c]);
        }
        rows.write();
    }
}

void writeTables(
    Connection& connection, Library& library, const FileState& state, const ObjectIds& ids)
{
    CRowBinder tables(connection, "tematica_tables", 4);
    CRowBinder fields(connection, "tematica_fields", 11);
    CRowBinder parts(connection, "tematica_parts", 5);
    Statement mark(connection, "INSERT OR IGNORE INTO tematica_marks (table_id) VALUES (?1)");
    int position = 0;
    for (const gis::CDBTable* table : library.tables()) {
        const std::int64_t id = ids.tables.at(table);
        const StoredTable& stored = state.tables.at(id);
        tables.integer(id).integer(position++).text(table->name().View());
        tables.integer(stored.rowCount).write();
        writeFields(fields, *table, id, stored);
        for (const StoredPart& part : stored.parts) {
            const std::string runs = runText(part);
            parts.text(part.physicalName).integer(id).integer(part.themeId);
            parts.integer(part.rowCount());
            if (stored.isRegular && part.runs.size() <= MostRuns)
                parts.text(runs);
            else
                parts.null();
            parts.write();
        }
        mark.bindInteger(1, id);
        mark.run();
    }
}

void writeLabel(CRowBinder& row, const gis::CTheme& theme)
{
    const gis::TOpzLabel& label = theme.label;
    row.integer(theme.table->indexOf(label.field)).text(label.styleName.View());
    row.integer(label.colour).real(label.heightDrawingUnits).real(label.rotationRadians);
    row.real(label.horizontalOffset).real(label.verticalOffset).integer(label.aligned ? 1 : 0);
}

void writeClasses(CRowBinder& rows, const gis::CTheme& theme, std::int64_t themeId)
{
    int position = 0;
    for (const auto& entry : theme.map.classes) {
        const std::string low = encodedValue(entry->low), high = encodedValue(entry->high);
        rows.integer(themeId).integer(position++).integer(entry->colour);
        rows.integer(entry->colourOutLine).integer(entry->hatchType).integer(entry->width);
        rows.integer(entry->symbol).real(entry->scale).real(entry->rotationRadians);
        rows.text(entry->ltypeName.View()).text(entry->label.View()).text(low).text(high);
        rows.integer(entry->isDefault ? 1 : 0).write();
    }
}

void writeExtent(CRowBinder& row, const StoredTheme& stored)
{
    const Box& box = stored.extent;
    for (const double side : { box.minX, box.minY, box.maxX, box.maxY }) {
        if (box.isEmpty())
            row.null();
        else
            row.real(side);
    }
}

void writeOrder(
    CRowBinder& rows, std::int64_t themeId, const StoredTheme& stored, const StoredTable& table)
{
    const StoredPart* part = table.partOf(themeId);
    if (stored.rowPlaces.empty() || !part)
        return;
    std::vector<std::int64_t> fids;
    for (const FidRun& run : part->runs)
        for (int i = 0; i < run.count; ++i)
            fids.push_back(run.firstFid + i);
    std::string bytes;
    for (const int place : stored.rowPlaces)
        putVarint(bytes, static_cast<std::uint64_t>(fids[static_cast<std::size_t>(place)]));
    rows.integer(themeId).blob(bytes).write();
}

void writeThemes(
    Connection& connection, Library& library, const FileState& state, const ObjectIds& ids)
{
    CRowBinder themes(connection, "tematica_themes", 30);
    CRowBinder classes(connection, "tematica_classes", 14);
    CRowBinder orders(connection, "tematica_entity_order", 2);
    int position = 0;
    for (const gis::CTheme* theme : library.themes()) {
        const std::int64_t id = ids.themes.at(theme);
        const StoredTheme& stored = state.themes.at(id);
        themes.integer(id).integer(position++).text(theme->name.View());
        themes.integer(stored.tableId).integer(static_cast<int>(theme->type));
        themes.integer(static_cast<int>(theme->coords));
        themes.integer(theme->entities().hasM() ? 1 : 0).integer(theme->targetDrawing);
        themes.integer(theme->visible ? 1 : 0).integer(theme->locked ? 1 : 0);
        themes.integer(stored.entityCount);
        writeExtent(themes, stored);
        themes.integer(stored.layout.srsId).text(theme->referenceSystem.authority);
        themes.integer(theme->referenceSystem.code).text(theme->referenceSystem.definition);
        writeLabel(themes, *theme);
        themes.integer(static_cast<int>(theme->map.type));
        themes.integer(theme->table->indexOf(theme->map.field));
        themes.integer(theme->map.classCount).write();
        writeClasses(classes, *theme, id);
        writeOrder(orders, id, stored, state.tables.at(stored.tableId));
    }
}

void writePoints(Connection& connection, Library& library, FileState& state)
{
    const std::uint64_t mark = linkedPointsMark(library);
    if (mark == state.linkedPointsMark)
        return;
    state.linkedPointsMark = mark;
    connection.execute("DELETE FROM tematica_points");
    CRowBinder rows(connection, "tematica_points", 9);
    for (std::size_t i = 0; i < library.linkedPointCount(); ++i) {
        const LinkedPoint& point = library.linkedPoints()[i];
        rows.integer(static_cast<std::int64_t>(i) + 1).text(point.name.View());
        rows.text(point.description.View()).text(point.sketch.View());
        for (const orv::String& photo : point.photos)
            rows.text(photo.View());
        rows.write();
    }
}

void writeLibraryValue(Connection& connection, const char* key, std::int64_t value)
{
    Statement insert(connection, "INSERT OR REPLACE INTO tematica_library VALUES (?1, ?2)");
    insert.bindText(1, key);
    insert.bindInteger(2, value);
    insert.run();
}

} // namespace

void writeLibraryTables(
    Connection& connection, Library& library, FileState& state, const ObjectIds& ids)
{
    for (const char* table : { "tematica_tables", "tematica_fields", "tematica_parts",
             "tematica_themes", "tematica_classes", "tematica_entity_order", "tematica_layers" })
        connection.execute(std::string("DELETE FROM ") + table);
    writeTables(connection, library, state, ids);
    connection.execute(
        "DELETE FROM tematica_marks WHERE table_id NOT IN (SELECT id FROM tematica_tables)");
    writeThemes(connection, library, state, ids);
    CRowBinder layers(connection, "tematica_layers", 3);
    int position = 0;
    for (const Layer& layer : library.layers())
        layers.integer(position++).integer(layer.id).text(layer.name.View()).write();
    writePoints(connection, library, state);
    const auto active = ids.themes.find(library.activeTheme());
    writeLibraryValue(connection, "active_theme", active == ids.themes.end() ? 0 : active->second);
    writeLibraryValue(connection, "target_drawing", library.targetDrawing());
}

} // namespace embedded::store
