// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/HitTest.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace app {

namespace {

using embedded::Box;
using embedded::PartView;
using embedded::ThemeLayer;

double distanceToSegment(double x, double y, double ax, double ay, double bx, double by)
{
    const double dx = bx - ax;
    const double dy = by - ay;
    const double length = dx * dx + dy * dy;
    const double t
        = length > 0 ? std::clamp(((x - ax) * dx + (y - ay) * dy) / length, 0.0, 1.0) : 0.0;
    return std::hypot(x - ax - t * dx, y - ay - t * dy);
}

/// Even-odd rule over all rings, so that a hole is outside.
bool isInside(const ThemeLayer& layer, int index, double x, double y)
{
    bool inside = false;
    for (int p = 0; p < layer.entities->partCount(index); ++p) {
        const PartView ring = layer.entities->part(index, p);
        for (int i = 0, last = ring.count - 1; i < ring.count; last = i++)
            if ((ring.y(i) > y) != (ring.y(last) > y)
                && x < (ring.x(last) - ring.x(i)) * (y - ring.y(i)) / (ring.y(last) - ring.y(i))
                        + ring.x(i))
                inside = !inside;
    }
    return inside;
}

double distanceTo(const ThemeLayer& layer, int index, double x, double y)
{
    if (layer.type == gis::EntType::Polygons && isInside(layer, index, x, y))
        return 0;
    double nearest = std::numeric_limits<double>::infinity();
    for (int p = 0; p < layer.entities->partCount(index); ++p) {
        const PartView part = layer.entities->part(index, p);
        if (layer.type == gis::EntType::Points || part.count == 1)
            for (int i = 0; i < part.count; ++i)
                nearest = std::min(nearest, std::hypot(x - part.x(i), y - part.y(i)));
        else
            for (int i = 0; i + 1 < part.count; ++i)
                nearest = std::min(nearest,
                    distanceToSegment(x, y, part.x(i), part.y(i), part.x(i + 1), part.y(i + 1)));
    }
    return nearest;
}

Box boxOf(const ThemeLayer& layer, int index)
{
    return layer.boxOf(index);
}

/// Whether a segment meets a box. Source: Liang and Barsky's line clipping, 1984.
bool segmentMeets(const Box& box, double ax, double ay, double bx, double by)
{
    double low = 0;
    double high = 1;
    const auto clip = [&](double direction, double distance) {
        if (direction == 0)
            return distance >= 0;
        const double t = distance / direction;
        if (direction < 0)
            low = std::max(low, t);
        else
            high = std::min(high, t);
        return low <= high;
    };
    return clip(ax - bx, ax - box.minX) && clip(bx - ax, box.maxX - ax)
        && clip(ay - by, ay - box.minY) && clip(by - ay, box.maxY - ay);
}

bool isTouched(const ThemeLayer& layer, int index, const Box& box)
{
    const Box own = boxOf(layer, index);
    if (!own.intersects(box))
        return false;
    for (int p = 0; p < layer.entities->partCount(index); ++p) {
        const PartView part = layer.entities->part(index, p);
        for (int i = 0; i < part.count; ++i) {
            const int next = layer.type == gis::EntType::Points || i + 1 == part.count ? i : i + 1;
            if (segmentMeets(box, part.x(i), part.y(i), part.x(next), part.y(next)))
                return true;
        }
    }
    return layer.type == gis::EntType::Polygons && isInside(layer, index, box.minX, box.minY);
}

} // namespace

gis::CEnt* entityAt(const embedded::MapContent& content, double x, double y, double tolerance)
{
    const Box around { x - tolerance, y - tolerance, x + tolerance, y + tolerance };
    for (auto layer = content.layers.rbegin(); layer != content.layers.rend(); ++layer) {
        gis::CEnt* nearest = nullptr;
        double nearestDistance = tolerance;
        for (int i = 0; i < layer->entities->entityCount(); ++i) {
            if (!boxOf(*layer, i).intersects(around))
                continue;
            const double distance = distanceTo(*layer, i, x, y);
            if (distance <= nearestDistance) {
                nearest = layer->entities->entity(i);
                nearestDistance = distance;
            }
        }
        if (nearest)
            return nearest;
    }
    return nullptr;
}

std::vector<gis::CEnt*> entitiesIn(const embedded::MapContent& content, const Box& box)
{
    std::vector<gis::CEnt*> found;
    for (const ThemeLayer& layer : content.layers)
        for (int i = 0; i < layer.entities->entityCount(); ++i)
            if (isTouched(layer, i, box))
                found.push_back(layer.entities->entity(i));
    return found;
}

} // namespace app
