// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/cad/Symbols.h"

#include <QImage>
#include <QPainter>

#include <map>

namespace {

constexpr int ImageSize = 24;
constexpr int SymbolCount = 12; // ids 0 to 11

/// Draws symbol `id` in black on nothing; the map draws the same shapes in the class's colour.
void drawSymbol(QPainter& painter, int id)
{
    const QRectF box(5, 5, 14, 14);
    const QPointF c = box.center();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 1.6));
    painter.setBrush(id % 2 == 0 ? QBrush(Qt::black) : QBrush(Qt::NoBrush));
    const QPolygonF triangle { QPointF(c.x(), box.top()), box.bottomRight(), box.bottomLeft() };
    const QPolygonF diamond { QPointF(c.x(), box.top()), QPointF(box.right(), c.y()),
        QPointF(c.x(), box.bottom()), QPointF(box.left(), c.y()) };
    switch (id / 2) {
    case 0:
        painter.drawEllipse(box);
        break;
    case 1:
        painter.drawRect(box);
        break;
    case 2:
        painter.drawPolygon(triangle);
        break;
    case 3:
        painter.drawPolygon(diamond);
        break;
    case 4:
        painter.drawLine(QPointF(c.x(), box.top()), QPointF(c.x(), box.bottom()));
        painter.drawLine(QPointF(box.left(), c.y()), QPointF(box.right(), c.y()));
        if (id % 2 == 1)
            painter.drawEllipse(box.adjusted(3, 3, -3, -3));
        break;
    default:
        painter.drawLine(box.topLeft(), box.bottomRight());
        painter.drawLine(box.topRight(), box.bottomLeft());
        if (id % 2 == 1)
            painter.drawRect(box);
    }
}

class DrawnSymbol final : public CSymbol {
public:
    explicit DrawnSymbol(int id)
        : m_image(ImageSize, ImageSize, QImage::Format_ARGB32_Premultiplied)
    {
        m_image.fill(Qt::transparent);
        QPainter painter(&m_image);
        drawSymbol(painter, id);
    }
    const QImage* GetBitmap() override { return &m_image; }

private:
    QImage m_image;
};

} // namespace

CSymbol::~CSymbol() = default;

class CDocSymbolManager::Impl final {
public:
    std::map<int, std::unique_ptr<CSymbol>> symbols; // made when first asked for
};

CDocSymbolManager::CDocSymbolManager()
    : m_impl(std::make_unique<Impl>())
{
}
CDocSymbolManager::~CDocSymbolManager() = default;

CSymbol* CDocSymbolManager::GetSymbol(int id)
{
    if (id < 0 || id >= SymbolCount)
        return nullptr;
    auto& symbol = m_impl->symbols[id];
    if (!symbol)
        symbol = std::make_unique<DrawnSymbol>(id);
    return symbol.get();
}
