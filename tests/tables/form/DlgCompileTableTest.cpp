// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/form/DlgCompileTable.h"

#include "kit/ModalRun.h"
#include "tematica/Dialogs.h"
#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/base/IniFile.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>
#include <QStyle>
#include <QTemporaryDir>
#include <QTest>

using support::CRecordingLibrary;

namespace {

class DlgCompileTableTest : public testing::Test {
protected:
    DlgCompileTableTest()
    {
        qputenv("TEMATICA_INI", folder.filePath(QStringLiteral("settings.ini")).toUtf8());
    }
    std::unique_ptr<CDlgCompileTable> make()
    {
        gis::CTheme* theme = library.GetTheme(0);
        auto dialog = std::make_unique<CDlgCompileTable>(
            &library, theme, library.GetRow(library.GetEnt(theme, 0)));
        dialog->show();
        QApplication::processEvents();
        return dialog;
    }
    static QLineEdit& field(QDialog& dialog, int index)
    {
        return *dialog.findChild<QLineEdit*>(QStringLiteral("field%1").arg(index));
    }

    QTemporaryDir folder;
    CRecordingLibrary library {
        "table Strade (nome text required, larghezza decimal 2); rows Strade: ('Via Roma', 3.5);"
        "theme \"Vie <b>%1\": points 2d on Strade; ents \"Vie <b>%1\": 0 [0 0]"
    };
};

TEST_F(DlgCompileTableTest, NamesThemeAndTableAndHoldsTheRowsControl)
{
    const auto dialog = make();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Attributi gis"));
    EXPECT_EQ(ui::at<QLineEdit>(*dialog, 2086).text(), QStringLiteral("Vie <b>%1"));
    EXPECT_EQ(ui::at<QLineEdit>(*dialog, 2087).text(), QStringLiteral("Strade"));
    EXPECT_FALSE(ui::at<QLineEdit>(*dialog, 2086).isEnabled());
    EXPECT_FALSE(ui::at<QLineEdit>(*dialog, 2087).isEnabled());
    EXPECT_TRUE(ui::at<QWidget>(*dialog, 1000).isVisible());
    EXPECT_FALSE(ui::at<QWidget>(*dialog, 2031).isVisible());
}

TEST_F(DlgCompileTableTest, OpensInItsUsualSizeAndKeepsTheUsers)
{
    {
        const auto dialog = make();
        EXPECT_EQ(dialog->size(), QSize(519, 488));
        dialog->resize(600, 300);
        ui::press(*dialog, 2);
    }
    EXPECT_EQ(make()->size(), QSize(600, 300)) << "also after Annulla";
}

TEST_F(DlgCompileTableTest, TheSizeIsKeptHoweverItCloses)
{
    int width = 600;
    for (const auto& close : { +[](QDialog& dialog) { ui::press(dialog, 1); },
             +[](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
             +[](QDialog& dialog) { dialog.close(); } }) {
        width += 10;
        {
            const auto dialog = make();
            dialog->resize(width, 300);
            close(*dialog);
            EXPECT_FALSE(dialog->isVisible());
        }
        EXPECT_EQ(make()->width(), width);
    }
}

TEST_F(DlgCompileTableTest, TheControlGoesOnceAndWithTheWindow)
{
    QPointer<QWidget> control;
    {
        const auto dialog = make();
        control = &ui::at<QWidget>(*dialog, 1000);
        ASSERT_FALSE(control.isNull());
    }
    EXPECT_TRUE(control.isNull());
}

TEST_F(DlgCompileTableTest, AWindowBeyondTheScreenComesBackIntoIt)
{
    QWidget parent;
    parent.resize(200, 100);
    const QRect screen = parent.screen()->availableGeometry();
    parent.move(screen.right() - 50, screen.bottom() - 50);
    parent.show();
    {
        CIniFile settings;
        settings.WriteLong("DatiDlgGIS", "DlgCompileTableWidth", 9000);
        settings.WriteLong("DatiDlgGIS", "DlgCompileTableHeight", 9000);
    }
    gis::CTheme* theme = library.GetTheme(0);
    CDlgCompileTable dialog(&library, theme, library.GetRow(library.GetEnt(theme, 0)), &parent);
    dialog.show();
    QApplication::processEvents();
    EXPECT_TRUE(screen.contains(QRect(dialog.pos(), dialog.size())))
        << dialog.x() << ", " << dialog.y() << ": " << dialog.width() << " x " << dialog.height()
        << " on " << screen.width() << " x " << screen.height();
}

TEST_F(DlgCompileTableTest, IsNeverSmallerThanItsLeastSize)
{
    {
        const auto dialog = make();
        dialog->resize(150, 80);
        EXPECT_EQ(dialog->size(), QSize(220, 100));
    }
    EXPECT_EQ(make()->size(), QSize(220, 100));
    CIniFile settings;
    settings.WriteString("DatiDlgGIS", "DlgCompileTableWidth", "larga");
    settings.WriteString("DatiDlgGIS", "DlgCompileTableHeight", "10");
    EXPECT_EQ(make()->size(), QSize(519, 100)) << "what cannot be read counts as not there";
}

TEST_F(DlgCompileTableTest, OkWritesAndCloses)
{
    const auto dialog = make();
    library.clearCalls();
    field(*dialog, 1).setText(QStringLiteral("4.25"));
    ui::press(*dialog, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(library.callsOf("SetRowValue"),
        std::vector<std::string> { "SetRowValue(Strade[0], 1, 4.25)" });
}

TEST_F(DlgCompileTableTest, ARefusedEntryKeepsItOpenAndAnnullaWritesNothing)
{
    const auto dialog = make();
    library.clearCalls();
    field(*dialog, 0).clear();
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Il campo \"nome\" è obbligatorio!"), kit::Answer::Ok);
        ui::press(*dialog, 1);
    }
    EXPECT_TRUE(dialog->isVisible());
    ui::press(*dialog, 2);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(library.changes().empty());
}

TEST_F(DlgCompileTableTest, TheControlTakesTheRoomAndTheButtonsStayTogetherInTheMiddle)
{
    const auto dialog = make();
    dialog->resize(700, 600);
    QApplication::processEvents();
    const QRect ok = ui::at<QWidget>(*dialog, 1).geometry();
    const QRect cancel = ui::at<QWidget>(*dialog, 2).geometry();
    EXPECT_NEAR((ok.left() + cancel.right()) / 2, 350, 3);
    EXPECT_GT(ui::at<QWidget>(*dialog, 1000).width(), 640);
    const int below = dialog->height() - ok.bottom();
    dialog->resize(400, 300);
    QApplication::processEvents();
    EXPECT_EQ(dialog->height() - ui::at<QWidget>(*dialog, 1).geometry().bottom(), below);
}

TEST_F(DlgCompileTableTest, StandsInTheMiddleOfItsParent)
{
    QWidget parent;
    parent.setGeometry(100, 60, 640, 620);
    parent.show();
    gis::CTheme* theme = library.GetTheme(0);
    CDlgCompileTable dialog(&library, theme, library.GetRow(library.GetEnt(theme, 0)), &parent);
    dialog.show();
    QApplication::processEvents();
    const QPoint off = dialog.frameGeometry().center() - parent.frameGeometry().center();
    EXPECT_LE(off.manhattanLength(), 4);
}

TEST_F(DlgCompileTableTest, ASpoiledSizeInTheSettingsMakesNoImpossibleWindow)
{
    CIniFile settings;
    settings.WriteString("DatiDlgGIS", "DlgCompileTableWidth", "2000000000");
    settings.WriteString("DatiDlgGIS", "DlgCompileTableHeight", "-7");
    gis::CTheme* theme = library.GetTheme(0);
    CDlgCompileTable dialog(&library, theme, library.GetRow(library.GetEnt(theme, 0)));
    EXPECT_LE(dialog.width(), 16384);
    EXPECT_EQ(dialog.height(), 100);
}

TEST_F(DlgCompileTableTest, TheButtonsKeepAWideGap)
{
    const auto dialog = make();
    const int gap = ui::at<QWidget>(*dialog, 2).geometry().left()
        - ui::at<QWidget>(*dialog, 1).geometry().right() - 1;
    EXPECT_GE(gap, dialog->style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing) + 10);
    dialog->resize(900, 500);
    QApplication::processEvents();
    EXPECT_EQ(ui::at<QWidget>(*dialog, 2).geometry().left()
            - ui::at<QWidget>(*dialog, 1).geometry().right() - 1,
        gap);
}

TEST_F(DlgCompileTableTest, TheFunctionAnswersTrueForOkOnly)
{
    gis::CTheme* theme = library.GetTheme(0);
    orv::CResultRow* row = library.GetRow(library.GetEnt(theme, 0));
    for (const int button : { 1, 2 }) {
        ui::CModalDriver driver;
        driver.dialog("CDlgCompileTable", [&](QDialog& dialog) { ui::press(dialog, button); });
        EXPECT_EQ(FDlgCompileTableGIS(&library, theme, row), button == 1);
    }
}

TEST_F(DlgCompileTableTest, AThemeWithoutATableOffersOnlyToGoAway)
{
    gis::CTheme* theme = library.GetTheme(0);
    orv::CResultRow* row = library.GetRow(library.GetEnt(theme, 0));
    library.answer("GetTable", static_cast<gis::CDBTable*>(nullptr));
    library.clearCalls();
    ui::CModalDriver driver;
    driver.dialog("CDlgCompileTable", [](QDialog& dialog) {
        EXPECT_FALSE(ui::at<QWidget>(dialog, 1).isEnabled());
        EXPECT_EQ(dialog.findChild<QWidget*>(QStringLiteral("id1000")), nullptr);
        EXPECT_EQ(ui::at<QLineEdit>(dialog, 2086).text(), QStringLiteral("Vie <b>%1"));
        EXPECT_EQ(ui::at<QLineEdit>(dialog, 2087).text(), QString());
        dialog.resize(600, 300);
        ui::press(dialog, 1);
        QTest::keyClick(&dialog, Qt::Key_Return);
        dialog.accept();
        EXPECT_TRUE(dialog.isVisible()) << "there is nothing to be written";
        ui::press(dialog, 2);
    });
    EXPECT_FALSE(FDlgCompileTableGIS(&library, theme, row));
    EXPECT_TRUE(library.changes().empty());
}

TEST_F(DlgCompileTableTest, TheControlKeepsItsMarginsInTheDialog)
{
    const auto dialog = make();
    const auto marginsOf = [&dialog](int id) {
        const QWidget& control = ui::at<QWidget>(*dialog, id);
        const QPoint topLeft = control.mapTo(dialog.get(), QPoint());
        return QMargins(topLeft.x(), topLeft.y(), dialog->width() - topLeft.x() - control.width(),
            dialog->height() - topLeft.y() - control.height());
    };
    const QMargins before = marginsOf(1000);
    EXPECT_EQ(before.left(), before.right());
    EXPECT_GT(before.left(), 0);
    EXPECT_LE(before.left(), 30) << "it takes the width";
    EXPECT_GT(before.top(), marginsOf(2087).top()) << "below the names";
    EXPECT_GT(before.bottom(), dialog->height() - ui::at<QWidget>(*dialog, 1).y())
        << "above the buttons";
    for (const QSize size : { QSize(800, 700), QSize(300, 260), QSize(519, 488) }) {
        dialog->resize(size);
        QApplication::processEvents();
        EXPECT_EQ(marginsOf(1000), before) << size.width() << " x " << size.height();
    }
}

TEST_F(DlgCompileTableTest, WithoutAParentItStandsOverTheActiveWindow)
{
    QWidget active;
    active.setGeometry(130, 90, 620, 560);
    active.show();
    active.activateWindow();
    QApplication::processEvents();
    ASSERT_EQ(QApplication::activeWindow(), &active);
    gis::CTheme* theme = library.GetTheme(0);
    orv::CResultRow* row = library.GetRow(library.GetEnt(theme, 0));
    ui::CModalDriver driver;
    driver.dialog("CDlgCompileTable", [&](QDialog& dialog) {
        const QPoint off = dialog.frameGeometry().center() - active.frameGeometry().center();
        EXPECT_LE(off.manhattanLength(), 4) << off.x() << ", " << off.y();
        EXPECT_EQ(dialog.size(), QSize(519, 488));
        EXPECT_EQ(dialog.parentWidget(), nullptr) << "the window is the host's";
        ui::press(dialog, 2);
    });
    FDlgCompileTableGIS(&library, theme, row);
}

TEST_F(DlgCompileTableTest, WithoutAnyWindowItStandsInTheMiddleOfTheScreen)
{
    ASSERT_EQ(QApplication::activeWindow(), nullptr);
    gis::CTheme* theme = library.GetTheme(0);
    orv::CResultRow* row = library.GetRow(library.GetEnt(theme, 0));
    ui::CModalDriver driver;
    driver.dialog("CDlgCompileTable", [](QDialog& dialog) {
        const QPoint off
            = dialog.frameGeometry().center() - dialog.screen()->availableGeometry().center();
        constexpr int frameOfAWindow = 40; // which is not known before it is shown
        EXPECT_LE(qAbs(off.x()), frameOfAWindow);
        EXPECT_LE(qAbs(off.y()), frameOfAWindow);
        ui::press(dialog, 2);
    });
    FDlgCompileTableGIS(&library, theme, row);
}

} // namespace
