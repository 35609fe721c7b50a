// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/HitTest.h"
#include "app/MapCanvas.h"
#include "embedded/model/Library.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QBackingStore>
#include <QPainter>
#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>
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

TEST_F(MapCanvasTest, TheMiddleButtonPansWithAnyTool)
{
    for (const MapTool tool : { MapTool::Select, MapTool::ZoomBox, MapTool::Identify }) {
        canvas.setTool(tool);
        const embedded::MapView before = canvas.view();
        const QPoint from(200, 200);
        const QPoint to(150, 230);
        const QPointF held = before.toDrawing(from);
        QTest::mousePress(&canvas, Qt::MiddleButton, {}, from);
        QTest::mouseMove(&canvas, to);
        QTest::mouseRelease(&canvas, Qt::MiddleButton, {}, to);
        EXPECT_NEAR(canvas.view().toDrawing(to).x(), held.x(), 1e-9);
        EXPECT_NEAR(canvas.view().toDrawing(to).y(), held.y(), 1e-9);
        EXPECT_EQ(canvas.view().unitsPerPixel, before.unitsPerPixel);
        EXPECT_EQ(canvas.tool(), tool);
    }
    EXPECT_EQ(picks, 0);
    EXPECT_EQ(identified, nullptr);
}

TEST_F(MapCanvasTest, ArrowKeysPanAndPlusAndMinusZoomAboutTheMiddle)
{
    const struct {
        Qt::Key key;
        int right;
        int up;
    } cases[] = { { Qt::Key_Left, -1, 0 }, { Qt::Key_Right, 1, 0 }, { Qt::Key_Up, 0, 1 },
        { Qt::Key_Down, 0, -1 } };
    for (const auto& [key, right, up] : cases) {
        canvas.setView({ 50, 50, 0.5, QSize(400, 400) });
        QTest::keyClick(&canvas, key);
        const double moved = 0.2 * 400 * 0.5; // a fifth of what is seen
        EXPECT_NEAR(canvas.view().centreX, 50 + right * moved, 1e-9) << key;
        EXPECT_NEAR(canvas.view().centreY, 50 + up * moved, 1e-9) << key;
        EXPECT_EQ(canvas.view().unitsPerPixel, 0.5);
    }
    canvas.setView({ 50, 50, 0.5, QSize(400, 400) });
    QTest::keyClick(&canvas, Qt::Key_Plus);
    EXPECT_NEAR(canvas.view().unitsPerPixel, 0.4, 1e-9);
    EXPECT_NEAR(canvas.view().centreX, 50, 1e-9);
    QTest::keyClick(&canvas, Qt::Key_Minus);
    QTest::keyClick(&canvas, Qt::Key_Minus);
    EXPECT_NEAR(canvas.view().unitsPerPixel, 0.625, 1e-9);
    EXPECT_NEAR(canvas.view().centreY, 50, 1e-9);
}

TEST_F(MapCanvasTest, AClickWithTheZoomToolBringsItsPlaceCloser)
{
    canvas.setTool(MapTool::ZoomBox);
    const QPointF before = canvas.view().toDrawing(QPoint(300, 100));
    QTest::mouseClick(&canvas, Qt::LeftButton, {}, QPoint(300, 100));
    EXPECT_NEAR(canvas.view().unitsPerPixel, 0.25, 1e-9);
    EXPECT_NEAR(canvas.view().toDrawing(QPoint(300, 100)).x(), before.x(), 1e-9);
    EXPECT_NEAR(canvas.view().toDrawing(QPoint(300, 100)).y(), before.y(), 1e-9);
    EXPECT_EQ(picks, 0);
}

TEST_F(MapCanvasTest, TwoQuickClicksAreTwoClicks)
{
    const auto clickTwice = [&](const QPoint& place, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(&canvas, Qt::LeftButton, keys, place);
        QTest::mouseDClick(&canvas, Qt::LeftButton, keys, place); // the second press
        QTest::mouseRelease(&canvas, Qt::LeftButton, keys, place);
    };
    clickTwice(pixel(10, 10), Qt::ControlModifier);
    EXPECT_EQ(picks, 2);
    EXPECT_TRUE(hasAdded);
    EXPECT_EQ(picked, std::vector<gis::CEnt*> { entity(0, 0) });
    EXPECT_EQ(opened, nullptr) << "only the identify tool opens";

    canvas.setTool(MapTool::ZoomBox);
    clickTwice(QPoint(200, 200));
    EXPECT_NEAR(canvas.view().unitsPerPixel, 0.125, 1e-9);
    EXPECT_EQ(picks, 2);
    EXPECT_EQ(opened, nullptr);
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

/// What the map would draw for its view, without a window.
QImage drawnFor(const app::MapCanvas& map)
{
    const double ratio = map.devicePixelRatioF();
    embedded::MapContent content = *map.content();
    for (embedded::ThemeLayer& layer : content.layers)
        layer.symbol = layer.symbol.scaled(ratio);
    embedded::MapView view = map.view();
    view.size = (QSizeF(view.size) * ratio).toSize();
    view.unitsPerPixel /= ratio;
    return embedded::renderMap(content, view, false).convertToFormat(QImage::Format_RGB32);
}

/// What a window gives to the screen, pixel by pixel (a grab has a ratio of its own).
QImage pixelsOf(QWidget& window)
{
    window.repaint();
    auto* device = window.backingStore() ? window.backingStore()->paintDevice() : nullptr;
    if (!device || device->devType() != QInternal::Image)
        return {};
    return static_cast<QImage*>(device)->convertToFormat(QImage::Format_RGB32);
}

/// Also where the screen's pixels are no whole number a unit (QT_SCALE_FACTOR, with which ctest
/// runs this too) and the widget begins and ends within one.
TEST_F(MapCanvasTest, ThePictureIsSharpOnEveryScreen)
{
    QWidget window;
    window.resize(450, 350);
    auto* map = new app::MapCanvas(&window);
    map->setGeometry(13, 7, 401, 303);
    map->setContent(canvas.content());
    window.show();
    const double ratio = map->devicePixelRatioF();
    const double unitsPerPixel[] = { 0.4, 0.37, 1.0 / 3, 0.123 };
    for (const double units : unitsPerPixel) {
        map->setView({ 50, 50, units, map->size() });
        ASSERT_TRUE(waitFor([&] { return !map->isDrawing(); }));
        const QImage drawn = drawnFor(*map);
        const QImage seen = pixelsOf(window);
        ASSERT_FALSE(seen.isNull());
        // Pixel for pixel, beside the widget's corner.
        const QRect inner = drawn.rect().adjusted(2, 2, -2, -2);
        bool isSame = false;
        for (const int dx : { 0, 1 })
            for (const int dy : { 0, 1 }) {
                const QPoint corner(
                    static_cast<int>(13 * ratio) + dx, static_cast<int>(7 * ratio) + dy);
                isSame = isSame || seen.copy(inner.translated(corner)) == drawn.copy(inner);
            }
        EXPECT_TRUE(isSame) << units << " units a pixel, ratio " << ratio;
    }
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

    // Nobody draws meanwhile: whoever waited for a picture would wait for ever.
    QThreadPool& pool = *QThreadPool::globalInstance();
    QSemaphore isBlocked;
    for (int i = 0; i < pool.maxThreadCount(); ++i)
        pool.start([&isBlocked] { isBlocked.acquire(); });
    QSignalSpy ready(&canvas, &app::MapCanvas::pictureReady);
    for (int i = 0; i < 200; ++i) {
        embedded::MapView view = canvas.view();
        view.centreX += 0.1;
        canvas.setView(view);
        canvas.repaint();
    }
    EXPECT_TRUE(canvas.isDrawing());
    EXPECT_EQ(ready.count(), 0) << "each move shows the last picture";
    isBlocked.release(pool.maxThreadCount());
    EXPECT_TRUE(waitFor([&] { return !canvas.isDrawing(); }));
    pool.waitForDone();
    const QImage image = canvas.grab().toImage();
    EXPECT_NE(image.pixelColor(200, 200), QColor(Qt::white));
}

} // namespace
