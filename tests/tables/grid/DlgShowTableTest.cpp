// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/DlgShowTable.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"
#include "tests/support/ui/SampleTown.h"

#include "kit/ModalRun.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

using support::CRecordingLibrary;

namespace {

constexpr const char* Streets
    = "table Strade (Nome text required, Corsie integer, Larghezza decimal);"
      "rows Strade: ('Via Roma', 2, 3.5), ('Via Po', -, -)";

/// Runs the dialog modally over a library and hands it to a step; true when it ended with OK.
bool run(CRecordingLibrary& library, ui::CModalDriver& driver, std::function<void(QDialog&)> step)
{
    driver.dialog("CDlgShowTable", std::move(step));
    CDlgShowTable dialog(&library, library.GetTable(0));
    library.clearCalls();
    return kit::runModal(dialog);
}

void enter(QDialog& dialog, int row, int column, const char* text)
{
    auto& view = ui::at<QTableView>(dialog, 1000);
    view.model()->setData(view.model()->index(row, column), QString::fromUtf8(text), Qt::EditRole);
}

} // namespace

TEST(DlgShowTableTest, TabLeadsFromTheCellsThroughWhatFindsInThemToTheButtons)
{
    CRecordingLibrary library(Streets);
    CDlgShowTable dialog(&library, library.GetTable(0));
    dialog.show();
    dialog.activateWindow();
    QApplication::processEvents();
    QTest::keyClick(&ui::at<QTableView>(dialog, 1000), Qt::Key_F, Qt::ControlModifier);
    const auto* sought = dialog.findChild<QLineEdit*>(QStringLiteral("sought"));
    ASSERT_TRUE(sought && sought->hasFocus());

    for (int i = 0; i < 3; ++i) { // previous, next, close
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget()->parentWidget(), sought->parentWidget());
    }
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(ui::at<QPushButton>(dialog, 1).hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(ui::at<QPushButton>(dialog, 2).hasFocus());
}

TEST(DlgShowTableTest, OkSavesAndCloses)
{
    CRecordingLibrary library(Streets);
    ui::CModalDriver driver;

    const bool wasAccepted = run(library, driver, [](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Tabella"));
        EXPECT_EQ(ui::at<QTableView>(dialog, 1000).model()->rowCount(), 2);
        enter(dialog, 1, 1, "4");
        ui::press(dialog, 1);
    });

    EXPECT_TRUE(wasAccepted);
    EXPECT_EQ(library.changes(),
        (std::vector<std::string> { "SetRowValue(Strade[1], 1, 4)", "SetModifiedFlag(yes)" }));
}

TEST(DlgShowTableTest, CancelClosesWithoutSaving)
{
    CRecordingLibrary library(Streets);
    ui::CModalDriver driver;

    const bool wasAccepted = run(library, driver, [](QDialog& dialog) {
        enter(dialog, 1, 1, "4");
        ui::press(dialog, 2);
    });

    EXPECT_FALSE(wasAccepted);
    EXPECT_TRUE(library.changes().empty());
}

TEST(DlgShowTableTest, AnEmptyRequiredValueIsNamedAndTheDialogStaysOpen)
{
    CRecordingLibrary library(Streets);
    ui::CModalDriver driver;
    bool wasOpenAfterwards = false;

    const bool wasAccepted = [&] {
        driver.dialog("CDlgShowTable", [&](QDialog& dialog) {
            enter(dialog, 0, 1, "7");
            enter(dialog, 1, 0, "");
            ui::press(dialog, 1);
            wasOpenAfterwards = dialog.isVisible();
            ui::press(dialog, 2);
        });
        driver.box(QStringLiteral("Il campo \"Nome\" è obbligatorio!"), kit::Answer::Ok,
            [](QMessageBox& box) {
                EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
                EXPECT_EQ(box.icon(), QMessageBox::Warning);
            });
        CDlgShowTable dialog(&library, library.GetTable(0));
        library.clearCalls();
        return kit::runModal(dialog);
    }();

    EXPECT_FALSE(wasAccepted);
    EXPECT_TRUE(wasOpenAfterwards);
    EXPECT_EQ(library.changes(),
        (std::vector<std::string> {
            "SetRowValue(Strade[0], 1, 7)", "SetRowValue(Strade[1], 0, -)" }));
}

TEST(DlgShowTableTest, AnEntryStillBeingTypedIsSavedByOk)
{
    CRecordingLibrary library(Streets);
    ui::CModalDriver driver;

    run(library, driver, [](QDialog& dialog) {
        auto& view = ui::at<QTableView>(dialog, 1000);
        view.setCurrentIndex(view.model()->index(0, 0));
        view.edit(view.currentIndex());
        auto* editor = view.viewport()->findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr);
        editor->setText(QStringLiteral("Via Nuova"));
        ui::press(dialog, 1);
    });

    EXPECT_TRUE(library.wasCalled("SetRowValue(Strade[0], 0, 'Via Nuova')"));
}

TEST(DlgShowTableTest, ReturnInTheGridGoesDownARowInsteadOfClosing)
{
    CRecordingLibrary library(Streets);
    ui::CModalDriver driver;

    run(library, driver, [](QDialog& dialog) {
        auto& view = ui::at<QTableView>(dialog, 1000);
        view.setFocus();
        view.setCurrentIndex(view.model()->index(0, 1));
        QTest::keyClick(&view, Qt::Key_Return);
        EXPECT_EQ(view.currentIndex(), view.model()->index(1, 1));
        QTest::keyClick(&view, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
}

TEST(DlgShowTableTest, TheGridTakesTheRoomAndTheButtonsStayCentredAtTheBottom)
{
    auto library = ui::sampleTown();
    CDlgShowTable dialog(library.get(), library->GetTable(0));
    dialog.show();
    QApplication::processEvents();
    const auto& ok = ui::at<QPushButton>(dialog, 1);
    const auto& cancel = ui::at<QPushButton>(dialog, 2);
    const auto& view = ui::at<QTableView>(dialog, 1000);
    const auto place = [&](const QWidget& widget) {
        return QRect(widget.mapTo(&dialog, QPoint()), widget.size());
    };
    const int below = dialog.height() - place(ok).bottom();
    const int left = place(view).left();
    const int right = dialog.width() - place(view).right();
    const int gap = place(ok).top() - place(view).bottom();

    for (const QSize size : { QSize(900, 700), QSize(420, 260) }) {
        dialog.resize(size);
        QApplication::processEvents();
        EXPECT_EQ(dialog.size(), size);
        EXPECT_EQ(dialog.height() - place(ok).bottom(), below);
        EXPECT_EQ(dialog.height() - place(cancel).bottom(), below);
        EXPECT_NEAR(place(ok).left(), dialog.width() - 1 - place(cancel).right(), 1);
        EXPECT_EQ(place(view).left(), left);
        EXPECT_EQ(dialog.width() - place(view).right(), right);
        EXPECT_EQ(place(ok).top() - place(view).bottom(), gap);
    }
}

TEST(DlgShowTableTest, IsNeverNarrowerThanItsButtonsNorLowerThan125)
{
    auto library = ui::sampleTown();
    CDlgShowTable dialog(library.get(), library->GetTable(0));
    dialog.show();
    QApplication::processEvents();
    const auto& ok = ui::at<QPushButton>(dialog, 1);
    const auto& cancel = ui::at<QPushButton>(dialog, 2);
    const int span = cancel.geometry().right() + 1 - ok.geometry().left();

    dialog.resize(1, 1);
    QApplication::processEvents();

    EXPECT_EQ(dialog.size(), QSize(span + 10, 125));
    EXPECT_EQ(cancel.geometry().right() + 1 - ok.geometry().left(), span);
}
