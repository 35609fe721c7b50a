// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridModel.h"

#include <QString>

#include <functional>

namespace tables {

/// A cell of the view.
struct GridPlace {
    int viewRow = -1;
    int field = -1;
    [[nodiscard]] bool isFound() const { return viewRow >= 0; }
};

enum class FindDirection { Forward, Backward };

/// Looks for a text in what the cells show, letter case ignored, cell after cell in the order of
/// the view, round its end. Texts of a column's dictionary are looked at once each.
class CGridFinder final {
public:
    CGridFinder(const CGridModel& model, const QString& sought);

    /// The next cell after (or before) a place; the place itself comes last. Not found, and
    /// `wasStopped`, when `goesOn` answered false.
    GridPlace find(
        GridPlace from, FindDirection direction, const std::function<bool(double)>& goesOn);
    [[nodiscard]] bool wasStopped() const { return m_wasStopped; }

private:
    /// What is known about a column's values before its cells are looked at.
    struct ColumnHits {
        enum class Kind { Never, ByCell, ByCode } kind = Kind::ByCell;
        std::optional<gis::ColumnView> view;
        std::vector<std::uint8_t> codes; // by dictionary code: not looked at, no, yes
    };
    void prepare(int field);
    [[nodiscard]] bool matches(int fillRow, int field);
    [[nodiscard]] bool containsSought(std::string_view text) const;

    const CGridModel& m_model;
    const QString m_sought;
    std::vector<ColumnHits> m_columns;
    bool m_wasStopped = false;
};

} // namespace tables
