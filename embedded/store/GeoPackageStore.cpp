// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/GeoPackageStore.h"

#include "embedded/model/Table.h"
#include "embedded/model/Theme.h"
#include "embedded/store/Names.h"
#include "embedded/store/PartReader.h"
#include "embedded/store/RTreePacker.h"
#include "embedded/store/Statement.h"

#include <algorithm>

namespace embedded::store {
namespace {

std::map<std::int64_t, std::string> hintsOf(Connection& connection, std::int64_t themeId)
{
    std::map<std::int64_t, std::string> hints;
    Statement rows(connection, "SELECT fid, layout FROM tematica_rings WHERE theme_id = ?1");
    rows.bindInteger(1, themeId);
    while (rows.step())
        hints.emplace(rows.integer(0), rows.blob(1));
    return hints;
}

// Entities by the place of their rows in the layer.
std::vector<int> entityOfPlace(const StoredTheme& theme)
{
    std::vector<int> entities(theme.rowPlaces.size());
    for (std::size_t i = 0; i < theme.rowPlaces.size(); ++i)
        entities[static_cast<std::size_t>(theme.rowPlaces[i])] = static_cast<int>(i);
    return entities;
}

void linkVertices(Connection& connection, std::int64_t themeId, const StoredTheme& theme,
    const StoredPart& part, const std::vector<LinkedPoint*>& points, EntityStore& entities)
{
    const CPlaceFinder finder(part);
    const std::vector<int> entityAt = entityOfPlace(theme);
    Statement rows(
        connection, "SELECT fid, part, vertex, point FROM tematica_links WHERE theme_id = ?1");
    rows.bindInteger(1, themeId);
    while (rows.step()) {
        const int place = finder.placeOf(rows.integer(0));
        const std::int64_t point = rows.integer(3);
        if (place < 0 || point < 1 || point > static_cast<std::int64_t>(points.size()))
            continue;
        const int entity = entityAt.empty() ? place : entityAt[static_cast<std::size_t>(place)];
        const auto partIndex = static_cast<int>(rows.integer(1));
        const auto vertex = static_cast<int>(rows.integer(2));
        if (entity < entities.entityCount() && partIndex >= 0
            && partIndex < entities.partCount(entity) && vertex >= 0
            && vertex < entities.part(entity, partIndex).count)
            entities.linkPoint(
                entity, partIndex, vertex, points[static_cast<std::size_t>(point - 1)]);
    }
}

// Counted up in the file's head with each transaction; empty where a write-ahead log holds them
// back.
std::string changeCounterOf(Connection& connection)
{
    const std::string head = connection.head();
    constexpr std::size_t WriteVersion = 18;
    constexpr std::size_t Counter = 24;
    const bool hasLog = head.size() < Counter + 4 || head[WriteVersion] == 2;
    return hasLog ? std::string() : head.substr(Counter, 4);
}

} // namespace

CGeoPackageStore::CGeoPackageStore(std::unique_ptr<Connection> connection, Hold hold)
    : m_reading(std::move(connection))
    , m_hold(hold)
{
}

CGeoPackageStore::~CGeoPackageStore() = default;

Result<void> CGeoPackageStore::readColumn(const gis::CDBTable& table, const gis::CField& field,
    Column& column, const IsStopped& isStopped)
{
    const std::lock_guard lock(m_mutex);
    auto result = guarded([&] {
        const auto stored = m_state.tables.find(table.storeId);
        const StoredColumn* source
            = stored == m_state.tables.end() ? nullptr : stored->second.columnOf(&field);
        if (!source)
            failWith(ErrorCode::ReadFailed, path(), "the column is not in the file any more");
        connection().setActivity(Activity::Reading);
        readTableColumn(m_reading, stored->second, *source, field.format, column, isStopped);
        if (column.rowCount() > table.storedRowCount())
            column.truncate(table.storedRowCount());
        if (column.rowCount() < table.storedRowCount())
            failWith(ErrorCode::DamagedFile, path(), "rows are missing");
        noteRead(&field);
    });
    if (!result)
        column.truncate(0);
    return result;
}

Result<void> CGeoPackageStore::readGeometry(gis::CTheme& theme, EntityStore& entities)
{
    const std::lock_guard lock(m_mutex);
    auto result = guarded([&] {
        const auto stored = m_state.themes.find(theme.storeId);
        if (stored == m_state.themes.end())
            failWith(ErrorCode::ReadFailed, path(), "the theme is not in the file any more");
        entities.beginGeometry();
        const StoredPart* part = m_state.tables.at(stored->second.tableId).partOf(theme.storeId);
        connection().setActivity(Activity::Reading);
        if (part) {
            const auto hints = stored->second.hasHints ? hintsOf(connection(), theme.storeId)
                                                       : std::map<std::int64_t, std::string>();
            putShapes(readLayerShapes(m_reading, *part, stored->second, hints),
                stored->second.rowPlaces, entities);
            if (stored->second.hasLinks)
                linkVertices(connection(), theme.storeId, stored->second, *part,
                    m_state.linkedPoints, entities);
        }
        noteRead(&theme);
    });
    if (!result)
        entities.beginGeometry();
    return result;
}

Box CGeoPackageStore::storedExtent(const StoredTheme& stored)
{
    if (stored.isExtentExact)
        return stored.extent;
    const auto table = m_state.tables.find(stored.tableId);
    if (!stored.hasIndex || table == m_state.tables.end())
        return {};
    for (const StoredPart& part : table->second.parts)
        if (part.themeId != 0 && &m_state.themes.at(part.themeId) == &stored)
            return indexExtent(connection(), rtreeName(part.physicalName, stored.geometryColumn));
    return {};
}

Box CGeoPackageStore::extentOf(const gis::CTheme& theme)
{
    const std::lock_guard lock(m_mutex);
    const auto stored = m_state.themes.find(theme.storeId);
    if (stored == m_state.themes.end())
        return {};
    const auto box = guarded([&] { return storedExtent(stored->second); });
    return box ? box.value() : Box {};
}

bool CGeoPackageStore::entitiesIn(
    const gis::CTheme& theme, const Box& box, std::vector<int>& entityIndexes)
{
    const std::lock_guard lock(m_mutex);
    entityIndexes.clear();
    const auto found = m_state.themes.find(theme.storeId);
    if (found == m_state.themes.end() || !found->second.hasIndex
        || found->second.entityCount != theme.entities().entityCount())
        return false;
    const StoredTheme& stored = found->second;
    const StoredPart* part = m_state.tables.at(stored.tableId).partOf(theme.storeId);
    if (!part)
        return true; // no entities
    const auto result = guarded([&] {
        const CPlaceFinder finder(*part);
        const std::vector<int> entityAt = entityOfPlace(stored);
        Statement hits(connection(),
            "SELECT id FROM " + quoted(rtreeName(part->physicalName, stored.geometryColumn))
                + " WHERE maxx >= ?1 AND minx <= ?2 AND maxy >= ?3 AND miny <= ?4");
        hits.bindReal(1, box.minX);
        hits.bindReal(2, box.maxX);
        hits.bindReal(3, box.minY);
        hits.bindReal(4, box.maxY);
        while (hits.step())
            if (const int place = finder.placeOf(hits.integer(0)); place >= 0)
                entityIndexes.push_back(
                    entityAt.empty() ? place : entityAt[static_cast<std::size_t>(place)]);
        std::sort(entityIndexes.begin(), entityIndexes.end());
    });
    return result.ok();
}

void CGeoPackageStore::noteRead(const void* what)
{
    if (m_hold == Hold::Write)
        return;
    m_readThings.insert(what);
    std::size_t things = m_state.themes.size();
    for (const auto& [id, table] : m_state.tables)
        things += table.columns.size();
    // Nothing is left that could change under the library: whoever wants to write may.
    if (m_readThings.size() >= things && connection().isInTransaction())
        connection().execute("COMMIT");
}

void CGeoPackageStore::beginHold()
{
    Connection& file = connection();
    if (file.isInTransaction())
        return;
    file.setActivity(Activity::Opening);
    if (m_hold == Hold::Write) {
        file.execute("BEGIN IMMEDIATE");
    } else {
        file.execute("BEGIN");
        // The lock comes with the first read.
        static_cast<void>(file.integerOf("SELECT count(*) FROM sqlite_master"));
    }
    const std::int64_t version = file.integerOf("PRAGMA data_version");
    const std::string counter = changeCounterOf(file);
    // After a save of ours that failed on the disk SQLite counts a new version, although the file
    // holds what it held; then the counter in the file tells.
    const bool isSame = m_fileVersion == 0 || version == m_fileVersion
        || (!counter.empty() && counter == m_changeCounter);
    if (isSame) {
        m_fileVersion = version;
        m_changeCounter = counter;
    }
    if (!isSame) {
        file.rollback();
        failWith(ErrorCode::WriteFailed, file.path(),
            "another program has changed the file since the last save");
    }
}

void CGeoPackageStore::commitHold()
{
    Connection& file = connection();
    m_reading.dropSecond();
    file.setActivity(Activity::Writing);
    file.setBusyTimeout(PatienceMs);
    file.execute("COMMIT");
    // What was written is safe now. Should another program come in between, the next save says so.
    static_cast<void>(guarded([&] { beginHold(); }));
}

void CGeoPackageStore::rollbackHold() noexcept
{
    connection().rollback();
    static_cast<void>(guarded([&] { beginHold(); }));
}

} // namespace embedded::store
