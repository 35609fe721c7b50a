// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/MapPicture.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <QImage>

namespace {

using embedded::MapContent;
using embedded::MapView;
using support::makeLibrary;

const QSize Size(200, 200);
const std::atomic<bool> GoesOn = false;

/// One unit a pixel, (0, 0) in the middle.
MapView plainView()
{
    return { 0, 0, 1, Size };
}

QImage drawn(gis::CLibGis& library, const MapView& view)
{
    return embedded::renderMap(
        embedded::mapContent(library, embedded::visibleThemes(library)), view, GoesOn);
}

/// The colour at a place of the drawing under the plain view.
QColor at(const QImage& image, double x, double y)
{
    const QPointF pixel = plainView().toPixels(x, y);
    return image.pixelColor(static_cast<int>(pixel.x()), static_cast<int>(pixel.y()));
}

qint64 colouredPixels(const QImage& image)
{
    qint64 count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) != QColor(Qt::white);
    return count;
}

TEST(MapPictureTest, PointsStandAtTheirPlaces)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'), ('y');"
                                     "theme P: points 2d on T;"
                                     "ents P: 0 [50 30], 1 [-60 -40]");

    const QImage image = drawn(*library, plainView());

    EXPECT_EQ(at(image, 50, 30), embedded::themeColour(0));
    EXPECT_EQ(at(image, -60, -40), embedded::themeColour(0));
    EXPECT_EQ(at(image, 50, -30), QColor(Qt::white));
    EXPECT_LT(colouredPixels(image), 100);
}

TEST(MapPictureTest, AHoleIsNotFilled)
{
    const auto library = makeLibrary(
        "table T (a text); rows T: ('x'); theme A: polygons 2d on T;"
        "ents A: 0 [-80 -80, -80 80, 80 80, 80 -80, -80 -80 | -30 -30, 30 -30, 30 30, -30 30, "
        "-30 -30]");

    const QImage image = drawn(*library, plainView());

    EXPECT_EQ(at(image, 0, 0), QColor(Qt::white));
    EXPECT_NE(at(image, 50, 50), QColor(Qt::white));
    EXPECT_EQ(at(image, 95, 95), QColor(Qt::white));
}

TEST(MapPictureTest, ALineRunsFromEndToEndAndPartsStayApart)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'); theme L: lines 2d on T;"
                                     "ents L: 0 [-80 0, -20 0 | 20 0, 80 0]");

    const QImage image = drawn(*library, plainView());

    EXPECT_NE(at(image, -50, 0), QColor(Qt::white));
    EXPECT_NE(at(image, 50, 0), QColor(Qt::white));
    EXPECT_EQ(at(image, 0, 0), QColor(Qt::white));
}

TEST(MapPictureTest, HiddenThemesAreNotDrawnAndNullShapesAreNothing)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'), ('y');"
                                     "theme P: points 2d on T hidden; ents P: 0 [0 0], 1 []");
    EXPECT_EQ(colouredPixels(drawn(*library, plainView())), 0);

    library->SetThemeVisible(library->GetTheme(0), true);
    EXPECT_GT(colouredPixels(drawn(*library, plainView())), 0);
}

TEST(MapPictureTest, CoordinatesFarOutsideAndNotFiniteDoNoHarm)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'); theme L: lines 2d on T;"
                                     "ents L: 0 [-1e300 0, 1e300 0]");
    auto* vertex = const_cast<double*>(library->GetTheme(0)->geometry().part(0, 0).coordinates);
    EXPECT_FALSE(drawn(*library, plainView()).isNull());
    vertex[0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(drawn(*library, plainView()).isNull());
    vertex[0] = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(drawn(*library, plainView()).isNull());
}

TEST(MapPictureTest, ACancelledPictureIsNoPicture)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'); theme P: points 2d on T;"
                                     "ents P: 0 [0 0]");
    const std::atomic<bool> cancelled = true;
    EXPECT_TRUE(embedded::renderMap(
        embedded::mapContent(*library, embedded::visibleThemes(*library)), plainView(), cancelled)
                    .isNull());
}

TEST(MapPictureTest, ContentStaysAsItWasWhenTheLibraryGrows)
{
    const auto library = makeLibrary("table T (a text); rows T: ('x'), ('y');"
                                     "theme P: points 2d on T; ents P: 0 [0 0]");
    const MapContent before = embedded::mapContent(*library, embedded::visibleThemes(*library));
    gis::CTheme* theme = library->GetTheme(0);
    theme->entities().addEntity(theme->table->row(1));
    double* vertex = theme->entities().addPart(1);
    vertex[0] = 50;
    vertex[1] = 50;

    EXPECT_EQ(at(embedded::renderMap(before, plainView(), GoesOn), 50, 50), QColor(Qt::white));
    EXPECT_EQ(at(drawn(*library, plainView()), 50, 50), embedded::themeColour(0));
}

TEST(MapViewTest, ZoomingKeepsThePointUnderTheCursor)
{
    const MapView view { 1000, 2000, 2, Size };
    const QPointF pixel(30, 170);
    const QPointF before = view.toDrawing(pixel);

    const MapView closer = view.zoomed(3, pixel);

    EXPECT_NEAR(closer.toDrawing(pixel).x(), before.x(), 1e-9);
    EXPECT_NEAR(closer.toDrawing(pixel).y(), before.y(), 1e-9);
    EXPECT_NEAR(closer.unitsPerPixel, 2.0 / 3.0, 1e-12);
}

TEST(MapViewTest, AFittedBoxIsSeenWhole)
{
    const embedded::Box box { 100, 200, 1100, 260 };
    const MapView view = MapView::fitted(box, Size);
    EXPECT_LE(view.box().minX, 100);
    EXPECT_GE(view.box().maxX, 1100);
    EXPECT_LE(view.box().minY, 200);
    EXPECT_GE(view.box().maxY, 260);
    const MapView point = MapView::fitted({ 5, 5, 5, 5 }, Size);
    EXPECT_EQ(point.unitsPerPixel, 1);
}

TEST(MapViewTest, ABoxFittedWithoutMarginReachesTheEdges)
{
    const MapView wide = MapView::fitted({ 100, 200, 1100, 260 }, Size, 0);
    EXPECT_NEAR(wide.box().minX, 100, 1e-9);
    EXPECT_NEAR(wide.box().maxX, 1100, 1e-9);
    EXPECT_NEAR(wide.centreY, 230, 1e-9);
    const MapView high = MapView::fitted({ 0, 0, 10, 50 }, Size, 0);
    EXPECT_NEAR(high.box().minY, 0, 1e-9);
    EXPECT_NEAR(high.box().maxY, 50, 1e-9);
    const MapView plain = MapView::fitted({ 0, 0, 10, 50 }, Size);
    EXPECT_NEAR(plain.box().minY, -2, 1e-9) << "four of a hundred on each side";
    EXPECT_NEAR(plain.box().maxY, 52, 1e-9);
}

/// The largest file of the test data: each polygon's own place is coloured.
TEST(MapPictureTest, TwentyThousandBuildingsAreWhereTheirCentroidsAre)
{
    TEMATICA_NEEDS_TEST_DATA();
    const auto file = support::testDataFolder() / "dpc-aggregati/Pistoia.shp";
    gis::CLibGis library;
    embedded::Report report;
    ASSERT_TRUE(embedded::importShapefile(library, file.string(), {}, nullptr, nullptr, report));
    const MapContent content = embedded::mapContent(library, embedded::visibleThemes(library));
    gis::CTheme* theme = library.GetTheme(0);
    int inside = 0;
    int looked = 0;
    for (int i = 0; i < theme->entities().entityCount(); i += 997) {
        gis::CEnt* ent = theme->entities().entity(i);
        const embedded::Box box = theme->geometry().boxOf(i);
        const MapView view = MapView::fitted(box, Size);
        const QImage image = embedded::renderMap(content, view, GoesOn);
        const QPointF centre
            = view.toPixels(gis::FCalcXCentPredef(ent), gis::FCalcYCentPredef(ent));
        ++looked;
        inside += image.pixelColor(centre.toPoint()) != QColor(Qt::white) ? 1 : 0;
    }
    // A building around a court has its centroid outside.
    EXPECT_GE(looked, 20);
    EXPECT_GE(inside, looked - 3);
}

} // namespace
