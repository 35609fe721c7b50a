// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/EntityStore.h"

#include <QPointF>
#include <QSize>

namespace embedded {

/// The part of the drawing that a picture shows. Units: drawing units, y upwards; pixels, y
/// downwards.
struct MapView {
    double centreX = 0;
    double centreY = 0;
    double unitsPerPixel = 1;
    QSize size { 800, 600 };

    [[nodiscard]] QPointF toPixels(double x, double y) const
    {
        return { (x - centreX) / unitsPerPixel + size.width() * 0.5,
            (centreY - y) / unitsPerPixel + size.height() * 0.5 };
    }
    [[nodiscard]] QPointF toDrawing(const QPointF& pixel) const
    {
        return { centreX + (pixel.x() - size.width() * 0.5) * unitsPerPixel,
            centreY - (pixel.y() - size.height() * 0.5) * unitsPerPixel };
    }
    [[nodiscard]] Box box() const;
    /// The view that shows a box whole, with a margin on each side as a fraction of the box; a box
    /// without extent gets one unit a pixel.
    [[nodiscard]] static MapView fitted(const Box& box, QSize size, double margin = 0.04);
    /// Zoomed by a factor (above 1: closer) while the point under `pixel` stays.
    [[nodiscard]] MapView zoomed(double factor, const QPointF& pixel) const;
    friend bool operator==(const MapView&, const MapView&) = default;
};

} // namespace embedded
