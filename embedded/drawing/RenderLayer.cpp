// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/MapPicture.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace embedded {
namespace {

constexpr int CancelInterval = 4096; // entities between two looks at the cancel flag

template <typename Draw>
bool forEachEntity(const ThemeLayer& layer, const std::atomic<bool>& cancelled, const Draw& draw)
{
    const int count
        = layer.only ? static_cast<int>(layer.only->size()) : layer.entities->entityCount();
    for (int k = 0; k < count; ++k) {
        if (k % CancelInterval == 0 && cancelled.load(std::memory_order_relaxed))
            return false;
        const int index = layer.only ? (*layer.only)[static_cast<std::size_t>(k)] : k;
        if (index < layer.entities->entityCount())
            draw(index);
    }
    return true;
}

/// Point symbols are opaque squares with a darker edge, written straight into the picture: a
/// painter's call for each of a million points would take seconds.
class PointWriter final {
public:
    PointWriter(const ThemeLayer& layer, const MapView& view, QImage& image)
        : m_view(view)
        , m_bits(reinterpret_cast<QRgb*>(image.bits()))
        , m_stride(image.bytesPerLine() / 4)
        , m_width(image.width())
        , m_height(image.height())
        , m_fill(layer.symbol.colour.rgb() | 0xFF000000u)
        , m_edge(layer.symbol.colour.darker(150).rgb() | 0xFF000000u)
        , m_half(std::max(0, static_cast<int>(layer.symbol.pointSizePixels) / 2))
    {
    }
    void draw(double x, double y) const
    {
        const double px = (x - m_view.centreX) / m_view.unitsPerPixel + m_width * 0.5;
        const double py = (m_view.centreY - y) / m_view.unitsPerPixel + m_height * 0.5;
        if (!(px > -m_half && px < m_width + m_half && py > -m_half && py < m_height + m_half))
            return;
        const int column = static_cast<int>(std::floor(px));
        const int row = static_cast<int>(std::floor(py));
        const int left = std::max(0, column - m_half);
        const int right = std::min(m_width - 1, column + m_half);
        const int top = std::max(0, row - m_half);
        const int bottom = std::min(m_height - 1, row + m_half);
        for (int line = top; line <= bottom; ++line) {
            QRgb* out = m_bits + static_cast<std::ptrdiff_t>(line) * m_stride;
            if (line == row - m_half || line == row + m_half) {
                std::fill(out + left, out + right + 1, m_edge);
                continue;
            }
            std::fill(out + left, out + right + 1, m_fill);
            if (left == column - m_half)
                out[left] = m_edge;
            if (right == column + m_half)
                out[right] = m_edge;
        }
    }

private:
    const MapView& m_view;
    QRgb* m_bits;
    std::ptrdiff_t m_stride;
    int m_width;
    int m_height;
    QRgb m_fill;
    QRgb m_edge;
    int m_half;
};

bool renderPoints(
    const ThemeLayer& layer, const MapView& view, QImage& image, const std::atomic<bool>& cancelled)
{
    const PointWriter writer(layer, view, image);
    const EntitySnapshot& entities = *layer.entities;
    return forEachEntity(layer, cancelled, [&](int index) {
        const int parts = entities.partCount(index);
        for (int p = 0; p < parts; ++p) {
            const PartView part = entities.part(index, p);
            for (int i = 0; i < part.count; ++i)
                writer.draw(part.x(i), part.y(i));
        }
    });
}

/// Pixels of a part; vertices that fall on the pixel of their predecessor are left out, since they
/// cannot be seen.
void pixelsOf(const PartView& part, const MapView& view, QPolygonF& out)
{
    out.clear();
    const double offsetX = view.size.width() * 0.5 - view.centreX / view.unitsPerPixel;
    const double offsetY = view.size.height() * 0.5 + view.centreY / view.unitsPerPixel;
    const double scale = 1.0 / view.unitsPerPixel;
    double lastX = 0;
    double lastY = 0;
    for (int i = 0; i < part.count; ++i) {
        const double x = part.x(i) * scale + offsetX;
        const double y = offsetY - part.y(i) * scale;
        const bool last = i + 1 == part.count;
        if (!out.isEmpty() && !last && std::abs(x - lastX) < 0.5 && std::abs(y - lastY) < 0.5)
            continue;
        out.append(QPointF(x, y));
        lastX = x;
        lastY = y;
    }
}

/// A shape smaller than a pixel is one pixel: a thousand paths that nobody can tell apart cost more
/// than the picture.
bool isDot(const Box& box, const MapView& view)
{
    return box.maxX - box.minX < view.unitsPerPixel && box.maxY - box.minY < view.unitsPerPixel;
}

bool renderShapes(
    const ThemeLayer& layer, const MapView& view, QImage& image, const std::atomic<bool>& cancelled)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool polygons = layer.type == gis::EntType::Polygons;
    QColor fill = layer.symbol.colour;
    fill.setAlpha(96);
    painter.setPen(QPen(
        polygons && layer.hasDarkerEdge ? layer.symbol.colour.darker(130) : layer.symbol.colour,
        layer.symbol.lineWidthPixels));
    painter.setBrush(polygons && !layer.isOutline ? QBrush(fill) : QBrush(Qt::NoBrush));
    const Box shown = view.box();
    const EntitySnapshot& entities = *layer.entities;
    QPolygonF points;
    return forEachEntity(layer, cancelled, [&](int index) {
        const Box box = layer.boxOf(index);
        if (box.isEmpty() || !box.intersects(shown))
            return;
        if (isDot(box, view)) {
            painter.fillRect(
                QRectF(view.toPixels(box.minX, box.minY), QSizeF(1, 1)), layer.symbol.colour);
            return;
        }
        const int parts = entities.partCount(index);
        if (polygons && parts > 1) { // rings together, so that holes stay open
            QPainterPath path;
            path.setFillRule(Qt::OddEvenFill);
            for (int p = 0; p < parts; ++p) {
                pixelsOf(entities.part(index, p), view, points);
                path.addPolygon(points);
                path.closeSubpath();
            }
            painter.drawPath(path);
            return;
        }
        for (int p = 0; p < parts; ++p) {
            pixelsOf(entities.part(index, p), view, points);
            if (polygons)
                painter.drawPolygon(points);
            else
                painter.drawPolyline(points);
        }
    });
}

} // namespace

bool renderLayer(
    const ThemeLayer& layer, const MapView& view, QImage& image, const std::atomic<bool>& cancelled)
{
    if (layer.type == gis::EntType::Points)
        return renderPoints(layer, view, image, cancelled);
    return renderShapes(layer, view, image, cancelled);
}

} // namespace embedded
