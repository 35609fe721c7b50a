// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ByteBuffer.h"
#include "embedded/store/Rings.h"
#include "embedded/store/Wkb.h"
#include "embedded/store/WkbCodes.h"

namespace embedded::store {
namespace {

std::uint32_t codeOf(std::uint32_t base, const ShapeLayout& layout)
{
    return base + (layout.hasZ ? 1000u : 0u) + (layout.hasM ? 2000u : 0u);
}

void putShapeHead(std::string& out, std::uint32_t base, const ShapeLayout& layout)
{
    out += '\1'; // little-endian
    putValue(out, codeOf(base, layout));
}

void putVertices(std::string& out, const PartView& part)
{
    const auto count = static_cast<std::size_t>(part.count) * static_cast<std::size_t>(part.stride)
        * sizeof(double);
    out.append(reinterpret_cast<const char*>(part.coordinates), count);
}

void putCountedVertices(std::string& out, const PartView& part)
{
    putValue(out, static_cast<std::uint32_t>(part.count));
    putVertices(out, part);
}

// Points go without the box: it would only repeat them.
void putHeader(std::string& out, const ShapeLayout& layout, const Box& box)
{
    const bool withBox = !(layout.type == gis::EntType::Points && !layout.isMultiPoint);
    out += "GP";
    out += '\0';
    out += withBox ? '\3' : '\1';
    putValue(out, layout.srsId);
    if (!withBox)
        return;
    for (const double side : { box.minX, box.maxX, box.minY, box.maxY })
        putValue(out, side);
}

void putPoints(std::string& out, const EntityStore& entities, int entityIndex,
    const ShapeLayout& layout, std::string& hint)
{
    const int parts = entities.partCount(entityIndex);
    if (!layout.isMultiPoint) {
        putShapeHead(out, wkb::Point, layout);
        putVertices(out, entities.part(entityIndex, 0));
        return;
    }
    std::uint32_t points = 0;
    bool isPlain = true;
    for (int part = 0; part < parts; ++part) {
        const int count = entities.part(entityIndex, part).count;
        points += static_cast<std::uint32_t>(count);
        isPlain = isPlain && count == 1;
    }
    putShapeHead(out, wkb::MultiPoint, layout);
    putValue(out, points);
    for (int part = 0; part < parts; ++part) {
        const PartView view = entities.part(entityIndex, part);
        for (int i = 0; i < view.count; ++i) {
            putShapeHead(out, wkb::Point, layout);
            putVertices(out,
                { view.coordinates + static_cast<std::ptrdiff_t>(i) * view.stride, 1,
                    view.stride });
        }
        if (!isPlain)
            putVarint(hint, static_cast<std::uint64_t>(view.count));
    }
}

void putLines(
    std::string& out, const EntityStore& entities, int entityIndex, const ShapeLayout& layout)
{
    const int parts = entities.partCount(entityIndex);
    putShapeHead(out, wkb::MultiLineString, layout);
    putValue(out, static_cast<std::uint32_t>(parts));
    for (int part = 0; part < parts; ++part) {
        putShapeHead(out, wkb::LineString, layout);
        putCountedVertices(out, entities.part(entityIndex, part));
    }
}

void putPolygons(std::string& out, const EntityStore& entities, int entityIndex,
    const ShapeLayout& layout, std::string& hint)
{
    const RingGroups groups = groupRings(entities, entityIndex);
    putShapeHead(out, wkb::MultiPolygon, layout);
    putValue(out, static_cast<std::uint32_t>(groups.polygons.size()));
    for (const auto& polygon : groups.polygons) {
        putShapeHead(out, wkb::Polygon, layout);
        putValue(out, static_cast<std::uint32_t>(polygon.size()));
        for (const int part : polygon) {
            putCountedVertices(out, entities.part(entityIndex, part));
            if (!groups.isPlain)
                putVarint(hint, static_cast<std::uint64_t>(part));
        }
    }
}

} // namespace

Box encodeShape(const EntityStore& entities, int entityIndex, const ShapeLayout& layout,
    std::string& out, std::string& hint)
{
    hint.clear();
    if (entities.partCount(entityIndex) == 0)
        return {};
    const Box box = entities.boxOf(entityIndex);
    putHeader(out, layout, box);
    switch (layout.type) {
    case gis::EntType::Points:
        putPoints(out, entities, entityIndex, layout, hint);
        break;
    case gis::EntType::Lines:
        putLines(out, entities, entityIndex, layout);
        break;
    case gis::EntType::Polygons:
        putPolygons(out, entities, entityIndex, layout, hint);
        break;
    }
    return box;
}

} // namespace embedded::store
