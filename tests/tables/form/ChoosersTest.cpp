// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/cad/Symbols.h"
#include "host/controls/FolderBrowser.h"

#include "kit/texts/QtText.h"
#include "tests/support/ui/DialogChecks.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

QListWidget& listOf(QDialog& dialog)
{
    return *dialog.findChild<QListWidget*>();
}

TEST(SymbolChooserTest, ShowsEverySymbolAndGivesTheChosenOne)
{
    CDocSymbolManager symbols;
    int count = 0;
    while (symbols.GetSymbol(count))
        ++count;
    ASSERT_GT(count, 3);
    int id = 2;
    ui::CModalDriver driver;
    driver.dialog("FDlgSceltaSymbol", [&](QDialog& dialog) {
        QListWidget& list = listOf(dialog);
        EXPECT_EQ(list.count(), count);
        EXPECT_EQ(list.currentRow(), 2) << "begins with the present one";
        for (int i = 0; i < count; ++i)
            EXPECT_FALSE(list.item(i)->icon().isNull());
        EXPECT_TRUE(ui::inputsWithoutName(dialog).isEmpty());
        EXPECT_TRUE(ui::clippedTexts(dialog).isEmpty());
        ui::takePicture(dialog, QStringLiteral("FDlgSceltaSymbol"));
        list.setCurrentRow(3);
        ui::press(dialog, 1);
    });
    EXPECT_TRUE(FDlgSceltaSymbol(nullptr, nullptr, &symbols, id));
    EXPECT_EQ(id, 3);
}

TEST(SymbolChooserTest, ADoubleClickChooses)
{
    CDocSymbolManager symbols;
    int id = 0;
    ui::CModalDriver driver;
    driver.dialog("FDlgSceltaSymbol", [](QDialog& dialog) {
        QListWidget& list = listOf(dialog);
        const QPoint place = list.visualItemRect(list.item(1)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    });
    EXPECT_TRUE(FDlgSceltaSymbol(nullptr, nullptr, &symbols, id));
    EXPECT_EQ(id, 1);
}

TEST(SymbolChooserTest, CancelledOrWithNothingChosenTheIdStays)
{
    CDocSymbolManager symbols;
    for (const int button : { 1, 2 }) {
        int id = -5; // several symbols at once: none of them is shown as chosen
        ui::CModalDriver driver;
        driver.dialog("FDlgSceltaSymbol", [button](QDialog& dialog) {
            EXPECT_TRUE(listOf(dialog).selectedItems().isEmpty());
            ui::press(dialog, button);
            if (dialog.isVisible())
                dialog.reject();
        });
        EXPECT_FALSE(FDlgSceltaSymbol(nullptr, nullptr, &symbols, id));
        EXPECT_EQ(id, -5);
    }
    int id = 1;
    EXPECT_FALSE(FDlgSceltaSymbol(nullptr, nullptr, nullptr, id));
}

/// A host that numbers its symbols with gaps.
class CGappedSymbols final : public CDocSymbolManager {
public:
    CSymbol* GetSymbol(int id) override
    {
        return id == 3 || id == 7 || id == 40 ? CDocSymbolManager::GetSymbol(0) : nullptr;
    }
};

TEST(SymbolChooserTest, ASymbolIsItsNumberWhateverItsRow)
{
    CGappedSymbols symbols;
    int id = 7;
    ui::CModalDriver driver;
    driver.dialog("FDlgSceltaSymbol", [](QDialog& dialog) {
        QListWidget& list = listOf(dialog);
        ASSERT_EQ(list.count(), 3);
        EXPECT_EQ(list.currentRow(), 1) << "begins with the present one";
        EXPECT_EQ(list.item(2)->text(), QStringLiteral("40"));
        list.setCurrentRow(2);
        ui::press(dialog, 1);
    });
    EXPECT_TRUE(FDlgSceltaSymbol(nullptr, nullptr, &symbols, id));
    EXPECT_EQ(id, 40);

    driver.dialog("FDlgSceltaSymbol", [](QDialog& dialog) {
        listOf(dialog).setCurrentRow(0);
        ui::press(dialog, 1);
    });
    EXPECT_TRUE(FDlgSceltaSymbol(nullptr, nullptr, &symbols, id));
    EXPECT_EQ(id, 3);
}

TEST(SymbolChooserTest, SymbolsAreSeenOnDarkGroundToo)
{
    const QPalette before = QApplication::palette();
    QPalette dark = before;
    dark.setColor(QPalette::Base, Qt::black);
    QApplication::setPalette(dark);
    CDocSymbolManager symbols;
    int id = 0;
    ui::CModalDriver driver;
    driver.dialog("FDlgSceltaSymbol", [](QDialog& dialog) {
        const QImage picture = listOf(dialog).item(0)->icon().pixmap(24, 24).toImage();
        EXPECT_EQ(picture.pixelColor(0, 0), QColor(Qt::white))
            << "black symbols need a light ground";
        dialog.reject();
    });
    FDlgSceltaSymbol(nullptr, nullptr, &symbols, id);
    QApplication::setPalette(before);
}

/// Answers the folder dialog, which is no window of the house and so no step of the driver.
bool browse(orv::String& folder, bool accepts)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        auto* files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!files)
            return;
        QDialog* dialog = files; // whose slots are public
        timer.stop();
        if (accepts)
            dialog->accept();
        else
            dialog->reject();
    });
    timer.start(20);
    return FBrowserDirectory(folder);
}

TEST(FolderBrowserTest, GivesTheFolderOrLeavesItAsItWas)
{
    const QTemporaryDir folder;
    const orv::String start = kit::fromQt(folder.path());
    orv::String chosen = start;
    EXPECT_FALSE(browse(chosen, false));
    EXPECT_EQ(chosen, start);
    EXPECT_TRUE(browse(chosen, true));
    EXPECT_EQ(chosen, start);
    orv::String none;
    EXPECT_FALSE(browse(none, false));
    EXPECT_EQ(none.Length(), 0);
}

} // namespace
