// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"

#include <cmath>

namespace embedded {

namespace {

/// Sums over the vertices of an entity, taken from its first vertex so that large coordinates lose
/// no digits.
struct Moments {
    double weight = 0; // signed area, or length
    double x = 0;
    double y = 0;
    double z = 0;
    double meanX = 0; // plain sums of the vertices
    double meanY = 0;
    int count = 0;
};

double zOf(const PartView& part, int i, bool hasZ)
{
    return hasZ ? part.coordinates[static_cast<std::ptrdiff_t>(i) * part.stride + 2] : 0.0;
}

/// A ring's closing vertex is its first one again and must not count twice in a mean.
int distinctVertices(const PartView& part, bool polygon)
{
    const bool closed = polygon && part.count > 1 && part.x(0) == part.x(part.count - 1)
        && part.y(0) == part.y(part.count - 1);
    return closed ? part.count - 1 : part.count;
}

/// Signed area of a ring and its first moments, about an origin.
/// Source: the shoelace formula and its integrals of x and y over the polygon.
void addRing(const PartView& ring, double originX, double originY, Moments& sums)
{
    for (int i = 0; i < ring.count; ++i) {
        const int next = i + 1 < ring.count ? i + 1 : 0;
        const double x0 = ring.x(i) - originX;
        const double y0 = ring.y(i) - originY;
        const double x1 = ring.x(next) - originX;
        const double y1 = ring.y(next) - originY;
        const double cross = x0 * y1 - x1 * y0;
        sums.weight += cross * 0.5;
        sums.x += (x0 + x1) * cross / 6.0;
        sums.y += (y0 + y1) * cross / 6.0;
    }
}

void addLine(const PartView& line, double originX, double originY, Moments& sums)
{
    for (int i = 0; i + 1 < line.count; ++i) {
        const double length = std::hypot(line.x(i + 1) - line.x(i), line.y(i + 1) - line.y(i));
        sums.weight += length;
        sums.x += length * ((line.x(i) + line.x(i + 1)) * 0.5 - originX);
        sums.y += length * ((line.y(i) + line.y(i + 1)) * 0.5 - originY);
    }
}

template <typename Visit>
void forEachPart(const EntityStore& entities, int index, const Visit& visit)
{
    for (int p = 0; p < entities.partCount(index); ++p)
        if (const PartView part = entities.part(index, p); part.count > 0)
            visit(part);
}

struct Centroid {
    double x = 0;
    double y = 0;
    double z = 0;
};

Centroid centroidOf(gis::CTheme& theme, int index)
{
    const EntityStore& entities = theme.geometry();
    const bool polygon = theme.type == gis::EntType::Polygons;
    Moments sums;
    double originX = 0;
    double originY = 0;
    bool first = true;
    forEachPart(entities, index, [&](const PartView& part) {
        if (first) {
            originX = part.x(0);
            originY = part.y(0);
            first = false;
        }
        const int distinct = distinctVertices(part, polygon);
        for (int i = 0; i < distinct; ++i) {
            sums.meanX += part.x(i) - originX;
            sums.meanY += part.y(i) - originY;
            sums.z += zOf(part, i, entities.hasZ());
        }
        sums.count += distinct;
        if (polygon)
            addRing(part, originX, originY, sums);
        else if (theme.type == gis::EntType::Lines)
            addLine(part, originX, originY, sums);
    });
    if (sums.count == 0)
        return {};
    Centroid centroid { originX, originY, sums.z / sums.count };
    if (sums.weight != 0) {
        centroid.x += sums.x / sums.weight;
        centroid.y += sums.y / sums.weight;
    } else { // points, and shapes without area or length
        centroid.x += sums.meanX / sums.count;
        centroid.y += sums.meanY / sums.count;
    }
    return centroid;
}

double areaOf(gis::CTheme& theme, int index)
{
    if (theme.type != gis::EntType::Polygons)
        return 0;
    Moments sums;
    forEachPart(theme.geometry(), index,
        [&](const PartView& part) { addRing(part, part.x(0), part.y(0), sums); });
    return std::abs(sums.weight); // holes run the other way round and have taken themselves off
}

double lengthOf(gis::CTheme& theme, int index, bool threeDimensional)
{
    if (theme.type == gis::EntType::Points)
        return 0;
    const EntityStore& entities = theme.geometry();
    const bool useZ = threeDimensional && entities.hasZ();
    double length = 0;
    forEachPart(entities, index, [&](const PartView& part) {
        const bool close = theme.type == gis::EntType::Polygons;
        for (int i = 0; i + (close ? 0 : 1) < part.count; ++i) {
            const int next = i + 1 < part.count ? i + 1 : 0;
            const double dz = useZ ? zOf(part, next, true) - zOf(part, i, true) : 0.0;
            length += std::hypot(part.x(next) - part.x(i), part.y(next) - part.y(i), dz);
        }
    });
    return length;
}

/// Texts of the point that the entity's first vertex is linked to.
orv::CPolyValue linkedText(gis::FieldType type, const LinkedPoint* point)
{
    if (!point)
        return {};
    const orv::String* text = nullptr;
    switch (type) {
    case gis::FieldType::PointName:
        text = &point->name;
        break;
    case gis::FieldType::PointDescription:
        text = &point->description;
        break;
    case gis::FieldType::Sketch:
        text = &point->sketch;
        break;
    default:
        text = &point->photos[static_cast<std::size_t>(
            static_cast<int>(type) - static_cast<int>(gis::FieldType::Photo1))];
    }
    return text->Length() > 0 ? orv::CPolyValue(*text) : orv::CPolyValue();
}

orv::CPolyValue numberOrEmpty(double value)
{
    return std::isfinite(value) ? orv::CPolyValue(value) : orv::CPolyValue();
}

} // namespace

orv::CPolyValue predefinedValue(gis::FieldType type, gis::CTheme& theme, int entityIndex)
{
    // A null shape has no area of 0: it has none.
    const bool hasShape = entityIndex >= 0 && entityIndex < theme.entities().entityCount()
        && theme.geometry().partCount(entityIndex) > 0;
    if (!hasShape)
        return {};
    switch (type) {
    case gis::FieldType::FromUser:
        return {};
    case gis::FieldType::Area:
        return numberOrEmpty(areaOf(theme, entityIndex));
    case gis::FieldType::Perimeter2D:
        return numberOrEmpty(lengthOf(theme, entityIndex, false));
    case gis::FieldType::Perimeter3D:
        return numberOrEmpty(lengthOf(theme, entityIndex, true));
    case gis::FieldType::CentroidX:
        return numberOrEmpty(centroidOf(theme, entityIndex).x);
    case gis::FieldType::CentroidY:
        return numberOrEmpty(centroidOf(theme, entityIndex).y);
    case gis::FieldType::CentroidZ:
        return numberOrEmpty(centroidOf(theme, entityIndex).z);
    default:
        if (static_cast<int>(type) < 0
            || static_cast<int>(type) > static_cast<int>(gis::FieldType::Photo5))
            return {};
        return linkedText(type, theme.geometry().linkedPointOf(entityIndex));
    }
}

} // namespace embedded

namespace gis {

double FCalcXCentPredef(CEnt* ent)
{
    CTheme* theme = embedded::EntityStore::themeOf(ent);
    return theme ? embedded::centroidOf(*theme, embedded::EntityStore::indexOf(ent)).x : 0.0;
}
double FCalcYCentPredef(CEnt* ent)
{
    CTheme* theme = embedded::EntityStore::themeOf(ent);
    return theme ? embedded::centroidOf(*theme, embedded::EntityStore::indexOf(ent)).y : 0.0;
}
double FCalcZCentPredef(CEnt* ent)
{
    CTheme* theme = embedded::EntityStore::themeOf(ent);
    return theme ? embedded::centroidOf(*theme, embedded::EntityStore::indexOf(ent)).z : 0.0;
}

} // namespace gis
