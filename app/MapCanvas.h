// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "app/MapRenderer.h"

#include <QImage>
#include <QWidget>

#include <memory>
#include <optional>

// Handles travel through signals without anybody looking inside.
Q_DECLARE_OPAQUE_POINTER(gis::CEnt*)

namespace app {

enum class MapTool { Pan, ZoomBox, Select, Identify };

/// The map: shows the last picture, moved and scaled to the present view, until the next one is
/// ready, so that nothing ever waits for the drawing. Thread: the user interface's.
class MapCanvas final : public QWidget {
    Q_OBJECT

public:
    explicit MapCanvas(QWidget* parent = nullptr);
    ~MapCanvas() override;

    /// What is drawn from now on; the view stays.
    void setContent(std::shared_ptr<const embedded::MapContent> content);
    [[nodiscard]] const std::shared_ptr<const embedded::MapContent>& content() const
    {
        return m_content;
    }
    /// What is drawn above the content (selected, found and current entities); null: nothing.
    void setMarks(std::shared_ptr<const embedded::MapContent> marks);
    void setTool(MapTool tool);
    [[nodiscard]] MapTool tool() const { return m_tool; }
    [[nodiscard]] const embedded::MapView& view() const { return m_view; }
    void setView(const embedded::MapView& view);
    void fitAll();
    void zoomBy(double factor);
    void centreAt(double x, double y);
    /// True while a newer picture is being drawn.
    [[nodiscard]] bool isDrawing() const;
    [[nodiscard]] QSize sizeHint() const override { return { 900, 640 }; }

Q_SIGNALS:
    void cursorMoved(double x, double y);
    /// `adds`: Ctrl is held, the entities join those selected.
    void entitiesPicked(const std::vector<gis::CEnt*>& entities, bool adds);
    void identified(gis::CEnt* entity);
    void opened(gis::CEnt* entity); // double click with the identify tool
    void pictureReady();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Picture {
        QImage image;
        embedded::MapView view;
    };
    void drawAgain();
    void request(MapRenderer& renderer, const embedded::MapContent& content);
    void drawPicture(QPainter& painter, const Picture& picture) const;
    [[nodiscard]] gis::CEnt* entityUnder(const QPointF& pixel) const;
    [[nodiscard]] QRectF draggedBox() const;
    void finishBox(bool adds);

    std::shared_ptr<const embedded::MapContent> m_content;
    std::shared_ptr<const embedded::MapContent> m_marks;
    embedded::MapView m_view;
    double m_pixelRatio = 1; // of the pictures to the widget's pixels
    MapRenderer m_renderer;
    MapRenderer m_marksRenderer;
    Picture m_picture;
    Picture m_marksPicture;
    MapTool m_tool = MapTool::Select;
    bool m_isPanning = false;
    std::optional<QPointF> m_pressed;
    QPointF m_last;
};

} // namespace app
