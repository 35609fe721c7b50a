// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"
#include "embedded/shapefile/ShapefileReading.h"

#include "host/gis/Types.h"

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>

namespace embedded {

/// Makes the drawing's points that the vertices of imported entities are linked to: in point files
/// one for each vertex, in others one for each place. Name and description come from the fields
/// that the options choose; a place keeps those of its first record.
class LinkedPointMaker final {
public:
    /// `columns`: the imported ones, in file order.
    LinkedPointMaker(Library& library, const std::vector<DbfColumn>& columns,
        const TOpzImportShape& options, bool sharePlaces);

    void link(EntityStore& entities, int entityIndex, const ShapeView& shape, int row);

private:
    using Place = std::array<std::uint64_t, 3>;
    struct PlaceHash {
        std::size_t operator()(const Place& place) const;
    };
    [[nodiscard]] LinkedPoint* pointFor(const ShapeView& shape, int vertex, int row);
    [[nodiscard]] orv::String textOf(const std::unique_ptr<Column>& column, int row) const;

    Library& m_library;
    std::unique_ptr<Column> m_names; // null: none chosen
    std::unique_ptr<Column> m_descriptions;
    bool m_sharePlaces;
    std::unordered_map<Place, LinkedPoint*, PlaceHash> m_points;
};

} // namespace embedded
