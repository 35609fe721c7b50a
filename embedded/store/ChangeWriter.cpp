// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ChangeWriter.h"

#include "embedded/store/Schema.h"

#include <algorithm>
#include <memory>

namespace embedded::store {
namespace {

// More new entries than this: packing the whole index anew is quicker than inserting them.
constexpr std::size_t MostSingleInsertions = 5000;

bool hasDeadPart(const StoredTable& stored, const Library& library)
{
    return std::any_of(stored.parts.begin(), stored.parts.end(), [&](const StoredPart& part) {
        return part.themeId != 0
            && std::none_of(library.themes().begin(), library.themes().end(),
                [&](const gis::CTheme* theme) { return theme->storeId == part.themeId; });
    });
}

bool isSameLayout(const ShapeLayout& left, const ShapeLayout& right)
{
    return left.type == right.type && left.hasZ == right.hasZ && left.hasM == right.hasM
        && left.srsId == right.srsId;
}

ShapeLayout storedLayoutNow(Connection& connection, const gis::CTheme& theme)
{
    return { theme.type, theme.entities().hasZ(), theme.entities().hasM(), false,
        registeredReferenceSystem(connection, theme.referenceSystem) };
}

// New entities go to the end of their layer with new rows; all else moves rows between tables.
bool growsOnlyAtItsEnd(Connection& connection, const FileState& state, const StoredTable& stored,
    const gis::CTheme& theme)
{
    const auto known = state.themes.find(theme.storeId);
    const bool isNew = theme.storeId == 0 || known == state.themes.end();
    const EntityStore& entities = theme.entities();
    const int first = isNew ? 0 : known->second.entityCount;
    if (entities.entityCount() < first)
        return false;
    if (!isNew && !isSameLayout(known->second.layout, storedLayoutNow(connection, theme)))
        return false;
    for (int i = first; i < entities.entityCount(); ++i) {
        if (gis::CDBTable::indexOf(EntityStore::rowOf(entities.entity(i))) < stored.rowCount)
            return false;
        if (!isNew && !known->second.layout.isMultiPoint && theme.type == gis::EntType::Points
            && needsMultiPoint(entities, i))
            return false;
    }
    return true;
}

bool hasChangedCells(const gis::CDBTable& table)
{
    std::vector<int> rows;
    std::vector<bool> fields;
    table.changedCells(rows, fields);
    return !rows.empty();
}

/// One statement for the changed fields in each part.
class CCellUpdater final {
public:
    CCellUpdater(SaveContext& context, gis::CDBTable& table, const StoredTable& stored,
        const std::vector<int>& fields)
        : m_cells(table, fields)
        , m_fidParameter(static_cast<int>(fields.size()) + 1)
    {
        std::string sets;
        int parameter = 0;
        for (const int field : fields)
            sets += (sets.empty() ? "" : ", ")
                + quoted(stored.columns[static_cast<std::size_t>(field)].name) + " = ?"
                + std::to_string(++parameter);
        for (const StoredPart& part : stored.parts)
            m_updates.push_back(std::make_unique<Statement>(context.connection,
                "UPDATE " + quoted(part.physicalName) + " SET " + sets + " WHERE "
                    + quoted(FidColumn) + " = ?" + std::to_string(m_fidParameter)));
    }
    void update(std::size_t part, int row)
    {
        m_cells.bind(*m_updates[part], row, 1);
        m_updates[part]->bindInteger(m_fidParameter, static_cast<std::int64_t>(row) + 1);
        m_updates[part]->run();
    }

private:
    CCellBinder m_cells;
    int m_fidParameter;
    std::vector<std::unique_ptr<Statement>> m_updates;
};

// The part that holds a row, looked for where the last one was.
class CPartOfRow final {
public:
    explicit CPartOfRow(const StoredTable& stored)
    {
        for (std::size_t p = 0; p < stored.parts.size(); ++p)
            for (const FidRun& run : stored.parts[p].runs)
                m_runs.emplace_back(run, p);
        std::sort(m_runs.begin(), m_runs.end(),
            [](const auto& a, const auto& b) { return a.first.firstRow < b.first.firstRow; });
    }
    [[nodiscard]] std::size_t of(int row)
    {
        while (m_at + 1 < m_runs.size() && m_runs[m_at + 1].first.firstRow <= row)
            ++m_at;
        return m_runs[m_at].second;
    }

private:
    std::vector<std::pair<FidRun, std::size_t>> m_runs;
    std::size_t m_at = 0;
};

void updateCells(SaveContext& context, gis::CDBTable& table, const StoredTable& stored)
{
    std::vector<int> rows;
    std::vector<bool> isChanged;
    table.changedCells(rows, isChanged);
    std::vector<int> fields;
    for (std::size_t i = 0; i < isChanged.size(); ++i)
        if (isChanged[i])
            fields.push_back(static_cast<int>(i));
    if (rows.empty() || fields.empty())
        return;
    CCellUpdater updater(context, table, stored, fields);
    CPartOfRow partOfRow(stored);
    for (const int row : rows) {
        if (row >= stored.rowCount)
            break;
        updater.update(partOfRow.of(row), row);
        context.progress.rowWritten();
    }
}

void addToIndex(Connection& connection, const StoredPart& part, std::vector<IndexEntry> added)
{
    const std::string index = rtreeName(part.physicalName, GeometryColumn);
    if (added.size() > MostSingleInsertions) {
        std::vector<IndexEntry> all = readIndex(connection, index);
        all.insert(all.end(), added.begin(), added.end());
        writePackedIndex(connection, index, std::move(all));
        return;
    }
    Statement insert(connection, "INSERT INTO " + quoted(index) + " VALUES (?1, ?2, ?3, ?4, ?5)");
    for (const IndexEntry& entry : added) {
        insert.bindInteger(1, entry.fid);
        for (int side = 0; side < 4; ++side)
            insert.bindReal(
                side + 2, static_cast<double>(entry.box[static_cast<std::size_t>(side)]));
        insert.run();
    }
}

bool hasNewRows(const gis::CDBTable& table, const gis::CTheme* theme, int firstRow)
{
    for (int row = firstRow; row < table.rowCount(); ++row)
        if (EntityStore::themeOf(gis::CDBTable::entityOf(table.row(row))) == theme)
            return true;
    return false;
}

void appendToTheme(SaveContext& context, gis::CDBTable& table, StoredTable& stored,
    gis::CTheme& theme, std::int64_t themeId)
{
    const bool isNew = stored.partOf(themeId) == nullptr;
    StoredPart& part
        = isNew ? createPart(context, table, stored, &theme, themeId) : *stored.partOf(themeId);
    StoredTheme& state = context.state.themes.at(themeId);
    if (theme.entities().entityCount() > state.entityCount) {
        CShapeWriter shapes(
            context.connection, themeId, theme.entities(), state.layout, context.points);
        appendRows(context, table, stored, part, &theme, stored.rowCount, &shapes);
        addToIndex(context.connection, part, std::move(shapes.indexEntries()));
        state.entityCount = theme.entities().entityCount();
        state.extent.add(shapes.extent());
        state.hasHints = state.hasHints || shapes.hasHints();
        state.hasLinks = state.hasLinks || shapes.hasLinks();
        noteEntityOrder(context, theme, themeId);
    }
    if (isNew)
        createTriggers(context.connection, part.physicalName, state.tableId, themeId);
}

} // namespace

TableWork workFor(
    Connection& connection, const FileState& state, const Library& library, gis::CDBTable& table)
{
    const auto known = state.tables.find(table.storeId);
    if (table.storeId == 0 || known == state.tables.end() || table.structureChanged())
        return TableWork::Whole;
    const StoredTable& stored = known->second;
    if (table.rowCount() < stored.rowCount || hasDeadPart(stored, library))
        return TableWork::Whole;
    bool hasChanges = table.rowCount() > stored.rowCount || hasChangedCells(table);
    for (const gis::CTheme* theme : library.themes()) {
        if (theme->table != &table)
            continue;
        if (!growsOnlyAtItsEnd(connection, state, stored, *theme))
            return TableWork::Whole;
        hasChanges = hasChanges || theme->storeId == 0 || !stored.partOf(theme->storeId);
    }
    if (!hasChanges)
        return TableWork::Nothing;
    return stored.isRegular ? TableWork::Changes : TableWork::Whole;
}

std::int64_t rowsToWrite(const FileState& state, const gis::CDBTable& table, TableWork work)
{
    if (work == TableWork::Nothing)
        return 0;
    if (work == TableWork::Whole)
        return table.rowCount();
    std::vector<int> rows;
    std::vector<bool> fields;
    table.changedCells(rows, fields);
    return static_cast<std::int64_t>(rows.size()) + table.rowCount()
        - state.tables.at(table.storeId).rowCount;
}

void writeChanges(SaveContext& context, gis::CDBTable& table)
{
    const std::int64_t tableId = context.ids.tables.at(&table);
    StoredTable& stored = context.state.tables.at(tableId);
    updateCells(context, table, stored);
    for (const auto& [theme, themeId] : themesOn(context, table))
        appendToTheme(context, table, stored, *theme, themeId);
    if (hasNewRows(table, nullptr, stored.rowCount)) {
        const bool isNew = stored.partOf(0) == nullptr;
        StoredPart& part
            = isNew ? createPart(context, table, stored, nullptr, 0) : *stored.partOf(0);
        appendRows(context, table, stored, part, nullptr, stored.rowCount, nullptr);
        if (isNew)
            createTriggers(context.connection, part.physicalName, tableId, 0);
    }
    stored.rowCount = table.rowCount();
    Statement clear(context.connection,
        "UPDATE tematica_marks SET rows_changed = 0, cells_changed = 0 WHERE table_id = ?1");
    clear.bindInteger(1, tableId);
    clear.run();
}

} // namespace embedded::store
