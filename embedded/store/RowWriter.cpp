// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/RowWriter.h"

#include "embedded/store/CellText.h"
#include "embedded/store/Names.h"

#include <cmath>

namespace embedded::store {

CCellBinder::CCellBinder(gis::CDBTable& table, const std::vector<int>& fields)
{
    for (const int field : fields)
        m_sources.push_back({ &table.column(field), {} });
}

void CCellBinder::bind(Statement& statement, int row, int firstParameter)
{
    for (Source& source : m_sources) {
        const int parameter = firstParameter++;
        if (!source.column->hasValue(row)) {
            statement.bindNull(parameter);
            continue;
        }
        switch (source.column->kind()) {
        case gis::ColumnKind::Boolean:
            statement.bindInteger(parameter, source.column->booleanAt(row) ? 1 : 0);
            break;
        case gis::ColumnKind::Integer:
            statement.bindInteger(parameter, source.column->integerAt(row));
            break;
        case gis::ColumnKind::Decimal:
            statement.bindReal(parameter, source.column->decimalAt(row));
            break;
        case gis::ColumnKind::Date:
            source.day = isoDay(source.column->integerAt(row));
            statement.bindText(parameter, { source.day.data(), source.day.size() });
            break;
        case gis::ColumnKind::Dictionary:
            statement.bindText(parameter, source.column->textAt(row));
            break;
        }
    }
}

PointNumbers pointNumbersOf(const Library& library)
{
    PointNumbers numbers;
    for (std::size_t i = 0; i < library.linkedPointCount(); ++i)
        numbers.emplace(&library.linkedPoints()[i], static_cast<std::int64_t>(i) + 1);
    return numbers;
}

CShapeWriter::CShapeWriter(Connection& connection, std::int64_t themeId,
    const EntityStore& entities, const ShapeLayout& layout, const PointNumbers& points)
    : m_themeId(themeId)
    , m_entities(entities)
    , m_layout(layout)
    , m_points(points)
    , m_insertHint(connection, "INSERT OR REPLACE INTO tematica_rings VALUES (?1, ?2, ?3)")
    , m_insertLink(connection, "INSERT OR REPLACE INTO tematica_links VALUES (?1, ?2, ?3, ?4, ?5)")
{
}

void CShapeWriter::bind(Statement& statement, int parameter, int entityIndex, std::int64_t fid)
{
    m_shape.clear();
    const Box box = encodeShape(m_entities, entityIndex, m_layout, m_shape, m_hint);
    if (m_shape.empty())
        statement.bindNull(parameter);
    else
        statement.bindBlob(parameter, m_shape);
    m_extent.add(box);
    // An index cannot hold what has no place; such shapes are simply not found by rectangle.
    if (!box.isEmpty() && !std::isnan(box.minX + box.maxX + box.minY + box.maxY))
        m_indexEntries.push_back(indexEntry(fid, box));
    if (!m_hint.empty()) {
        m_hasHints = true;
        m_insertHint.bindInteger(1, m_themeId);
        m_insertHint.bindInteger(2, fid);
        m_insertHint.bindBlob(3, m_hint);
        m_insertHint.run();
    }
    if (m_entities.hasLinkedPoints())
        writeLinks(entityIndex, fid);
}

void CShapeWriter::writeLinks(int entityIndex, std::int64_t fid)
{
    for (int part = 0; part < m_entities.partCount(entityIndex); ++part) {
        const int vertices = m_entities.part(entityIndex, part).count;
        for (int vertex = 0; vertex < vertices; ++vertex) {
            const auto point = m_points.find(m_entities.linkedPoint(entityIndex, part, vertex));
            if (point == m_points.end())
                continue;
            m_hasLinks = true;
            m_insertLink.bindInteger(1, m_themeId);
            m_insertLink.bindInteger(2, fid);
            m_insertLink.bindInteger(3, part);
            m_insertLink.bindInteger(4, vertex);
            m_insertLink.bindInteger(5, point->second);
            m_insertLink.run();
        }
    }
}

std::string insertSql(
    const std::string& table, const std::vector<StoredColumn>& columns, bool hasShapes)
{
    std::string names = quoted(FidColumn), values = "?1";
    int parameter = 1;
    const auto add = [&](const std::string& name) {
        names += ", " + quoted(name);
        values += ", ?" + std::to_string(++parameter);
    };
    for (const StoredColumn& column : columns)
        add(column.name);
    if (hasShapes)
        add(GeometryColumn);
    return "INSERT INTO " + quoted(table) + " (" + names + ") VALUES (" + values + ")";
}

} // namespace embedded::store
