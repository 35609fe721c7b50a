// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/MapView.h"

#include <algorithm>
#include <cmath>

namespace embedded {

namespace {
// Beyond these a double no longer tells neighbouring pixels apart, or the picture is one colour
// anyway.
constexpr double SmallestUnitsPerPixel = 1e-9;
constexpr double LargestUnitsPerPixel = 1e12;
} // namespace

Box MapView::box() const
{
    const double halfWidth = size.width() * 0.5 * unitsPerPixel;
    const double halfHeight = size.height() * 0.5 * unitsPerPixel;
    return { centreX - halfWidth, centreY - halfHeight, centreX + halfWidth, centreY + halfHeight };
}

MapView MapView::fitted(const Box& box, QSize size, double margin)
{
    MapView view;
    view.size = size;
    if (box.isEmpty())
        return view;
    view.centreX = box.minX + (box.maxX - box.minX) * 0.5;
    view.centreY = box.minY + (box.maxY - box.minY) * 0.5;
    const double scale = std::max((box.maxX - box.minX) / std::max(1, size.width()),
                             (box.maxY - box.minY) / std::max(1, size.height()))
        * (1 + 2 * margin);
    if (scale > 0 && std::isfinite(scale))
        view.unitsPerPixel = std::clamp(scale, SmallestUnitsPerPixel, LargestUnitsPerPixel);
    return view;
}

MapView MapView::zoomed(double factor, const QPointF& pixel) const
{
    MapView view = *this;
    const QPointF fixed = toDrawing(pixel);
    view.unitsPerPixel
        = std::clamp(unitsPerPixel / factor, SmallestUnitsPerPixel, LargestUnitsPerPixel);
    view.centreX = fixed.x() - (pixel.x() - size.width() * 0.5) * view.unitsPerPixel;
    view.centreY = fixed.y() + (pixel.y() - size.height() * 0.5) * view.unitsPerPixel;
    return view;
}

} // namespace embedded
