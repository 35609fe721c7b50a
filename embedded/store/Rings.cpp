// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Rings.h"

#include <algorithm>
#include <cmath>

namespace embedded::store {
namespace {

struct Ring {
    PartView view;
    Box box;
    double area = 0;
};

Box boxOf(const PartView& ring)
{
    Box box;
    for (int i = 0; i < ring.count; ++i)
        box.add(ring.x(i), ring.y(i));
    return box;
}

bool holds(const Box& outer, const Box& inner)
{
    return outer.minX <= inner.minX && outer.minY <= inner.minY && outer.maxX >= inner.maxX
        && outer.maxY >= inner.maxY;
}

enum class Side { Inside, Outside, OnEdge };

Side sideOf(const PartView& ring, double x, double y)
{
    bool inside = false;
    for (int i = 0, j = ring.count - 1; i < ring.count; j = i++) {
        const double xi = ring.x(i), yi = ring.y(i), xj = ring.x(j), yj = ring.y(j);
        const double turn = (xj - xi) * (y - yi) - (yj - yi) * (x - xi);
        if (turn == 0 && x >= std::min(xi, xj) && x <= std::max(xi, xj) && y >= std::min(yi, yj)
            && y <= std::max(yi, yj))
            return Side::OnEdge;
        if ((yi > y) != (yj > y) && (turn > 0) == (yj < yi))
            inside = !inside;
    }
    return inside ? Side::Inside : Side::Outside;
}

// The first vertex that lies clearly on one side decides: rings may touch.
bool holds(const Ring& outer, const Ring& hole)
{
    if (!holds(outer.box, hole.box))
        return false;
    for (int i = 0; i < hole.view.count; ++i) {
        const Side side = sideOf(outer.view, hole.view.x(i), hole.view.y(i));
        if (side != Side::OnEdge)
            return side == Side::Inside;
    }
    return true;
}

std::vector<Ring> ringsOf(const EntityStore& entities, int entityIndex)
{
    std::vector<Ring> rings;
    const int count = entities.partCount(entityIndex);
    rings.reserve(static_cast<std::size_t>(count));
    for (int part = 0; part < count; ++part) {
        Ring ring { entities.part(entityIndex, part), {}, 0 };
        ring.area = doubledArea(ring.view);
        ring.box = boxOf(ring.view);
        rings.push_back(ring);
    }
    return rings;
}

bool isPlain(const RingGroups& groups, const std::vector<Ring>& rings)
{
    int next = 0;
    for (const auto& polygon : groups.polygons)
        for (std::size_t k = 0; k < polygon.size(); ++k) {
            const Ring& ring = rings[static_cast<std::size_t>(polygon[k])];
            const bool runsWrong = k == 0 ? ring.area > 0 : ring.area < 0;
            const int last = ring.view.count - 1;
            const bool isOpen = last < 1 || !(ring.view.x(0) == ring.view.x(last))
                || !(ring.view.y(0) == ring.view.y(last));
            if (polygon[k] != next++ || runsWrong || isOpen)
                return false;
        }
    return true;
}

} // namespace

double doubledArea(const PartView& ring)
{
    // Measured from the first vertex, so that far coordinates do not eat the digits.
    double area = 0;
    for (int i = 1; i + 1 < ring.count; ++i)
        area += (ring.x(i) - ring.x(0)) * (ring.y(i + 1) - ring.y(0))
            - (ring.x(i + 1) - ring.x(0)) * (ring.y(i) - ring.y(0));
    return area;
}

RingGroups groupRings(const EntityStore& entities, int entityIndex)
{
    const std::vector<Ring> rings = ringsOf(entities, entityIndex);
    RingGroups groups;
    std::vector<std::size_t> outers; // ring numbers, one a group
    for (std::size_t i = 0; i < rings.size(); ++i)
        if (!(rings[i].area > 0)) {
            outers.push_back(i);
            groups.polygons.push_back({ static_cast<int>(i) });
        }
    std::vector<std::size_t> bySize(outers.size());
    for (std::size_t g = 0; g < bySize.size(); ++g)
        bySize[g] = g;
    std::sort(bySize.begin(), bySize.end(), [&](std::size_t a, std::size_t b) {
        const double left = std::abs(rings[outers[a]].area),
                     right = std::abs(rings[outers[b]].area);
        return left != right ? left < right : a < b;
    });
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (!(rings[i].area > 0))
            continue;
        // With one outer ring there is nothing to choose.
        const auto group = outers.size() == 1
            ? bySize.begin()
            : std::find_if(bySize.begin(), bySize.end(), [&](std::size_t g) {
                  return rings[outers[g]].area < 0 && holds(rings[outers[g]], rings[i]);
              });
        if (group == bySize.end())
            groups.polygons.push_back({ static_cast<int>(i) });
        else
            groups.polygons[*group].push_back(static_cast<int>(i));
    }
    groups.isPlain = isPlain(groups, rings);
    return groups;
}

} // namespace embedded::store
