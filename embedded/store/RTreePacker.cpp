// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/RTreePacker.h"

#include "embedded/store/Statement.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

namespace embedded::store {
namespace {

constexpr std::size_t HeaderBytes = 4;
constexpr std::size_t EntryBytes = 24;
constexpr std::int64_t RootNode = 1;
// Bits of a cell's coordinate on the sorting curve: 2^32 cells are finer than any drawing
// needs.
constexpr int CurveBits = 16;

float roundedDown(double value)
{
    const auto near = static_cast<float>(value);
    return static_cast<double>(near) > value
        ? std::nextafter(near, -std::numeric_limits<float>::infinity())
        : near;
}

float roundedUp(double value)
{
    const auto near = static_cast<float>(value);
    return static_cast<double>(near) < value
        ? std::nextafter(near, std::numeric_limits<float>::infinity())
        : near;
}

void widen(std::array<float, 4>& box, const std::array<float, 4>& other)
{
    box[0] = std::min(box[0], other[0]);
    box[1] = std::max(box[1], other[1]);
    box[2] = std::min(box[2], other[2]);
    box[3] = std::max(box[3], other[3]);
}

// Position of a cell on the Hilbert curve.
std::uint32_t curvePosition(std::uint32_t x, std::uint32_t y)
{
    std::uint32_t position = 0;
    for (std::uint32_t side = 1u << (CurveBits - 1); side > 0; side >>= 1) {
        const std::uint32_t right = (x & side) ? 1 : 0;
        const std::uint32_t upper = (y & side) ? 1 : 0;
        position += side * side * ((3 * right) ^ upper);
        if (upper == 0) {
            if (right == 1) {
                x = ~x;
                y = ~y;
            }
            std::swap(x, y);
        }
    }
    return position;
}

void sortAlongCurve(std::vector<IndexEntry>& entries)
{
    std::array<float, 4> extent = entries.front().box;
    for (const auto& entry : entries)
        widen(extent, entry.box);
    const auto cellOf = [](double low, double high, double from, double to) {
        const double share = to > from ? ((low + high) / 2 - from) / (to - from) : 0.0;
        const double cell = share * ((1 << CurveBits) - 1);
        return static_cast<std::uint32_t>(
            std::clamp(cell, 0.0, static_cast<double>((1 << CurveBits) - 1)));
    };
    std::vector<std::uint64_t> keys(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const auto& box = entries[i].box;
        const std::uint32_t position = curvePosition(cellOf(box[0], box[1], extent[0], extent[1]),
            cellOf(box[2], box[3], extent[2], extent[3]));
        keys[i] = (static_cast<std::uint64_t>(position) << 32) | i;
    }
    std::sort(keys.begin(), keys.end());
    std::vector<IndexEntry> sorted(entries.size());
    for (std::size_t i = 0; i < keys.size(); ++i)
        sorted[i] = entries[keys[i] & 0xFFFFFFFFu];
    entries = std::move(sorted);
}

void putBigEndian(char* at, std::uint64_t value, int bytes)
{
    for (int i = bytes - 1; i >= 0; --i, value >>= 8)
        at[i] = static_cast<char>(value & 0xFF);
}

std::uint64_t bigEndian(std::string_view bytes, std::size_t at, std::size_t count)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = (value << 8) | static_cast<unsigned char>(bytes[at + i]);
    return value;
}

std::array<float, 4> boxAt(std::string_view node, std::size_t entry)
{
    std::array<float, 4> box {};
    for (std::size_t side = 0; side < 4; ++side)
        box[side] = std::bit_cast<float>(static_cast<std::uint32_t>(
            bigEndian(node, HeaderBytes + entry * EntryBytes + 8 + side * 4, 4)));
    return box;
}

/// Writes level after level, leaves first; each level's nodes are the entries of the next.
class CPackedTree final {
public:
    CPackedTree(Connection& connection, const std::string& rtree)
        : m_connection(connection)
        , m_nodeTable(quoted(rtree + "_node"))
        , m_rowidTable(quoted(rtree + "_rowid"))
        , m_parentTable(quoted(rtree + "_parent"))
    {
    }

    void write(std::vector<IndexEntry> entries)
    {
        prepareTables();
        if (entries.empty())
            return;
        sortAlongCurve(entries);
        std::vector<std::pair<std::int64_t, std::int64_t>> nodeOfRow;
        nodeOfRow.reserve(entries.size());
        int level = 0;
        while (entries.size() > m_capacity) {
            entries = writeLevel(entries, level == 0 ? &nodeOfRow : nullptr);
            ++level;
        }
        writeRoot(entries, level, level == 0 ? &nodeOfRow : nullptr);
        writeRows(nodeOfRow);
    }

private:
    // The module takes a node's size from the root that it wrote when the table was made.
    void prepareTables()
    {
        m_nodeBytes = static_cast<std::size_t>(m_connection.integerOf(
            "SELECT length(data) FROM " + m_nodeTable + " WHERE nodeno = 1"));
        if (m_nodeBytes < HeaderBytes + 3 * EntryBytes)
            failWith(ErrorCode::DamagedFile, m_connection.path(), "spatial index without root");
        m_capacity = (m_nodeBytes - HeaderBytes) / EntryBytes;
        m_connection.execute("DELETE FROM " + m_rowidTable);
        m_connection.execute("DELETE FROM " + m_parentTable);
        m_connection.execute("DELETE FROM " + m_nodeTable + " WHERE nodeno <> 1");
        m_connection.execute("UPDATE " + m_nodeTable + " SET data = zeroblob("
            + std::to_string(m_nodeBytes) + ") WHERE nodeno = 1");
    }

    [[nodiscard]] std::string node(const IndexEntry* entries, std::size_t count, int depth) const
    {
        std::string bytes(m_nodeBytes, '\0');
        putBigEndian(bytes.data(), static_cast<std::uint64_t>(depth), 2);
        putBigEndian(bytes.data() + 2, count, 2);
        for (std::size_t i = 0; i < count; ++i) {
            char* at = bytes.data() + HeaderBytes + i * EntryBytes;
            putBigEndian(at, static_cast<std::uint64_t>(entries[i].fid), 8);
            for (std::size_t side = 0; side < 4; ++side)
                putBigEndian(
                    at + 8 + side * 4, std::bit_cast<std::uint32_t>(entries[i].box[side]), 4);
        }
        return bytes;
    }

    using RowNodes = std::vector<std::pair<std::int64_t, std::int64_t>>;

    // Entries are spread evenly, so that no node is nearly empty.
    std::vector<IndexEntry> writeLevel(const std::vector<IndexEntry>& entries, RowNodes* nodeOfRow)
    {
        const std::size_t nodes = (entries.size() + m_capacity - 1) / m_capacity;
        Statement insert(
            m_connection, "INSERT INTO " + m_nodeTable + " (nodeno, data) VALUES (?1, ?2)");
        std::vector<IndexEntry> upper;
        upper.reserve(nodes);
        for (std::size_t n = 0; n < nodes; ++n) {
            const std::size_t from = entries.size() * n / nodes;
            const std::size_t to = entries.size() * (n + 1) / nodes;
            IndexEntry parent { m_nextNode++, entries[from].box };
            for (std::size_t i = from; i < to; ++i)
                widen(parent.box, entries[i].box);
            const std::string bytes = node(entries.data() + from, to - from, 0);
            insert.bindInteger(1, parent.fid);
            insert.bindBlob(2, bytes);
            insert.run();
            noteParents(entries.data() + from, to - from, parent.fid, nodeOfRow);
            upper.push_back(parent);
        }
        return upper;
    }

    void writeRoot(const std::vector<IndexEntry>& entries, int depth, RowNodes* nodeOfRow)
    {
        const std::string bytes = node(entries.data(), entries.size(), depth);
        Statement update(m_connection, "UPDATE " + m_nodeTable + " SET data = ?1 WHERE nodeno = 1");
        update.bindBlob(1, bytes);
        update.run();
        noteParents(entries.data(), entries.size(), RootNode, nodeOfRow);
    }

    void noteParents(
        const IndexEntry* entries, std::size_t count, std::int64_t parent, RowNodes* nodeOfRow)
    {
        if (nodeOfRow) {
            for (std::size_t i = 0; i < count; ++i)
                nodeOfRow->emplace_back(entries[i].fid, parent);
            return;
        }
        Statement insert(
            m_connection, "INSERT INTO " + m_parentTable + " (nodeno, parentnode) VALUES (?1, ?2)");
        for (std::size_t i = 0; i < count; ++i) {
            insert.bindInteger(1, entries[i].fid);
            insert.bindInteger(2, parent);
            insert.run();
        }
    }

    // In ascending order every insertion goes to the table's end.
    void writeRows(RowNodes& nodeOfRow)
    {
        std::sort(nodeOfRow.begin(), nodeOfRow.end());
        Statement insert(
            m_connection, "INSERT INTO " + m_rowidTable + " (rowid, nodeno) VALUES (?1, ?2)");
        for (const auto& [row, parent] : nodeOfRow) {
            insert.bindInteger(1, row);
            insert.bindInteger(2, parent);
            insert.run();
        }
    }

    Connection& m_connection;
    std::string m_nodeTable;
    std::string m_rowidTable;
    std::string m_parentTable;
    std::size_t m_nodeBytes = 0;
    std::size_t m_capacity = 0;
    std::int64_t m_nextNode = RootNode + 1;
};

} // namespace

IndexEntry indexEntry(std::int64_t fid, const Box& box)
{
    return { fid,
        { roundedDown(box.minX), roundedUp(box.maxX), roundedDown(box.minY),
            roundedUp(box.maxY) } };
}

void writePackedIndex(
    Connection& connection, const std::string& rtree, std::vector<IndexEntry> entries)
{
    CPackedTree(connection, rtree).write(std::move(entries));
}

std::vector<IndexEntry> readIndex(Connection& connection, const std::string& rtree)
{
    std::vector<IndexEntry> entries;
    Statement all(connection, "SELECT id, minx, maxx, miny, maxy FROM " + quoted(rtree));
    while (all.step()) {
        IndexEntry entry;
        entry.fid = all.integer(0);
        for (int side = 0; side < 4; ++side)
            entry.box[static_cast<std::size_t>(side)] = static_cast<float>(all.real(side + 1));
        entries.push_back(entry);
    }
    return entries;
}

Box indexExtent(Connection& connection, const std::string& rtree)
{
    Box extent;
    Statement root(connection, "SELECT data FROM " + quoted(rtree + "_node") + " WHERE nodeno = 1");
    if (!root.step())
        return extent;
    const std::string_view node = root.blob(0);
    if (node.size() < HeaderBytes)
        return extent;
    const auto count = static_cast<std::size_t>(bigEndian(node, 2, 2));
    if (node.size() < HeaderBytes + count * EntryBytes)
        return extent;
    for (std::size_t i = 0; i < count; ++i) {
        const auto box = boxAt(node, i);
        extent.add(box[0], box[2]);
        extent.add(box[1], box[3]);
    }
    return extent;
}

} // namespace embedded::store
