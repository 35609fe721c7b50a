// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/RenderFile.h"

#include "host/gis/LibGis.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QImage>
#include <QTemporaryDir>

namespace {

constexpr const char* Platform = "QT_QPA_PLATFORM";
int told = 0;

void countMessage(QtMsgType, const QMessageLogContext&, const QString&)
{
    ++told;
}

/// A picture is drawn in programs that have no application of Qt's: one is made for the time it
/// takes, and nothing of it may stay.
class RenderFileTest : public testing::Test {
protected:
    RenderFileTest()
        : before(qgetenv(Platform))
    {
        library = support::makeLibrary("table T (a text); rows T: ('x'), ('y');"
                                       "theme A: polygons 2d on T;"
                                       "ents A: 0 [0 0, 0 40, 100 40, 100 0, 0 0]");
        request.library = library.get();
        path = folder.filePath(QStringLiteral("mappa.png")).toUtf8();
        request.path = path.constData();
        request.width = 200;
        request.height = 100;
    }
    ~RenderFileTest() override { qputenv(Platform, before); }
    QImage drawn() { return QImage(QString::fromUtf8(path)); }

    QTemporaryDir folder;
    QByteArray before;
    QByteArray path;
    std::unique_ptr<gis::CLibGis> library;
    TematicaRenderRequest request;
};

TEST_F(RenderFileTest, TheProcessIsAfterwardsAsItWas)
{
    ASSERT_EQ(QCoreApplication::instance(), nullptr);
    qputenv(Platform, "minimal");
    const QtMessageHandler systems = qInstallMessageHandler(countMessage);
    request.legend = true;
    EXPECT_EQ(tematicaRenderFile(&request), 0);
    EXPECT_FALSE(drawn().isNull());
    EXPECT_EQ(QCoreApplication::instance(), nullptr);
    EXPECT_EQ(qgetenv(Platform), QByteArray("minimal"));
    told = 0;
    qWarning("what the host says");
    EXPECT_EQ(told, 1) << "its own handler is there again";
    EXPECT_EQ(qInstallMessageHandler(systems), &countMessage);
}

TEST_F(RenderFileTest, AVariableThatWasNotSetIsNotSetAfterwards)
{
    qunsetenv(Platform);
    EXPECT_EQ(tematicaRenderFile(&request), 0) << "without a screen";
    EXPECT_FALSE(qEnvironmentVariableIsSet(Platform));
    EXPECT_EQ(tematicaRenderFile(&request), 0) << "a second one in the same process";
    request.path = "/non-esiste/mappa.png";
    EXPECT_NE(tematicaRenderFile(&request), 0);
    EXPECT_FALSE(qEnvironmentVariableIsSet(Platform)) << "also when it fails";
}

TEST_F(RenderFileTest, WithoutAListTheVisibleThemesAreDrawn)
{
    gis::CTheme* theme = library->GetTheme(0);
    ASSERT_EQ(tematicaRenderFile(&request), 0);
    const QImage whole = drawn();
    library->SetThemeVisible(theme, false);
    ASSERT_EQ(tematicaRenderFile(&request), 0);
    EXPECT_NE(drawn(), whole) << "it is not seen";
    request.themes = &theme;
    request.themeCount = 1;
    ASSERT_EQ(tematicaRenderFile(&request), 0);
    EXPECT_EQ(drawn(), whole) << "it is asked for";
}

TEST_F(RenderFileTest, ABoxThatIsAskedForFillsThePictureToItsEdges)
{
    request.hasBox = true;
    request.minX = 0;
    request.minY = -5;
    request.maxX = 100;
    request.maxY = 45; // two pixels a unit both ways
    ASSERT_EQ(tematicaRenderFile(&request), 0);
    const QImage box = drawn();
    ASSERT_EQ(box.size(), QSize(200, 100));
    for (const int x : { 2, 197 }) // no margin left and right
        EXPECT_NE(box.pixelColor(x, 50), QColor(Qt::white)) << x;
    EXPECT_EQ(box.pixelColor(100, 5), QColor(Qt::white)) << "five units above the polygon";

    request.hasBox = false;
    ASSERT_EQ(tematicaRenderFile(&request), 0);
    for (const int x : { 2, 197 })
        EXPECT_EQ(drawn().pixelColor(x, 50), QColor(Qt::white)) << "a margin around everything";
}

} // namespace
