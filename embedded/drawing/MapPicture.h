// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/drawing/MapView.h"

#include <QColor>
#include <QImage>
#include <QString>

#include <atomic>
#include <memory>
#include <unordered_set>
#include <vector>

namespace gis {
class CLibGis;
}

namespace embedded {

/// How the entities of a theme are drawn: points as filled squares, lines as strokes, polygons
/// filled and outlined.
struct SimpleSymbol {
    QColor colour;
    double pointSizePixels = 5;
    double lineWidthPixels = 1.2;
    [[nodiscard]] SimpleSymbol scaled(double factor) const
    {
        return { colour, pointSizePixels * factor, lineWidthPixels * factor };
    }
};

/// A theme as it is drawn: a snapshot that another thread may read.
struct ThemeLayer {
    QString name;
    gis::EntType type = gis::EntType::Points;
    SimpleSymbol symbol;
    std::shared_ptr<const EntitySnapshot> entities;
    /// The box of an entity; kept with the snapshot but for points, where computing is quicker.
    [[nodiscard]] Box boxOf(int index) const
    {
        return type == gis::EntType::Points ? entities->boxOf(index)
                                            : entities->boxes()[static_cast<std::size_t>(index)];
    }
    std::shared_ptr<const std::vector<int>>
        only; // ascending indexes of the entities to draw; null: all
    bool isOutline = false; // polygons are not filled
    bool hasDarkerEdge = true; // of polygons; marks keep their own colour
};

/// Everything a picture of the map needs, taken on the library's thread and drawn on any.
struct MapContent {
    std::vector<ThemeLayer> layers; // drawn in this order
    std::vector<ThemeLayer> highlighted; // drawn above, `only` filled
    QColor background = Qt::white;
    bool legend = false;
};

/// Colour of a theme by its place in the library; themes next to each other differ for every sight.
QColor themeColour(int themeIndex);

/// The visible themes of a library, or those named (in library order).
/// Errors: geometry that cannot be read is left out; Library::failedRead tells why. Thread: the
/// library's.
MapContent mapContent(gis::CLibGis& library, const std::vector<gis::CTheme*>& themes);
std::vector<gis::CTheme*> visibleThemes(gis::CLibGis& library);

/// Extent of the content's layers.
Box extentOf(const MapContent& content);

/// Draws the content. Returns a null image when `cancelled` became true meanwhile.
/// Thread: any; several pictures may be drawn at once.
QImage renderMap(
    const MapContent& content, const MapView& view, const std::atomic<bool>& cancelled);

/// Draws one layer onto an ARGB32-premultiplied image of the view's size; false when cancelled.
bool renderLayer(const ThemeLayer& layer, const MapView& view, QImage& image,
    const std::atomic<bool>& cancelled);

} // namespace embedded
