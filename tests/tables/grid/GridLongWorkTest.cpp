// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/DlgShowTable.h"
#include "tables/grid/GridView.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/SlowColumns.h"
#include "tests/support/ui/CancelProgress.h"

#include "kit/ModalRun.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QHeaderView>
#include <QTest>

#include <thread>

// Work of the grid that takes long: it shows how far it is, and "Annulla" stops it.

namespace {

using support::CRecordingLibrary;
using support::CSlowColumns;

class GridLongWorkTest : public testing::Test {
protected:
    /// A grid over columns that take so long each.
    void openOverColumns(int milliseconds)
    {
        library.offerColumns();
        columns.emplace(
            static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension)), milliseconds);
        library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&*columns));
        grid = std::make_unique<CCtrlShowTable>(nullptr, 0, &library, library.GetTable(0));
        grid->Fill();
        grid->resize(900, 300);
        grid->show();
        QApplication::processEvents();
    }
    [[nodiscard]] std::string text(int row, int column) const
    {
        return grid->model().index(row, column).data().toString().toStdString();
    }

    CRecordingLibrary library {
        "table T (a text, b integer, c decimal 1, d boolean, e date, f text, g text, h integer);"
        "rows T: ('uno', 1, 1.5, yes, 05/03/2016, 'x', 'y', 7), ('due', -, -, -, -, -, -, 8)"
    };
    std::optional<CSlowColumns> columns;
    std::unique_ptr<CCtrlShowTable> grid;
};

TEST_F(GridLongWorkTest, ColumnsAreReadBeforeTheFirstCellIsPainted)
{
    openOverColumns(0);

    EXPECT_EQ(columns->asked, 8);
    EXPECT_EQ(text(0, 0), "uno");
    EXPECT_EQ(text(0, 4), "05/03/2016");
    EXPECT_EQ(text(1, 7), "8");
    EXPECT_EQ(columns->asked, 8) << "each is asked for once";
}

TEST_F(GridLongWorkTest, SlowReadingShowsItselfAndWhenStoppedCellsAreReadAsTheyAppear)
{
    const ui::CancelWhenShown cancel;
    openOverColumns(80);

    EXPECT_GE(cancel.seen, 1);
    EXPECT_EQ(cancel.label, QStringLiteral("Lettura della tabella…"));
    EXPECT_EQ(cancel.caption, QStringLiteral("Annulla"));
    EXPECT_EQ(ui::shownProgress(), nullptr);
    EXPECT_EQ(grid->model().rowCount(), 2);
    EXPECT_EQ(text(0, 0), "uno");
    EXPECT_EQ(text(0, 6), "y");
    EXPECT_EQ(text(1, 7), "8");
    EXPECT_TRUE(grid->Save());
    EXPECT_TRUE(library.changes().empty());
}

TEST_F(GridLongWorkTest, ATableWhoseReadingIsStoppedIsNotOpened)
{
    library.offerColumns();
    columns.emplace(static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension)), 80);
    library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&*columns));
    const ui::CancelWhenShown cancel;

    CDlgShowTable dialog(&library, library.GetTable(0));

    EXPECT_FALSE(kit::runModal(dialog));
    EXPECT_GE(cancel.seen, 1);
    EXPECT_TRUE(library.changes().empty());
}

TEST_F(GridLongWorkTest, ATableWhoseReadingFailsIsOpenedAndItsCellsAreReadHere)
{
    library.offerColumns();
    columns.emplace(static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension)), 0);
    columns->throwsAside = true;
    library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(&*columns));
    const ui::CModalDriver driver; // no message comes

    CDlgShowTable dialog(&library, library.GetTable(0));
    dialog.show();
    QApplication::processEvents();

    EXPECT_TRUE(dialog.isVisible()) << "nobody pressed Annulla";
    const auto* shown = dialog.findChild<QTableView*>()->model();
    EXPECT_EQ(shown->index(1, 0).data().toString(), QStringLiteral("due"));
    EXPECT_EQ(shown->index(1, 7).data().toString(), QStringLiteral("8"));
}

TEST_F(GridLongWorkTest, ASortingThatFailsSaysSoAndLeavesTheOrder)
{
    openOverColumns(0);
    grid->view().sortByColumn(7, Qt::DescendingOrder);
    ASSERT_EQ(text(0, 0), "due");
    columns->throwsAside = true;
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("La tabella non può essere ordinata: memoria insufficiente.\n"
                                  "Chiudere altri programmi e riprovare."),
            kit::Answer::Ok, [](QMessageBox& box) {
                EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
                EXPECT_EQ(box.icon(), QMessageBox::Warning);
            });

        grid->view().sortByColumn(1, Qt::AscendingOrder);

        EXPECT_EQ(driver.stepsTaken(), 1);
    }
    EXPECT_EQ(text(0, 0), "due");
    EXPECT_EQ(grid->model().sortedField(), 7);
    EXPECT_EQ(grid->view().horizontalHeader()->sortIndicatorSection(), 7);

    columns->throwsAside = false;
    grid->view().sortByColumn(1, Qt::AscendingOrder);
    EXPECT_EQ(text(0, 0), "uno");
}

TEST(GridCopyTest, ACopyThatIsStoppedLeavesTheClipboardAsItWas)
{
    std::string notation = "table T (t text); rows T: ('0')";
    for (int row = 1; row < 1500; ++row)
        notation += ", ('" + std::to_string(row) + "')";
    CRecordingLibrary library(notation);
    CCtrlShowTable grid(nullptr, 0, &library, library.GetTable(0));
    grid.Fill();
    grid.show();
    QApplication::processEvents();
    QApplication::clipboard()->setText(QStringLiteral("di prima"));
    grid.view().setFocus();
    grid.view().selectAll();
    library.answerCells([](orv::CResultRow*, int, orv::CPolyValue&) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return false;
    });

    {
        const ui::CancelWhenShown cancel;
        QTest::keyClick(&grid.view(), Qt::Key_C, Qt::ControlModifier);
        EXPECT_GE(cancel.seen, 1);
        EXPECT_EQ(cancel.label, QStringLiteral("Copia in corso…"));
    }
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("di prima"));

    library.answerCells(nullptr);
    QTest::keyClick(&grid.view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QApplication::clipboard()->text().startsWith(QStringLiteral("0\n1\n2\n")));
}

} // namespace
