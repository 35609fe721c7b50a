// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/Legend.h"

#include "embedded/drawing/MapPicture.h"

#include <QFontMetricsF>
#include <QPainter>

namespace embedded {

void drawSymbolSample(
    QPainter& painter, const QRectF& rectangle, gis::EntType type, const SimpleSymbol& symbol)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor fill = symbol.colour;
    switch (type) {
    case gis::EntType::Points: {
        QRectF square(0, 0, 8, 8);
        square.moveCenter(rectangle.center());
        painter.setPen(symbol.colour.darker(150));
        painter.setBrush(fill);
        painter.drawRect(square);
        break;
    }
    case gis::EntType::Lines:
        painter.setPen(QPen(symbol.colour, 2.2));
        painter.drawPolyline(QPolygonF({ rectangle.bottomLeft(), rectangle.center() - QPointF(0, 2),
            rectangle.center() + QPointF(2, 2), rectangle.topRight() }));
        break;
    case gis::EntType::Polygons:
        fill.setAlpha(96);
        painter.setPen(QPen(symbol.colour.darker(130), symbol.lineWidthPixels));
        painter.setBrush(fill);
        painter.drawRect(rectangle.adjusted(0, 1, 0, -1));
        break;
    }
    painter.restore();
}

void drawLegend(const MapContent& content, QImage& image)
{
    if (content.layers.empty())
        return;
    QPainter painter(&image);
    QFont font;
    font.setPixelSize(13);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const double line = metrics.height() + 7;
    const double sampleWidth = 24;
    const double margin = 10;
    double textWidth = 0;
    for (const ThemeLayer& layer : content.layers)
        textWidth = std::max(textWidth, metrics.horizontalAdvance(layer.name));
    textWidth = std::min(textWidth, image.width() * 0.4);
    const QRectF frame(margin, margin, textWidth + sampleWidth + 3 * margin,
        line * static_cast<double>(content.layers.size()) + margin);
    painter.setPen(QColor(0, 0, 0, 70));
    painter.setBrush(QColor(255, 255, 255, 225));
    painter.drawRect(frame);
    double top = frame.top() + margin / 2;
    for (auto layer = content.layers.rbegin(); layer != content.layers.rend(); ++layer) {
        const QRectF sample(frame.left() + margin, top + 4, sampleWidth, line - 8);
        drawSymbolSample(painter, sample, layer->type, layer->symbol);
        painter.setPen(Qt::black);
        painter.drawText(QRectF(sample.right() + margin, top, textWidth + 1, line),
            Qt::AlignVCenter | Qt::TextSingleLine,
            metrics.elidedText(layer->name, Qt::ElideRight, textWidth + 1));
        top += line;
    }
}

} // namespace embedded
