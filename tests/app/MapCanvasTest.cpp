// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/HitTest.h"
#include "app/MapCanvas.h"
#include "embedded/model/Library.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

namespace {

using namespace apptest;
using app::MapTool;

class MapCanvasTest : public testing::Test {
protected:
    MapCanvasTest()
    {
        openTown(document, folder.file(QStringLiteral("t.gpkg")));
        canvas.resize(400, 400);
        canvas.show();
        canvas.setContent(std::make_shared<embedded::MapContent>(
            embedded::mapContent(document.library(), embedded::visibleThemes(document.library()))));
        canvas.setView({ 50, 50, 0.5, QSize(400, 400) });
        QObject::connect(&canvas, &app::MapCanvas::entitiesPicked, &canvas,
            [this](const std::vector<gis::CEnt*>& entities, bool adds) {
                picked = entities;
                hasAdded = adds;
                ++picks;
            });
        QObject::connect(&canvas, &app::MapCanvas::identified, &canvas,
            [this](gis::CEnt* entity) { identified = entity; });
        QObject::connect(&canvas, &app::MapCanvas::opened, &canvas,
            [this](gis::CEnt* entity) { opened = entity; });
    }
    gis::CEnt* entity(int theme, int index)
    {
        return document.library().GetEnt(document.library().GetTheme(theme), index);
    }
    QPoint pixel(double x, double y) { return canvas.view().toPixels(x, y).toPoint(); }
    void drag(double x0, double y0, double x1, double y1, Qt::KeyboardModifiers keys = {})
    {
        QTest::mousePress(&canvas, Qt::LeftButton, keys, pixel(x0, y0));
        QTest::mouseMove(&canvas, pixel((x0 + x1) / 2, (y0 + y1) / 2));
        QTest::mouseMove(&canvas, pixel(x1, y1));
        QTest::mouseRelease(&canvas, Qt::LeftButton, keys, pixel(x1, y1));
    }

    CFolder folder;
    app::Document document;
    app::MapCanvas canvas;
    std::vector<gis::CEnt*> picked;
    gis::CEnt* identified = nullptr;
    gis::CEnt* opened = nullptr;
    bool hasAdded = false;
    int picks = 0;
};

TEST_F(MapCanvasTest, AClickPicksWhatLiesOnTop)
{
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, pixel(10, 10));
    EXPECT_EQ(picked, std::vector<gis::CEnt*> { entity(0, 0) }) << "a point lies above a polygon";
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, pixel(30, 30));
    EXPECT_EQ(picked, std::vector<gis::CEnt*> { entity(1, 0) });
    QTest::mouseClick(&canvas, Qt::LeftButton, Qt::ControlModifier, pixel(80, 20));
    EXPECT_EQ(picked, std::vector<gis::CEnt*> { entity(1, 1) });
    EXPECT_TRUE(hasAdded);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, pixel(-20, 120));
    EXPECT_TRUE(picked.empty());
}

TEST_F(MapCanvasTest, ABoxPicksWhatItTouches)
{
    drag(45, 45, 95, 95);
    EXPECT_EQ(picked, (std::vector<gis::CEnt*> { entity(0, 1), entity(0, 2) }));
    drag(5, -5, 70, 12);
    EXPECT_EQ(picked, (std::vector<gis::CEnt*> { entity(1, 0), entity(1, 1), entity(0, 0) }));
    drag(20, 20, 21, 30);
    EXPECT_EQ(picked, std::vector<gis::CEnt*> { entity(1, 0) }) << "a box inside a polygon";
}

TEST_F(MapCanvasTest, EscapeEndsABoxFirstThenTheSelection)
{
    QTest::mousePress(&canvas, Qt::LeftButton, {}, pixel(0, 0));
    QTest::mouseMove(&canvas, pixel(60, 60));
    QTest::keyClick(&canvas, Qt::Key_Escape);
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, pixel(60, 60));
    EXPECT_EQ(picks, 0);
    QTest::keyClick(&canvas, Qt::Key_Escape);
    EXPECT_EQ(picks, 1);
    EXPECT_TRUE(picked.empty());
}

TEST_F(MapCanvasTest, IdentifyTellsTheEntityAndADoubleClickOpensIt)
{
    canvas.setTool(MapTool::Identify);
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, pixel(90, 90));
    EXPECT_EQ(identified, entity(0, 1));
    QTest::mouseDClick(&canvas, Qt::LeftButton, {}, pixel(80, 20));
    EXPECT_EQ(opened, entity(1, 1));
    EXPECT_EQ(picks, 0);
}

TEST_F(MapCanvasTest, TheWheelKeepsThePlaceUnderTheCursor)
{
    const QPointF cursor(300, 120);
    const QPointF before = canvas.view().toDrawing(cursor);
    QWheelEvent wheel(cursor, canvas.mapToGlobal(cursor), {}, QPoint(0, 240), Qt::NoButton, {},
        Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas, &wheel);

    EXPECT_LT(canvas.view().unitsPerPixel, 0.5);
    EXPECT_NEAR(canvas.view().toDrawing(cursor).x(), before.x(), 1e-9);
    EXPECT_NEAR(canvas.view().toDrawing(cursor).y(), before.y(), 1e-9);
}

TEST_F(MapCanvasTest, PanningMovesTheDrawingWithTheHand)
{
    canvas.setTool(MapTool::Pan);
    const QPoint from(200, 200);
    const QPointF held = canvas.view().toDrawing(from);
    QTest::mousePress(&canvas, Qt::LeftButton, {}, from);
    QTest::mouseMove(&canvas, QPoint(240, 170));
    QTest::mouseRelease(&canvas, Qt::LeftButton, {}, QPoint(240, 170));

    EXPECT_NEAR(canvas.view().toDrawing(QPoint(240, 170)).x(), held.x(), 1e-9);
    EXPECT_NEAR(canvas.view().toDrawing(QPoint(240, 170)).y(), held.y(), 1e-9);
}

TEST_F(MapCanvasTest, AZoomBoxIsSeenWhole)
{
    canvas.setTool(MapTool::ZoomBox);
    drag(60, 0, 100, 40);
    const embedded::Box seen = canvas.view().box();
    EXPECT_LE(seen.minX, 60);
    EXPECT_GE(seen.maxX, 100);
    EXPECT_LT(canvas.view().unitsPerPixel, 0.2);
}

TEST_F(MapCanvasTest, TheLastPictureStaysUntilTheNextIsReady)
{
    ASSERT_TRUE(waitFor([&] { return !canvas.isDrawing(); }));
    const QImage first = canvas.grab().toImage();
    QSignalSpy ready(&canvas, &app::MapCanvas::pictureReady);

    embedded::MapView moved = canvas.view();
    moved.centreX += 10;
    canvas.setView(moved);
    EXPECT_TRUE(canvas.isDrawing());
    const QImage meanwhile = canvas.grab().toImage();

    // The old picture, shifted: what was at a place is 20 pixels further left.
    const QPoint place(130, 250); // inside the left polygon
    ASSERT_NE(first.pixelColor(place), QColor(Qt::white));
    EXPECT_EQ(meanwhile.pixelColor(place - QPoint(20, 0)), first.pixelColor(place));
    EXPECT_EQ(ready.count(), 0) << "nothing waited for the drawing";
    EXPECT_TRUE(waitFor([&] { return !canvas.isDrawing(); }));
}

TEST_F(MapCanvasTest, AMillionPointsNeverHoldUpTheWindow)
{
    constexpr int Count = 1'000'000;
    gis::CLibGis& library = document.library();
    gis::CTheme* theme = library.GetTheme(0);
    theme->table->addRows(Count);
    for (int i = 0; i < Count; ++i) {
        theme->entities().addEntity(theme->table->row(3 + i));
        double* vertex = theme->entities().addPart(1);
        vertex[0] = (i % 1000) * 0.1;
        vertex[1] = (i / 1000) * 0.1;
    }
    canvas.setContent(
        std::make_shared<embedded::MapContent>(embedded::mapContent(library, { theme })));

    // Each move asks for a new picture; what the window does itself stays short. The limit is wide:
    // drawing a million points on this thread would break it many times over in the sum.
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 200; ++i) {
        embedded::MapView view = canvas.view();
        view.centreX += 0.1;
        canvas.setView(view);
        canvas.repaint();
    }
    EXPECT_LT(timer.elapsed(), 2000);
    EXPECT_TRUE(waitFor([&] { return !canvas.isDrawing(); }));
    const QImage image = canvas.grab().toImage();
    EXPECT_NE(image.pixelColor(200, 200), QColor(Qt::white));
}

} // namespace
