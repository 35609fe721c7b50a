// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/drawing/MapPicture.h"
#include "embedded/model/Library.h"

#include <fmt/format.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>

namespace bench {
namespace {

constexpr int Width = 1600;
constexpr int Height = 1000;
constexpr int PolygonCorners = 20;

void requirePicture(const QImage& image)
{
    if (!image.isNull())
        return;
    std::fprintf(stderr, "bench: no picture was drawn\n");
    std::exit(1);
}

/// The pixels of each point's symbol, written by a plain loop.
void drawPlainPoints(
    const PointArrays& points, const embedded::MapView& view, int size, QImage& image)
{
    auto* pixels = reinterpret_cast<QRgb*>(image.bits());
    const std::ptrdiff_t stride = image.bytesPerLine() / 4;
    for (std::size_t i = 0; i < points.x.size(); ++i) {
        const QPointF place = view.toPixels(points.x[i], points.y[i]);
        const int left = static_cast<int>(std::floor(place.x())) - size / 2;
        const int top = static_cast<int>(std::floor(place.y())) - size / 2;
        for (int y = std::max(0, top); y < std::min(Height, top + size); ++y)
            for (int x = std::max(0, left); x < std::min(Width, left + size); ++x)
                pixels[y * stride + x] = 0xFF1F6FB2;
    }
}

void pointsJob(Jobs& jobs)
{
    const std::string name = fmt::format("draw {} points, 1600 x 1000", jobs.settings().rows());
    if (!jobs.wants(name))
        return;
    const PointArrays points = makePoints(jobs.settings().rows());
    gis::CLibGis library;
    gis::CTheme* theme = fillLibrary(library, points);
    const embedded::MapContent content = embedded::mapContent(library, { theme });
    const auto view = embedded::MapView::fitted(embedded::extentOf(content), QSize(Width, Height));
    const std::atomic<bool> cancelled = false;
    const double ours
        = medianMs(7, [&] { requirePicture(embedded::renderMap(content, view, cancelled)); });
    const int size = static_cast<int>(content.layers.front().symbol.pointSizePixels);
    const double peer = medianMs(7, [&] {
        QImage image(Width, Height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        drawPlainPoints(points, view, size, image);
    });
    jobs.add({ name, ours, "plain loop over pixels", peer, 3.0 });
}

/// Stars in rows; each closed, as rings are kept.
gis::CTheme* fillPolygons(gis::CLibGis& facade, int count)
{
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Stelle"));
    table->addRows(count);
    gis::CTheme* theme
        = library.createTheme(table, "Stelle", gis::EntType::Polygons, gis::EntTypeCoords::XY, 0);
    const int columns = static_cast<int>(std::sqrt(count * 1.6));
    for (int i = 0; i < count; ++i) {
        theme->entities().addEntity(table->row(i));
        double* vertex = theme->entities().addPart(PolygonCorners + 1);
        for (int corner = 0; corner <= PolygonCorners; ++corner) {
            // Clockwise, as outer rings are.
            const double angle = -2 * std::numbers::pi * (corner % PolygonCorners) / PolygonCorners;
            const double radius = corner % 2 == 1 ? 4.0 : 6.0;
            *vertex++ = 10.0 * (i % columns) + radius * std::cos(angle);
            *vertex++ = 10.0 * (i / columns) + radius * std::sin(angle);
        }
    }
    return theme;
}

/// The same shapes by QPainter alone, filled and outlined in one call each.
void drawBarePolygons(const embedded::EntitySnapshot& entities, const embedded::MapView& view,
    QColor colour, QImage& image)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = colour;
    fill.setAlpha(90);
    painter.setBrush(fill);
    painter.setPen(QPen(colour, 1.2));
    QPolygonF polygon;
    for (int i = 0; i < entities.entityCount(); ++i) {
        const embedded::PartView part = entities.part(i, 0);
        polygon.resize(part.count);
        for (int k = 0; k < part.count; ++k)
            polygon[k] = view.toPixels(part.x(k), part.y(k));
        painter.drawPolygon(polygon);
    }
}

void polygonsJob(Jobs& jobs)
{
    const int count = jobs.settings().rows() / 10;
    const std::string name = fmt::format("draw {} polygons of {} corners", count, PolygonCorners);
    if (!jobs.wants(name))
        return;
    gis::CLibGis library;
    gis::CTheme* theme = fillPolygons(library, count);
    const embedded::MapContent content = embedded::mapContent(library, { theme });
    const auto view = embedded::MapView::fitted(embedded::extentOf(content), QSize(Width, Height));
    const std::atomic<bool> cancelled = false;
    const double ours
        = medianMs(5, [&] { requirePicture(embedded::renderMap(content, view, cancelled)); });
    const embedded::ThemeLayer& layer = content.layers.front();
    const double peer = medianMs(5, [&] {
        QImage image(Width, Height, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        drawBarePolygons(*layer.entities, view, layer.symbol.colour, image);
    });
    jobs.add({ name, ours, "bare QPainter", peer, 2.0 });
}

} // namespace

void drawingJobs(Jobs& jobs)
{
    pointsJob(jobs);
    polygonsJob(jobs);
}

} // namespace bench
