// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "embedded/drawing/MapPicture.h"
#include "kit/MessageBox.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAction>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

namespace {

using namespace apptest;

class MainWindowViewTest : public CTownWindow {
protected:
    app::MapCanvas& canvas() { return window.canvas(); }
    /// The label of the status line whose text begins so.
    QString statusText(const QString& beginning)
    {
        for (const QLabel* label : window.findChildren<QLabel*>())
            if (label->text().startsWith(beginning))
                return label->text();
        return {};
    }
    void pointAt(double x, double y)
    {
        const QPointF place = canvas().view().toPixels(x, y);
        QMouseEvent move(QEvent::MouseMove, place, canvas().mapToGlobal(place), Qt::NoButton,
            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &move);
    }
    [[nodiscard]] bool isSeenWhole(const embedded::Box& box)
    {
        const embedded::Box seen = canvas().view().box();
        const bool fills = (seen.maxX - seen.minX) < 1.5 * (box.maxX - box.minX)
            || (seen.maxY - seen.minY) < 1.5 * (box.maxY - box.minY);
        return fills && seen.minX <= box.minX && seen.minY <= box.minY && seen.maxX >= box.maxX
            && seen.maxY >= box.maxY;
    }
    QImage picture()
    {
        EXPECT_TRUE(waitFor([&] { return !canvas().isDrawing(); }));
        return canvas().grab().toImage();
    }
    /// Pixels darker than any symbol within so many pixels of a place of the drawing.
    int darkPixels(const QImage& image, double x, double y, int reach)
    {
        return pixelsThat(image, x, y, reach, [](const QColor& seen) {
            return seen.red() < 100 && seen.green() < 100 && seen.blue() < 100;
        });
    }
    /// Pixels of about this colour.
    int pixelsLike(const QImage& image, QRgb colour, double x, double y, int reach)
    {
        const QColor wanted(colour);
        return pixelsThat(image, x, y, reach, [&](const QColor& seen) {
            return std::abs(seen.red() - wanted.red()) < 24
                && std::abs(seen.green() - wanted.green()) < 24
                && std::abs(seen.blue() - wanted.blue()) < 24;
        });
    }

private:
    template <typename Test>
    int pixelsThat(const QImage& image, double x, double y, int reach, const Test& test)
    {
        const QPoint place = canvas().view().toPixels(x, y).toPoint();
        int count = 0;
        for (int dy = -reach; dy <= reach; ++dy)
            for (int dx = -reach; dx <= reach; ++dx)
                count += test(image.pixelColor(place + QPoint(dx, dy))) ? 1 : 0;
        return count;
    }
};

constexpr embedded::Box TownBox { 0, 0, 100, 90 };
constexpr QRgb CurrentColour = 0xD50000;
constexpr QRgb SelectedColour = 0x00B8D4;
constexpr QRgb FoundColour = 0xF08C00;

TEST_F(MainWindowViewTest, AnOpenedLibraryIsSeenWholeAndTheViewStaysAfterwards)
{
    EXPECT_TRUE(isSeenWhole(TownBox));
    const embedded::MapView chosen { 10, 10, 0.01, canvas().size() };
    canvas().setView(chosen);
    writeCell();
    EXPECT_EQ(canvas().view(), chosen);
    action(QStringLiteral("Vedi tutto")).trigger();
    EXPECT_TRUE(isSeenWhole(TownBox));
    ASSERT_TRUE(window.document().save().ok());
    canvas().setView(chosen);
    ASSERT_TRUE(window.openFile(path));
    EXPECT_TRUE(isSeenWhole(TownBox)) << "another library";
}

TEST_F(MainWindowViewTest, TheFirstContentIsFittedAgainAfterTheMapWasEmpty)
{
    window.document().startNew();
    ASSERT_TRUE(window.importFile(shapefileOf(folder, QStringLiteral("A"))));
    EXPECT_TRUE(isSeenWhole({ 0, 0, 100, 40 }));
    const embedded::MapView chosen { 5000, 5000, 0.01, canvas().size() };
    canvas().setView(chosen);
    ASSERT_TRUE(window.importFile(shapefileOf(folder, QStringLiteral("P"))));
    EXPECT_EQ(canvas().view(), chosen) << "not the first";

    window.document().undo();
    window.document().undo();
    ASSERT_TRUE(canvas().content()->layers.empty());
    EXPECT_EQ(canvas().view(), chosen);
    window.document().redo();
    EXPECT_TRUE(isSeenWhole({ 0, 0, 100, 40 }));
}

TEST_F(MainWindowViewTest, TheStatusLineCountsEntitiesSelectedAndFoundOnes)
{
    EXPECT_EQ(statusText(QStringLiteral("Entità:")),
        QStringLiteral("Entità: 5   Selezionate: 0   Trovate: 0"));
    window.document().setSelected({ entity(0, 0) });
    window.document().ShowFound(0, { entity(0, 1), entity(1, 0) });
    EXPECT_EQ(statusText(QStringLiteral("Entità:")),
        QStringLiteral("Entità: 5   Selezionate: 1   Trovate: 2"));
    ASSERT_TRUE(window.importFile(shapefileOf(folder, QStringLiteral("Pali"),
        "table Pali (n integer); rows Pali: (1); theme Pali: points 2d on Pali;"
        "ents Pali: 0 [1 1]")));
    EXPECT_EQ(statusText(QStringLiteral("Entità:")),
        QStringLiteral("Entità: 6   Selezionate: 0   Trovate: 0"));
}

TEST_F(MainWindowViewTest, CoordinatesHaveMoreDigitsWhenZoomedIn)
{
    canvas().setView({ 50, 50, 0.5, canvas().size() });
    pointAt(12.25, 80.5);
    EXPECT_EQ(statusText(QStringLiteral("E ")), QStringLiteral("E 12.25   N 80.50"));
    canvas().setView({ 12.25, 80.5, 1e-5, canvas().size() });
    pointAt(12.25, 80.5);
    EXPECT_EQ(statusText(QStringLiteral("E ")), QStringLiteral("E 12.250000   N 80.500000"));
    canvas().setView({ 12.25, 80.5, 1000, canvas().size() });
    pointAt(12.25, 80.5);
    EXPECT_EQ(statusText(QStringLiteral("E ")), QStringLiteral("E 12.25   N 80.50"));
}

TEST_F(MainWindowViewTest, TheFormOfOneEntityIsNotOfferedWhereSeveralAreSelected)
{
    QAction& form = action(QStringLiteral("Attributi dell'entità..."));
    window.document().setSelected({ entity(0, 0) });
    EXPECT_TRUE(form.isEnabled());
    window.document().setSelected({ entity(0, 0), entity(0, 1) });
    EXPECT_FALSE(form.isEnabled());
    Q_EMIT canvas().identified(entity(0, 1));
    EXPECT_TRUE(form.isEnabled());
    window.document().setSelected({ entity(0, 0), entity(0, 1) });
    EXPECT_FALSE(form.isEnabled()) << "which of the three is not told";
}

TEST_F(MainWindowViewTest, NamesOfStepsStandInTheMenuAsTheyAre)
{
    renameTable(window.document(), "B");
    window.document().changes().RenameStep("Struttura di Vie & piazze");
    writeCell();
    window.document().undo();
    const auto texts = [&] {
        QStringList found;
        for (const QAction* entry : window.findChildren<QAction*>())
            found << entry->text();
        return found;
    };
    EXPECT_TRUE(texts().contains(QStringLiteral("&Annulla Struttura di Vie && piazze")));
    EXPECT_TRUE(texts().contains(QStringLiteral("&Ripeti Scrittura")));
    window.document().act(
        QString(300, QLatin1Char('x')), [&] { window.document().library().CreateTable("Altra"); });
    EXPECT_TRUE(texts().contains(
        QStringLiteral("&Annulla ") + QString(80, QLatin1Char('x')) + QStringLiteral("…")));
    window.document().undo();
    EXPECT_TRUE(texts().contains(
        QStringLiteral("&Ripeti ") + QString(80, QLatin1Char('x')) + QStringLiteral("…")));
}

TEST_F(MainWindowViewTest, RepeatMakesAgainWhatWasTakenBack)
{
    EXPECT_FALSE(action(QStringLiteral("Ripeti ")).isEnabled());
    renameTable(window.document(), "Nuova");
    action(QStringLiteral("Annulla Rinomina")).trigger();
    EXPECT_EQ(tableName(window.document()), QStringLiteral("T"));
    EXPECT_FALSE(window.isWindowModified());
    action(QStringLiteral("Ripeti Rinomina")).trigger();
    EXPECT_EQ(tableName(window.document()), QStringLiteral("Nuova"));
    EXPECT_TRUE(window.isWindowModified());
}

TEST_F(MainWindowViewTest, TheCurrentRowIsMarkedOnTheMap)
{
    canvas().setView({ 50, 50, 0.5, canvas().size() });
    EXPECT_EQ(pixelsLike(picture(), CurrentColour, 50, 50, 10), 0);
    window.document().ShowRow(entity(0, 2));
    EXPECT_GE(pixelsLike(picture(), CurrentColour, 50, 50, 10), 100);
    EXPECT_EQ(pixelsLike(picture(), CurrentColour, 90, 90, 10), 0);
    window.document().ShowRow(entity(0, 1));
    EXPECT_GE(pixelsLike(picture(), CurrentColour, 90, 90, 10), 100);
    EXPECT_EQ(pixelsLike(picture(), CurrentColour, 50, 50, 10), 0) << "the row before";
    window.document().ShowRow(entity(1, 1)); // a polygon: 40 units of its side are 80 pixels
    EXPECT_GE(pixelsLike(picture(), CurrentColour, 60, 20, 30), 100);
}

TEST_F(MainWindowViewTest, MarksHaveADarkRimThatTellsThemFromSymbolsOfTheirColour)
{
    canvas().setView({ 50, 50, 0.5, canvas().size() });
    EXPECT_EQ(darkPixels(picture(), 90, 90, 10), 0);
    EXPECT_EQ(darkPixels(picture(), 60, 20, 20), 0);
    window.document().setSelected({ entity(0, 1) });
    QImage image = picture();
    EXPECT_GE(pixelsLike(image, SelectedColour, 90, 90, 10), 40);
    EXPECT_GE(darkPixels(image, 90, 90, 10), 20);
    window.document().clearHighlight();
    window.document().ShowFound(0, { entity(0, 1), entity(1, 1) });
    image = picture();
    EXPECT_GE(pixelsLike(image, FoundColour, 90, 90, 10), 40);
    EXPECT_GE(darkPixels(image, 90, 90, 10), 20);
    EXPECT_GE(darkPixels(image, 60, 20, 20), 20) << "along the polygon's side";
    EXPECT_EQ(darkPixels(image, 80, 20, 15), 0) << "its inside stays to be seen";
}

} // namespace
