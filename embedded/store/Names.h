// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace embedded::store {

/// Names that are taken, ASCII case ignored (as SQLite compares names), and new ones beside them.
class CNameSet final {
public:
    /// True when the name was free.
    bool take(std::string_view name);
    void release(std::string_view name);
    [[nodiscard]] bool isTaken(std::string_view name) const;
    /// `wanted` when it is free, else with "_2", "_3" ...; the answer is taken.
    std::string takeFree(const std::string& wanted);

private:
    std::set<std::string> m_folded;
};

/// A table name that other programs can work with: valid UTF-8 without control characters, never
/// empty, and none of the prefixes that SQLite and GeoPackage keep for themselves.
std::string safeTableName(std::string_view name);
/// The same for a column; `fid` and `geom` belong to every layer.
std::string safeColumnName(std::string_view name);

/// The column with a row's number (from 1 in row order) and the one with its shape.
inline constexpr const char* FidColumn = "fid";
inline constexpr const char* GeometryColumn = "geom";

/// The name of a layer's spatial index.
std::string rtreeName(const std::string& table, const std::string& geometryColumn);

} // namespace embedded::store
