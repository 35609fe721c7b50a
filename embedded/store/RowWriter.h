// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"
#include "embedded/store/FileState.h"
#include "embedded/store/RTreePacker.h"
#include "embedded/store/Statement.h"

#include <array>
#include <map>
#include <string>
#include <vector>

namespace embedded::store {

/// Binds cells of chosen columns to a statement's parameters.
class CCellBinder final {
public:
    CCellBinder(gis::CDBTable& table, const std::vector<int>& fields);
    /// Cells of a row to the parameters from `firstParameter` on; valid until the next call.
    void bind(Statement& statement, int row, int firstParameter);

private:
    struct Source {
        const Column* column;
        std::array<char, 10> day; // the text of a date that is being written
    };
    std::vector<Source> m_sources;
};

/// Numbers of a library's linked points in the file.
using PointNumbers = std::map<const LinkedPoint*, std::int64_t>;
PointNumbers pointNumbersOf(const Library& library);

/// Writes shapes and what belongs to them: hints about parts, links of vertices, entries of the
/// spatial index (collected, to be packed at the end).
class CShapeWriter final {
public:
    CShapeWriter(Connection& connection, std::int64_t themeId, const EntityStore& entities,
        const ShapeLayout& layout, const PointNumbers& points);
    /// Binds the shape of an entity to a parameter of `statement`, valid until the next call.
    void bind(Statement& statement, int parameter, int entityIndex, std::int64_t fid);
    [[nodiscard]] std::vector<IndexEntry>& indexEntries() { return m_indexEntries; }
    [[nodiscard]] const Box& extent() const { return m_extent; }
    [[nodiscard]] bool hasHints() const { return m_hasHints; }
    [[nodiscard]] bool hasLinks() const { return m_hasLinks; }

private:
    void writeLinks(int entityIndex, std::int64_t fid);

    std::int64_t m_themeId;
    const EntityStore& m_entities;
    const ShapeLayout& m_layout;
    const PointNumbers& m_points;
    Statement m_insertHint;
    Statement m_insertLink;
    std::string m_shape;
    std::string m_hint;
    std::vector<IndexEntry> m_indexEntries;
    Box m_extent;
    bool m_hasHints = false;
    bool m_hasLinks = false;
};

/// "INSERT INTO t (fid, columns..., geom) VALUES (?, ...)".
std::string insertSql(
    const std::string& table, const std::vector<StoredColumn>& columns, bool hasShapes);

} // namespace embedded::store
