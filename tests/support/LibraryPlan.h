// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What a library for a test is to hold, as plain values: between a notation and the host that is
// filled.

#include "host/gis/Types.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace support {

struct FieldPlan {
    orv::String name;
    gis::FieldFormat format = gis::FieldFormat::Text;
    gis::FieldType type = gis::FieldType::FromUser;
    bool required = false;
    std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
};

struct TablePlan {
    orv::String name;
    std::vector<FieldPlan> fields;
    std::vector<std::vector<orv::CPolyValue>> rows;
};

/// The point of the drawing that the entity's first vertex is linked to.
struct PointPlan {
    orv::String name;
    orv::String description;
};

struct EntPlan {
    int row = 0;
    /// Coordinates of each part, vertex after vertex: x, y, then z and m where the theme has them.
    std::vector<std::vector<double>> parts;
    std::optional<PointPlan> point;
};

struct ThemePlan {
    orv::String name;
    orv::String tableName;
    gis::EntType type = gis::EntType::Points;
    gis::EntTypeCoords coords = gis::EntTypeCoords::XY;
    std::int64_t drawing = 0;
    bool active = false;
    bool hidden = false;
    bool locked = false;
    std::vector<EntPlan> ents;
    /// Doubles a vertex.
    [[nodiscard]] int stride() const { return coords == gis::EntTypeCoords::XY ? 2 : 3; }
};

struct LibraryPlan {
    std::vector<TablePlan> tables;
    std::vector<ThemePlan> themes;
};

} // namespace support
