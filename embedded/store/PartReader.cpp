// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/PartReader.h"

#include "embedded/store/Statement.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace embedded::store {
namespace {

struct FidRange {
    std::int64_t first = std::numeric_limits<std::int64_t>::min();
    std::int64_t last = std::numeric_limits<std::int64_t>::max();
    int rows = 0;
};

std::int64_t fidAt(const StoredPart& part, int place)
{
    for (const FidRun& run : part.runs) {
        if (place < run.count)
            return run.firstFid + place;
        place -= run.count;
    }
    return std::numeric_limits<std::int64_t>::max();
}

// The whole part, or one half of its rows.
FidRange rangeOf(const StoredPart& part, int half, int of)
{
    FidRange range;
    const int rows = part.rowCount();
    // Cut where a column's chunk ends, so that the second half's chunks can be taken as they are.
    const int cut = rows / 2 / gis::ColumnChunkRows * gis::ColumnChunkRows;
    range.rows = of == 1 ? rows : half == 0 ? cut : rows - cut;
    if (of == 1)
        return range;
    const std::int64_t middle = fidAt(part, cut);
    if (half == 0)
        range.last = middle - 1;
    else
        range.first = middle;
    return range;
}

// A view has no row numbers to cut at.
std::int64_t rowsToShare(const StoredPart& part)
{
    return part.fidColumn.empty() ? 0 : part.rowCount();
}

[[noreturn]] void failForRowCount(Connection& connection, const StoredPart& part)
{
    failWith(ErrorCode::DamagedFile, connection.path(),
        "\"" + part.physicalName + "\" has other rows than the file says");
}

CellCounts readPartColumn(ReadingPair& reading, const StoredPart& part, const StoredColumn& source,
    gis::FieldFormat format, Column& column, const IsStopped& isStopped)
{
    if (!part.hasColumn(source.name)) {
        column.appendEmpty(part.rowCount());
        return {};
    }
    std::array<CellCounts, 2> counts;
    Column upper(column.kind());
    reading.inHalves(rowsToShare(part), [&](Connection& connection, int half, int of) {
        const FidRange range = rangeOf(part, half, of);
        Column& target = half == 0 ? column : upper;
        target.reserve(range.rows);
        counts[static_cast<std::size_t>(half)] = readCells(connection,
            { part.physicalName, source.name, part.fidColumn, range.first, range.last }, format,
            target, isStopped);
        if (target.rowCount() != range.rows)
            failForRowCount(connection, part);
    });
    column.append(upper);
    counts[0].add(counts[1]);
    return counts[0];
}

/// Appends cells of one column to another, each distinct text looked up once.
class CCellCopier final {
public:
    CCellCopier(const Column& from, Column& to)
        : m_from(from)
        , m_to(to)
    {
        if (from.kind() == gis::ColumnKind::Dictionary)
            m_codes.assign(from.dictionary().size(), Dictionary::NoCode);
    }
    void copy(int first, int count)
    {
        for (int row = first; row < first + count; ++row)
            copyCell(row);
    }

private:
    void copyCell(int row)
    {
        if (!m_from.hasValue(row)) {
            m_to.appendEmpty();
            return;
        }
        switch (m_from.kind()) {
        case gis::ColumnKind::Boolean:
            m_to.appendBoolean(m_from.booleanAt(row));
            break;
        case gis::ColumnKind::Integer:
        case gis::ColumnKind::Date:
            m_to.appendInteger(m_from.integerAt(row));
            break;
        case gis::ColumnKind::Decimal:
            m_to.appendDecimal(m_from.decimalAt(row));
            break;
        case gis::ColumnKind::Dictionary:
            copyText(m_from.codeAt(row));
            break;
        }
    }
    void copyText(std::uint32_t code)
    {
        std::uint32_t& known = m_codes[code];
        if (known == Dictionary::NoCode)
            known = m_to.dictionary().intern(m_from.dictionary().text(code));
        m_to.appendCode(known);
    }

    const Column& m_from;
    Column& m_to;
    std::vector<std::uint32_t> m_codes;
};

struct RunOfPart {
    FidRun run;
    int place = 0; // of the run's first row among the part's rows
    std::size_t part = 0;
};

std::vector<RunOfPart> runsInRowOrder(const StoredTable& table)
{
    std::vector<RunOfPart> runs;
    for (std::size_t p = 0; p < table.parts.size(); ++p) {
        int place = 0;
        for (const FidRun& run : table.parts[p].runs) {
            runs.push_back({ run, place, p });
            place += run.count;
        }
    }
    std::sort(runs.begin(), runs.end(),
        [](const auto& a, const auto& b) { return a.run.firstRow < b.run.firstRow; });
    return runs;
}

void takeShape(Statement& rows, const StoredTheme& theme,
    const std::map<std::int64_t, std::string>& hints, ShapeBuffer& out, LayerShapes& counts)
{
    const std::string_view blob = rows.blob(0);
    if (blob.empty()) {
        out.partCounts.push_back(0);
        return;
    }
    std::string_view hint;
    if (!hints.empty())
        if (const auto found = hints.find(rows.integer(1)); found != hints.end())
            hint = found->second;
    const ShapeState state = decodeShape(blob, hint, theme.layout, out);
    counts.unsupported += state == ShapeState::Unsupported ? 1 : 0;
    counts.damaged += state == ShapeState::Damaged ? 1 : 0;
}

void readShapes(Connection& connection, const StoredPart& part, const StoredTheme& theme,
    const FidRange& range, const std::map<std::int64_t, std::string>& hints, ShapeBuffer& out,
    LayerShapes& counts)
{
    const bool hasFids = !part.fidColumn.empty();
    std::string sql = "SELECT " + quoted(theme.geometryColumn) + ", "
        + (hasFids ? quoted(part.fidColumn) : std::string("0")) + " FROM "
        + quoted(part.physicalName);
    if (hasFids)
        sql += " NOT INDEXED WHERE " + quoted(part.fidColumn) + " BETWEEN ?1 AND ?2 ORDER BY "
            + quoted(part.fidColumn);
    Statement rows(connection, sql);
    if (hasFids) {
        rows.bindInteger(1, range.first);
        rows.bindInteger(2, range.last);
    }
    out.partCounts.reserve(static_cast<std::size_t>(range.rows));
    while (rows.step())
        takeShape(rows, theme, hints, out, counts);
    if (out.partCounts.size() != static_cast<std::size_t>(range.rows))
        failForRowCount(connection, part);
}

/// Walks through shapes in row order, or jumps to the shape of any row.
class CShapeCursor final {
public:
    CShapeCursor(const LayerShapes& shapes, int stride)
        : m_shapes(shapes)
        , m_stride(static_cast<std::size_t>(stride))
    {
    }
    void putNext(EntityStore& entities, int entityIndex)
    {
        while (m_piece < m_shapes.pieces.size()
            && m_place >= m_shapes.pieces[m_piece].partCounts.size()) {
            ++m_piece;
            m_place = m_part = m_coordinate = 0;
        }
        if (m_piece >= m_shapes.pieces.size())
            return;
        const ShapeBuffer& piece = m_shapes.pieces[m_piece];
        for (int i = piece.partCounts[m_place++]; i > 0; --i) {
            const int vertices = piece.partSizes[m_part++];
            const std::size_t count = static_cast<std::size_t>(vertices) * m_stride;
            double* to = entities.addPartTo(entityIndex, vertices);
            std::copy_n(piece.coordinates.data() + m_coordinate, count, to);
            m_coordinate += count;
        }
    }
    void skipNext()
    {
        const ShapeBuffer& piece = m_shapes.pieces[m_piece];
        for (int i = piece.partCounts[m_place++]; i > 0; --i)
            m_coordinate += static_cast<std::size_t>(piece.partSizes[m_part++]) * m_stride;
    }
    [[nodiscard]] bool isAtPieceEnd() const
    {
        return m_place >= m_shapes.pieces[m_piece].partCounts.size();
    }
    void nextPiece()
    {
        ++m_piece;
        m_place = m_part = m_coordinate = 0;
    }

private:
    const LayerShapes& m_shapes;
    std::size_t m_stride;
    std::size_t m_piece = 0;
    std::size_t m_place = 0;
    std::size_t m_part = 0;
    std::size_t m_coordinate = 0;
};

// A cursor at each row's shape, for entities that do not follow the rows.
std::vector<CShapeCursor> cursorsOf(const LayerShapes& shapes, int stride)
{
    std::vector<CShapeCursor> cursors;
    CShapeCursor cursor(shapes, stride);
    for (std::size_t piece = 0; piece < shapes.pieces.size(); ++piece, cursor.nextPiece())
        while (!cursor.isAtPieceEnd()) {
            cursors.push_back(cursor);
            cursor.skipNext();
        }
    return cursors;
}

} // namespace

CellCounts readTableColumn(ReadingPair& reading, const StoredTable& table,
    const StoredColumn& source, gis::FieldFormat format, Column& column, const IsStopped& isStopped)
{
    if (table.parts.size() == 1)
        return readPartColumn(reading, table.parts.front(), source, format, column, isStopped);
    CellCounts counts;
    std::vector<Column> cells;
    for (const StoredPart& part : table.parts) {
        cells.emplace_back(column.kind());
        counts.add(readPartColumn(reading, part, source, format, cells.back(), isStopped));
    }
    std::vector<CCellCopier> copiers;
    for (const Column& partCells : cells)
        copiers.emplace_back(partCells, column);
    column.reserve(table.rowCount);
    for (const RunOfPart& run : runsInRowOrder(table))
        copiers[run.part].copy(run.place, run.run.count);
    return counts;
}

LayerShapes readLayerShapes(ReadingPair& reading, const StoredPart& part, const StoredTheme& theme,
    const std::map<std::int64_t, std::string>& hints)
{
    std::array<LayerShapes, 2> halves;
    const int count
        = reading.inHalves(rowsToShare(part), [&](Connection& connection, int half, int of) {
              LayerShapes& shapes = halves[static_cast<std::size_t>(half)];
              shapes.pieces.emplace_back();
              readShapes(connection, part, theme, rangeOf(part, half, of), hints,
                  shapes.pieces.back(), shapes);
          });
    if (count == 2) {
        halves[0].pieces.push_back(std::move(halves[1].pieces.front()));
        halves[0].unsupported += halves[1].unsupported;
        halves[0].damaged += halves[1].damaged;
    }
    return std::move(halves[0]);
}

void putShapes(const LayerShapes& shapes, const std::vector<int>& rowPlaces, EntityStore& entities)
{
    if (rowPlaces.empty()) {
        CShapeCursor cursor(shapes, entities.stride());
        for (int i = 0; i < entities.entityCount(); ++i)
            cursor.putNext(entities, i);
        return;
    }
    std::vector<CShapeCursor> cursors = cursorsOf(shapes, entities.stride());
    const std::size_t count
        = std::min(rowPlaces.size(), static_cast<std::size_t>(entities.entityCount()));
    for (std::size_t i = 0; i < count; ++i)
        cursors[static_cast<std::size_t>(rowPlaces[i])].putNext(entities, static_cast<int>(i));
}

CPlaceFinder::CPlaceFinder(const StoredPart& part)
    : m_part(part)
{
    int place = 0;
    for (const FidRun& run : part.runs) {
        m_firstPlaces.push_back(place);
        place += run.count;
    }
}

int CPlaceFinder::placeOf(std::int64_t fid) const
{
    const auto& runs = m_part.runs;
    const auto after = std::upper_bound(runs.begin(), runs.end(), fid,
        [](std::int64_t wanted, const FidRun& run) { return wanted < run.firstFid; });
    if (after == runs.begin())
        return -1;
    const auto index = static_cast<std::size_t>(after - runs.begin()) - 1;
    const std::int64_t offset = fid - runs[index].firstFid;
    return offset < runs[index].count ? m_firstPlaces[index] + static_cast<int>(offset) : -1;
}

} // namespace embedded::store
