// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/DlgQuery.h"
#include "query/dialog/FilterHistory.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/TestData.h"
#include "tests/support/ui/ModalDriver.h"

#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/GridView.h"
#include "tematica/QueryExecute.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

// The query dialog over the embedded host: what users do with it, from the first click to the rows.

namespace {

class DlgQueryEmbeddedTest : public testing::Test {
protected:
    void open(gis::CLibGis& library)
    {
        dialog = std::make_unique<CDlgQuery>(0, nullptr, &library);
        dialog->show();
        dialog->activateWindow();
        QApplication::processEvents();
    }
    QListView& fields() { return ui::at<QListView>(*dialog, 2068); }
    QListView& values() { return ui::at<QListView>(*dialog, 2069); }
    QLineEdit& filter() { return ui::at<QLineEdit>(ui::pageOf(*dialog, "CDlgQueryPage1"), 2071); }
    QTabWidget& sheet() { return *dialog->findChild<QTabWidget*>(); }
    CCtrlShowTable& grid() { return *dialog->findChild<CCtrlShowTable*>(); }
    static QPoint placeOf(QListView& list, int row)
    {
        list.scrollTo(list.model()->index(row, 0));
        return list.visualRect(list.model()->index(row, 0)).center();
    }
    void doubleClick(QListView& list, int row)
    {
        const QPoint place = placeOf(list, row);
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    }
    void run(const QString& text)
    {
        filter().setText(text);
        ui::press(*dialog, 2081);
    }
    QStringList shownValues()
    {
        QStringList texts;
        for (int i = 0; i < values().model()->rowCount(); ++i)
            texts << values().model()->index(i, 0).data().toString();
        return texts;
    }

    std::unique_ptr<CDlgQuery> dialog;
};

TEST_F(DlgQueryEmbeddedTest, FromTheFirstClickToTheRows)
{
    const auto library = support::makeLibrary(
        "table T (Nome text, Tipo list ('A', 'B'), N integer);"
        "rows T: ('uno', 'A', 1), ('due', 'B', 2), ('tre', 'A', 3), ('quattro', 'B', 4);"
        "theme P: points 2d on T active; ents P: 0 [0 0], 1 [1 1], 2 [2 2], 3 [3 3]");
    open(*library);

    doubleClick(fields(), 1);
    ui::press(*dialog, 2074);
    EXPECT_EQ(shownValues(), (QStringList { QStringLiteral("A"), QStringLiteral("B") }));
    doubleClick(values(), 1);
    ui::press(*dialog, 2079);
    doubleClick(fields(), 2);
    ui::press(*dialog, 2075);
    doubleClick(values(), 1);
    EXPECT_EQ(filter().text(), QStringLiteral("Tipo = 'B' AND N > 2"));
    ui::press(*dialog, 2081);

    EXPECT_EQ(sheet().currentIndex(), 1);
    ASSERT_EQ(grid().model().rowCount(), 1);
    EXPECT_EQ(grid().model().index(0, 0).data().toString(), QStringLiteral("quattro"));
}

TEST_F(DlgQueryEmbeddedTest, AValueWithALineEndIsInsertedAsItIsAndFindsItsRow)
{
    const auto library = support::makeLibrary(
        "table T (Nome text); rows T: ('x'), ('y'); theme P: points 2d on T active;"
        "ents P: 0 [0 0], 1 [1 1]");
    orv::CPolyValue value { orv::String("due\nrighe\te tab") };
    library->SetRowValue(library->GetRow(library->GetTable(0), 1), 0, value);
    open(*library);

    doubleClick(fields(), 0);
    ui::press(*dialog, 2074);
    doubleClick(values(), 0);
    ASSERT_EQ(filter().text(), QStringLiteral("Nome = 'due\nrighe\te tab'"));
    // Typing on leaves the value alone.
    filter().setCursorPosition(0);
    QTest::keyClicks(&filter(), QStringLiteral(" "));
    EXPECT_TRUE(filter().text().contains(QLatin1Char('\n')));
    ui::press(*dialog, 2081);
    EXPECT_EQ(grid().model().rowCount(), 1);
}

TEST_F(DlgQueryEmbeddedTest, NoButtonInsertsAnythingWhileTheResultIsInFront)
{
    const auto library = support::makeLibrary(
        "table T (N integer); rows T: (1); theme P: points 2d on T active; ents P: 0 [0 0]");
    open(*library);
    run(QStringLiteral("N = 1"));
    ASSERT_EQ(sheet().currentIndex(), 1);

    for (int id = 2073; id <= 2086; ++id)
        if (auto* button = kit::control<QPushButton>(*dialog, id); button && id != 2081)
            QTest::mouseClick(button, Qt::LeftButton);
    doubleClick(fields(), 0);
    doubleClick(values(), 0);

    EXPECT_EQ(filter().text(), QStringLiteral("N = 1"));
}

TEST_F(DlgQueryEmbeddedTest, TabbingIntoTheFilterSelectsItAndAnInsertionReplacesIt)
{
    const auto library = support::makeLibrary(
        "table T (N integer); rows T: (1); theme P: points 2d on T active; ents P: 0 [0 0]");
    open(*library);
    filter().setText(QStringLiteral("vecchio"));
    filter().setFocus(Qt::TabFocusReason);
    ASSERT_EQ(filter().selectedText(), QStringLiteral("vecchio"));

    doubleClick(fields(), 0);

    EXPECT_EQ(filter().text(), QStringLiteral("N"));
}

TEST_F(DlgQueryEmbeddedTest, FiltersThatRanAreOfferedAgainForTheirThemeOnly)
{
    const auto library = support::makeLibrary(
        "table T (N integer); rows T: (1), (2); theme PrimoTema: points 2d on T active;"
        "theme AltroTema: points 2d on T; ents PrimoTema: 0 [0 0]; ents AltroTema: 1 [0 0]");
    open(*library);
    run(QStringLiteral("N = 1"));
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Errore di sintassi!"), kit::Answer::Ok);
        run(QStringLiteral("N = = 1"));
    }
    sheet().setCurrentIndex(0);

    const auto offered = [&] {
        QStringList texts;
        QTimer::singleShot(0, [&texts] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (const QAction* action : menu->actions())
                    texts << action->text();
                menu->close();
            }
        });
        QTest::keyClick(&filter(), Qt::Key_Down, Qt::AltModifier);
        return texts;
    };
    // Remembered once the result has been painted.
    EXPECT_TRUE(ui::waitUntil([&] { return offered().contains(QStringLiteral("N = 1")); }));
    EXPECT_FALSE(offered().contains(QStringLiteral("N = = 1")));
    ui::at<QComboBox>(*dialog, 2067).setCurrentIndex(1);
    EXPECT_TRUE(offered().isEmpty());
}

TEST_F(DlgQueryEmbeddedTest, AFilterIsRememberedAlsoWhenTheDialogIsClosedAtOnce)
{
    const auto library = support::makeLibrary(
        "table T (N integer); rows T: (1), (2); theme ChiusoSubito: points 2d on T active;"
        "ents ChiusoSubito: 0 [0 0]");
    open(*library);
    run(QStringLiteral("N = 2"));
    dialog.reset();

    EXPECT_EQ(
        query::CFilterHistory().filtersOf("ChiusoSubito"), QStringList { QStringLiteral("N = 2") });
}

TEST_F(DlgQueryEmbeddedTest, TheResultSortsFindsAndCopies)
{
    const auto library = support::makeLibrary(
        "table T (Nome text, N integer); rows T: ('b', 3), ('a', 20), ('c', -);"
        "theme P: points 2d on T active; ents P: 0 [0 0], 1 [1 1], 2 [2 2]");
    open(*library);
    run(QStringLiteral("Nome <> 'x'"));
    auto& view = grid().view();
    ASSERT_EQ(grid().model().rowCount(), 3);

    grid().model().sort(1, Qt::DescendingOrder);
    const auto names = [&] {
        QString text;
        for (int row = 0; row < 3; ++row)
            text += grid().model().index(row, 0).data().toString();
        return text;
    };
    EXPECT_EQ(names(), QStringLiteral("abc")) << "no value stays last";

    // From anywhere in the window, also when a button has the focus.
    ui::at<QPushButton>(*dialog, 1).setFocus();
    QTest::keyClick(dialog.get(), Qt::Key_F, Qt::ControlModifier);
    auto* sought = dialog->findChild<QLineEdit*>(QStringLiteral("sought"));
    ASSERT_TRUE(sought->isVisible());
    sought->setText(QStringLiteral("C"));
    QTest::keyClick(sought, Qt::Key_Return);
    EXPECT_EQ(view.currentIndex().row(), 2);

    view.setFocus();
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("a\t20\nb\t3\nc\t"));
    EXPECT_EQ(
        view.editTriggers() == QAbstractItemView::NoEditTriggers || !grid().model().isEditable(0),
        true);
}

/// Real tables: what the dialog shows is what the engine finds, row for row.
TEST_F(DlgQueryEmbeddedTest, RealTablesAreListedAndAnswered)
{
    TEMATICA_NEEDS_TEST_DATA();
    gis::CLibGis library;
    embedded::Report report;
    ASSERT_TRUE(embedded::importShapefile(library,
        (support::testDataFolder() / "dpc-aggregati/Pistoia.shp").string(), {}, nullptr, nullptr,
        report));
    library.SetThemeActive(library.GetTheme(0));
    open(library);

    doubleClick(fields(), 2);
    const QStringList towns = shownValues();
    ASSERT_FALSE(towns.isEmpty());
    int total = 0;
    for (const QString& town : towns) {
        sheet().setCurrentIndex(0);
        run(QStringLiteral("Comune = '%1'").arg(town));
        total += grid().model().rowCount();
        for (const int row : { 0, grid().model().rowCount() - 1 })
            EXPECT_EQ(grid().model().index(row, 2).data().toString(), town);
    }
    EXPECT_EQ(total, 20238);
}

} // namespace
