// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/LinkedPointMaker.h"

#include <bit>

namespace embedded {

namespace {

std::unique_ptr<Column> chosenColumn(const std::vector<DbfColumn>& columns, std::int32_t index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= columns.size())
        return nullptr;
    return std::make_unique<Column>(columns[static_cast<std::size_t>(index)].column);
}

std::uint64_t bitsOf(double value)
{
    return std::bit_cast<std::uint64_t>(value + 0.0); // minus zero is the same place
}

} // namespace

LinkedPointMaker::LinkedPointMaker(Library& library, const std::vector<DbfColumn>& columns,
    const TOpzImportShape& options, bool sharePlaces)
    : m_library(library)
    , m_names(chosenColumn(columns, options.nameField))
    , m_descriptions(chosenColumn(columns, options.codeField))
    , m_sharePlaces(sharePlaces)
{
}

std::size_t LinkedPointMaker::PlaceHash::operator()(const Place& place) const
{
    std::uint64_t hash = 0;
    for (const std::uint64_t bits : place)
        hash = (hash ^ bits) * 0x9E3779B97F4A7C15u ^ (hash >> 29);
    return static_cast<std::size_t>(hash ^ (hash >> 32));
}

orv::String LinkedPointMaker::textOf(const std::unique_ptr<Column>& column, int row) const
{
    if (!column)
        return {};
    orv::CPolyValue value;
    column->valueAt(row, value);
    return value.GetStringValue();
}

LinkedPoint* LinkedPointMaker::pointFor(const ShapeView& shape, int vertex, int row)
{
    LinkedPoint** known = nullptr;
    if (m_sharePlaces) {
        const Place place { bitsOf(shape.x(vertex)), bitsOf(shape.y(vertex)),
            bitsOf(shape.z(vertex)) };
        known = &m_points[place];
        if (*known)
            return *known;
    }
    LinkedPoint* point = m_library.addLinkedPoint();
    point->name = textOf(m_names, row);
    point->description = textOf(m_descriptions, row);
    if (known)
        *known = point;
    return point;
}

void LinkedPointMaker::link(EntityStore& entities, int entityIndex, const ShapeView& shape, int row)
{
    int part = 0;
    for (int ring = 0; ring < shape.partCount(); ++ring) {
        const int count = shape.partEnd(ring) - shape.partStart(ring);
        if (count == 0)
            continue;
        for (int i = 0; i < count; ++i)
            entities.linkPoint(
                entityIndex, part, i, pointFor(shape, shape.partStart(ring) + i, row));
        // The vertex that closes a ring is its first one again.
        if (entities.part(entityIndex, part).count > count)
            entities.linkPoint(
                entityIndex, part, count, pointFor(shape, shape.partStart(ring), row));
        ++part;
    }
}

} // namespace embedded
