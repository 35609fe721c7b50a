// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/grid/ShowTableTesting.h"

#include "tests/support/ui/CalendarDriver.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>

// The right button and the keys of the grid.

namespace {

class GridKeysTest : public gridtest::ShowTableFixture {
protected:
    /// The right button on a cell, with the menu that the window system asks for then.
    QMenu* rightClick(int row, int column)
    {
        const QPoint place = view().visualRect(cell(row, column)).center();
        QWidget* const cells = view().viewport();
        QTest::mousePress(cells, Qt::RightButton, {}, place);
        QContextMenuEvent asked(QContextMenuEvent::Mouse, place, cells->mapToGlobal(place));
        QApplication::sendEvent(cells, &asked);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QTest::mouseRelease(cells, Qt::RightButton, {}, place);
        return menu;
    }
    static void choose(QMenu& menu, const char* wanted)
    {
        for (QAction* action : menu.actions())
            if (action->text().startsWith(QLatin1String(wanted)))
                action->trigger();
        menu.close();
    }
    void openFind(const char* sought)
    {
        QTest::keyClick(&view(), Qt::Key_F, Qt::ControlModifier);
        auto* edit = m_grid->findChild<QLineEdit*>(QStringLiteral("sought"));
        QTest::keyClicks(edit, QLatin1String(sought));
        view().setFocus();
    }
};

} // namespace

TEST_F(GridKeysTest, TheRightButtonOnASelectedRowKeepsWhatIsSelectedForTheMenu)
{
    open();
    view().selectRuns({ { 0, 0 }, { 2, 2 } });

    QMenu* const menu = rightClick(2, 3);

    EXPECT_EQ(view().selectedCount(), 2);
    ASSERT_NE(menu, nullptr);
    choose(*menu, "Copia");
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
        "Via Roma\tStrada\tSì\t2\t3.50\t05/03/2016\t10.0\n"
        "Via Po\t\tNo\t\t\t01/02/2015\t30.0");
    EXPECT_EQ(view().selectedCount(), 2);
}

TEST_F(GridKeysTest, TheRightButtonElsewhereIsAClickOnThatCell)
{
    open();
    view().selectRuns({ { 0, 0 }, { 2, 2 } });

    QMenu* const menu = rightClick(1, 3);

    EXPECT_EQ(view().currentIndex(), cell(1, 3));
    EXPECT_EQ(view().selectedCount(), 0);
    ASSERT_NE(menu, nullptr);
    choose(*menu, "Copia");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("4"));
}

TEST_F(GridKeysTest, TheLeftButtonOnASelectedRowStillLetsTheSelectionGo)
{
    open();
    view().selectRuns({ { 0, 0 }, { 2, 2 } });

    click(2, 3);

    EXPECT_EQ(view().selectedCount(), 0);
}

TEST_F(GridKeysTest, CtrlSpaceSelectsTheCurrentRowOrLetsItGo)
{
    open();
    click(0, 0);
    QTest::keyClick(&view(), Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(view().selectedCount(), 1);

    QTest::keyClick(&view(), Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&view(), Qt::Key_Down, Qt::ControlModifier);
    QTest::keyClick(&view(), Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(label("counts"), "3 righe, 2 selezionate");
    EXPECT_EQ(view().selectedRuns().back().first, 2);

    QTest::keyClick(&view(), Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(label("counts"), "3 righe, 1 selezionata");
    EXPECT_EQ(view().selectedRuns().front().first, 0);
    EXPECT_EQ(text(2, 0), "Via Po") << "it is no letter";
}

TEST_F(GridKeysTest, F3AndShiftF3InTheGridFindOn)
{
    open();
    openFind("o"); // Via Roma, Corso Italia, Vicolo, Via Po, No
    ASSERT_TRUE(view().hasFocus());
    const auto press = [&](Qt::KeyboardModifier held = Qt::NoModifier) {
        QTest::keyClick(&view(), Qt::Key_F3, held);
        return view().currentIndex();
    };

    EXPECT_EQ(press(), cell(0, 0));
    EXPECT_EQ(press(), cell(1, 0));
    EXPECT_EQ(press(), cell(1, 1));
    EXPECT_EQ(press(Qt::ShiftModifier), cell(1, 0));
    EXPECT_EQ(press(Qt::ShiftModifier), cell(0, 0));
    EXPECT_EQ(press(Qt::ShiftModifier), cell(2, 2)) << "round to the last";
    EXPECT_EQ(press(), cell(0, 0)) << "round to the first";
    EXPECT_TRUE(view().hasFocus());
}

TEST_F(GridKeysTest, F3BeforeAnythingWasSoughtAsksWhat)
{
    open();
    click(1, 1);

    QTest::keyClick(&view(), Qt::Key_F3);

    auto* edit = m_grid->findChild<QLineEdit*>(QStringLiteral("sought"));
    EXPECT_TRUE(edit->isVisible());
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(view().currentIndex(), cell(1, 1));
}

TEST_F(GridKeysTest, F4InTheEditorOfADateOffersACalendarAndTheDayFillsTheCell)
{
    open();
    auto* editor = edit<QLineEdit>(0, 5);
    ASSERT_NE(editor, nullptr);
    QDate shown;

    ASSERT_TRUE(ui::withCalendar(*editor, [&](QCalendarWidget& calendar) {
        shown = calendar.selectedDate();
        Q_EMIT calendar.clicked(QDate(2016, 3, 31));
    }));

    EXPECT_EQ(shown, QDate(2016, 3, 5));
    auto* delegate = qobject_cast<tables::CGridDelegate*>(view().itemDelegate());
    ASSERT_EQ(delegate->openEditor(), editor) << "the calendar's window does not end the editing";
    EXPECT_EQ(editor->text(), QStringLiteral("31/03/2016"));
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(text(0, 5), "31/03/2016");
    EXPECT_TRUE(m_grid->Save());
    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[0], 5, 31/03/2016)"));
}

TEST_F(GridKeysTest, TheCalendarLeftWithEscapeLeavesTheCell)
{
    open();
    auto* editor = edit<QLineEdit>(2, 5);
    ASSERT_NE(editor, nullptr);

    ASSERT_TRUE(ui::withCalendar(*editor, [](QCalendarWidget&) {}));

    EXPECT_EQ(editor->text(), QStringLiteral("01/02/2015"));
    view().commitOpenEditor();
    EXPECT_EQ(text(2, 5), "01/02/2015");
    EXPECT_TRUE(m_grid->Save());
    EXPECT_EQ(m_library.countOf("SetRowValue"), 0) << "nothing was edited";
}

TEST_F(GridKeysTest, RowNumbersStandInTheMiddleOfTheirHeader)
{
    open();

    EXPECT_EQ(view().verticalHeader()->defaultAlignment(), Qt::AlignCenter);
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(view().model()->headerData(row, Qt::Vertical, Qt::TextAlignmentRole).toInt(),
            int(Qt::AlignCenter));
}
