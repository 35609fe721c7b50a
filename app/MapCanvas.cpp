// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/MapCanvas.h"

#include "app/HitTest.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

namespace app {

namespace {
constexpr double PickTolerancePixels = 6;
constexpr double ZoomStep = 1.25;
constexpr double DragStartPixels = 4; // a hand that trembles still clicks
constexpr double KeyPanFraction = 0.2;
} // namespace

MapCanvas::MapCanvas(QWidget* parent)
    : QWidget(parent)
    , m_content(std::make_shared<embedded::MapContent>())
{
    setMarks(nullptr);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(QStringLiteral("Mappa"));
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(200, 150);
    setTool(MapTool::Select);
    connect(&m_renderer, &MapRenderer::drawn, this,
        [this](const QImage& image, const embedded::MapView& view) {
            m_picture = { image, view };
            update();
            Q_EMIT pictureReady();
        });
    connect(&m_marksRenderer, &MapRenderer::drawn, this,
        [this](const QImage& image, const embedded::MapView& view) {
            m_marksPicture = { image, view };
            update();
            Q_EMIT pictureReady();
        });
}

MapCanvas::~MapCanvas() = default;

void MapCanvas::setContent(std::shared_ptr<const embedded::MapContent> content)
{
    m_content = std::move(content);
    drawAgain();
}

void MapCanvas::setMarks(std::shared_ptr<const embedded::MapContent> marks)
{
    if (!marks) {
        auto none = std::make_shared<embedded::MapContent>();
        none->background = Qt::transparent;
        marks = std::move(none);
    }
    m_marks = std::move(marks);
    request(m_marksRenderer, *m_marks);
}

void MapCanvas::setTool(MapTool tool)
{
    m_tool = tool;
    m_pressed.reset();
    setCursor(tool == MapTool::Pan      ? Qt::OpenHandCursor
            : tool == MapTool::Identify ? Qt::WhatsThisCursor
                                        : Qt::CrossCursor);
    update();
}

void MapCanvas::setView(const embedded::MapView& view)
{
    m_view = view;
    m_view.size = size();
    drawAgain();
}

void MapCanvas::fitAll()
{
    setView(embedded::MapView::fitted(embedded::extentOf(*m_content), size()));
}

void MapCanvas::zoomBy(double factor)
{
    setView(m_view.zoomed(factor, QPointF(width() * 0.5, height() * 0.5)));
}

void MapCanvas::centreAt(double x, double y)
{
    embedded::MapView view = m_view;
    view.centreX = x;
    view.centreY = y;
    setView(view);
}

bool MapCanvas::isDrawing() const
{
    return m_renderer.isBusy() || m_marksRenderer.isBusy();
}

void MapCanvas::drawAgain()
{
    update();
    request(m_renderer, *m_content);
    request(m_marksRenderer, *m_marks);
}

/// With the pixels of the screen, which are finer than the window's on a screen of high resolution.
void MapCanvas::request(MapRenderer& renderer, const embedded::MapContent& content)
{
    m_pixelRatio = devicePixelRatioF();
    auto drawn = std::make_shared<embedded::MapContent>(content);
    for (embedded::ThemeLayer& layer : drawn->layers)
        layer.symbol = layer.symbol.scaled(m_pixelRatio);
    embedded::MapView view = m_view;
    view.size = (QSizeF(view.size) * m_pixelRatio).toSize();
    view.unitsPerPixel /= m_pixelRatio;
    renderer.request(std::move(drawn), view);
}

void MapCanvas::drawPicture(QPainter& painter, const Picture& picture) const
{
    if (picture.image.isNull())
        return;
    const double scale = picture.view.unitsPerPixel / m_view.unitsPerPixel;
    const QPointF centre = m_view.toPixels(picture.view.centreX, picture.view.centreY);
    const QSizeF shown(picture.image.width() * scale, picture.image.height() * scale);
    painter.drawImage(
        QRectF(centre - QPointF(shown.width() * 0.5, shown.height() * 0.5), shown), picture.image);
}

void MapCanvas::paintEvent(QPaintEvent*)
{
    if (m_pixelRatio != devicePixelRatioF()) // on another screen now
        QMetaObject::invokeMethod(this, &MapCanvas::drawAgain, Qt::QueuedConnection);
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(rect(), m_content->background);
    drawPicture(painter, m_picture);
    drawPicture(painter, m_marksPicture);
    const bool drags = m_pressed && (m_tool == MapTool::ZoomBox || m_tool == MapTool::Select);
    if (drags && draggedBox().width() + draggedBox().height() > DragStartPixels) {
        QColor fill = palette().color(QPalette::Highlight);
        painter.setPen(fill);
        fill.setAlpha(50);
        painter.setBrush(fill);
        painter.drawRect(draggedBox());
    }
}

void MapCanvas::resizeEvent(QResizeEvent*)
{
    m_view.size = size();
    drawAgain();
}

void MapCanvas::wheelEvent(QWheelEvent* event)
{
    setView(m_view.zoomed(std::pow(ZoomStep, event->angleDelta().y() / 120.0), event->position()));
    event->accept();
}

gis::CEnt* MapCanvas::entityUnder(const QPointF& pixel) const
{
    const QPointF place = m_view.toDrawing(pixel);
    return entityAt(*m_content, place.x(), place.y(), PickTolerancePixels * m_view.unitsPerPixel);
}

QRectF MapCanvas::draggedBox() const
{
    return m_pressed ? QRectF(*m_pressed, m_last).normalized() : QRectF();
}

void MapCanvas::mousePressEvent(QMouseEvent* event)
{
    m_last = event->position();
    const bool pans = event->button() == Qt::MiddleButton
        || (event->button() == Qt::LeftButton && m_tool == MapTool::Pan);
    if (pans) {
        m_isPanning = true;
        setCursor(Qt::ClosedHandCursor);
    } else if (event->button() == Qt::LeftButton) {
        m_pressed = event->position();
    }
}

void MapCanvas::mouseMoveEvent(QMouseEvent* event)
{
    const QPointF place = m_view.toDrawing(event->position());
    Q_EMIT cursorMoved(place.x(), place.y());
    if (m_isPanning) {
        const QPointF moved = event->position() - m_last;
        embedded::MapView view = m_view;
        view.centreX -= moved.x() * view.unitsPerPixel;
        view.centreY += moved.y() * view.unitsPerPixel;
        setView(view);
    }
    m_last = event->position();
    if (m_pressed)
        update();
}

void MapCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    m_last = event->position();
    if (m_isPanning) {
        m_isPanning = false;
        setTool(m_tool);
        return;
    }
    if (!m_pressed || event->button() != Qt::LeftButton)
        return;
    if (m_tool == MapTool::Identify)
        Q_EMIT identified(entityUnder(event->position()));
    else
        finishBox(event->modifiers().testFlag(Qt::ControlModifier));
    m_pressed.reset();
    update();
}

void MapCanvas::finishBox(bool adds)
{
    const QRectF pixels = draggedBox();
    const bool clicked = pixels.width() < DragStartPixels && pixels.height() < DragStartPixels;
    const QPointF lower = m_view.toDrawing(pixels.bottomLeft());
    const QPointF upper = m_view.toDrawing(pixels.topRight());
    const embedded::Box box { lower.x(), lower.y(), upper.x(), upper.y() };
    if (m_tool == MapTool::ZoomBox) {
        if (clicked)
            setView(m_view.zoomed(2, m_last));
        else
            setView(embedded::MapView::fitted(box, size()));
        return;
    }
    std::vector<gis::CEnt*> picked;
    if (!clicked)
        picked = entitiesIn(*m_content, box);
    else if (gis::CEnt* entity = entityUnder(m_last))
        picked.push_back(entity);
    Q_EMIT entitiesPicked(picked, adds);
}

void MapCanvas::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || m_tool != MapTool::Identify) {
        mousePressEvent(event); // two quick clicks are two clicks
        return;
    }
    if (gis::CEnt* entity = entityUnder(event->position()))
        Q_EMIT opened(entity);
}

void MapCanvas::keyPressEvent(QKeyEvent* event)
{
    const double step = KeyPanFraction * m_view.unitsPerPixel;
    embedded::MapView view = m_view;
    switch (event->key()) {
    case Qt::Key_Left:
        view.centreX -= step * width();
        break;
    case Qt::Key_Right:
        view.centreX += step * width();
        break;
    case Qt::Key_Up:
        view.centreY += step * height();
        break;
    case Qt::Key_Down:
        view.centreY -= step * height();
        break;
    case Qt::Key_Plus:
        zoomBy(ZoomStep);
        return;
    case Qt::Key_Minus:
        zoomBy(1 / ZoomStep);
        return;
    case Qt::Key_Escape:
        if (m_pressed) {
            m_pressed.reset();
            update();
        } else {
            Q_EMIT entitiesPicked({}, false);
        }
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    setView(view);
}

} // namespace app
