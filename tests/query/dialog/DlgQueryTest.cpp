// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include "query/dialog/DlgQuerySheet.h"
#include "tables/grid/CtrlShowTable.h"

#include "host/base/IniFile.h"

#include <QClipboard>
#include <QLabel>
#include <QPushButton>

using support::CRecordingLibrary;

namespace {

class DlgQueryTest : public querytest::DlgQueryFixture { };

} // namespace

TEST_F(DlgQueryTest, StartsWithTheActiveThemeAndItsFields)
{
    open();

    EXPECT_EQ(m_dialog->windowTitle(), QStringLiteral("Query"));
    EXPECT_EQ(themes().count(), 3);
    EXPECT_EQ(themes().currentText(), QStringLiteral("Strade"));
    EXPECT_EQ(joined(rows(fields())), "Nome, Attiva, Corsie, Larghezza, Rilievo, Tipo, Vuoto");
    EXPECT_TRUE(rows(values()).isEmpty());
    EXPECT_EQ(sheet().tabText(0), QStringLiteral("Query"));
    EXPECT_EQ(sheet().tabText(1), QStringLiteral("Risultato"));
    EXPECT_EQ(sheet().windowTitle(), QStringLiteral("Query"));
    EXPECT_FALSE(ui::at<QLabel>(*m_dialog, 2070).isVisible());
}

TEST_F(DlgQueryTest, WithoutAnActiveThemeNothingIsSelectedAndTheListsAreEmpty)
{
    m_library.answer<gis::CTheme*>("GetThemeActive", nullptr);
    open();

    EXPECT_EQ(themes().currentIndex(), -1);
    EXPECT_TRUE(rows(fields()).isEmpty());
    run("A = 1");
    EXPECT_EQ(sheet().currentIndex(), 1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 0);
    EXPECT_EQ(grid()->model()->columnCount(), 0);
}

TEST_F(DlgQueryTest, AClickOnAFieldListsItsDistinctValuesAscending)
{
    open();

    click(fields(), 0);
    EXPECT_EQ(joined(rows(values())), "Via Po, Via Roma");
    click(fields(), 2);
    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    click(fields(), 5);
    EXPECT_EQ(joined(rows(values())), "A, B");
}

TEST_F(DlgQueryTest, DecimalsThatPrintAlikeAreOneRow)
{
    open();

    click(fields(), 3);

    EXPECT_EQ(joined(rows(values())), "1.23, 7.00");
}

TEST_F(DlgQueryTest, YesNoValuesAreNoThenYes)
{
    open();

    click(fields(), 1);

    EXPECT_EQ(joined(rows(values())), "No, Sì");
}

TEST_F(DlgQueryTest, DatesGoByTheirDayAndShowIt)
{
    open();

    click(fields(), 4);

    EXPECT_EQ(joined(rows(values())), "31/12/1969, 01/02/2015, 05/03/2016");
}

TEST_F(DlgQueryTest, AFieldOrAThemeWithoutValuesGivesAnEmptyList)
{
    open();

    click(fields(), 6);
    EXPECT_TRUE(rows(values()).isEmpty());
    themes().setCurrentIndex(2);
    click(fields(), 0);
    EXPECT_TRUE(rows(values()).isEmpty());
}

TEST_F(DlgQueryTest, TheFieldThatIsListedIsNotGatheredAgain)
{
    open();
    click(fields(), 0);
    m_library.clearCalls();

    click(fields(), 0);
    EXPECT_EQ(m_library.countOf("GetRowValue"), 0);
    click(fields(), 1);
    EXPECT_EQ(m_library.countOf("GetRowValue"), 4);
}

TEST_F(DlgQueryTest, WalkingThroughTheFieldsWithTheKeysGathersNothingUntilSpace)
{
    open();
    click(fields(), 0);
    m_library.clearCalls();

    QTest::keyClick(&fields(), Qt::Key_Down);
    QTest::keyClick(&fields(), Qt::Key_Down);
    EXPECT_EQ(m_library.countOf("GetRowValue"), 0);
    QTest::keyClick(&fields(), Qt::Key_Space);

    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
}

TEST_F(DlgQueryTest, AnotherThemeEmptiesTheValuesAndShowsItsFields)
{
    open();
    click(fields(), 0);

    themes().setCurrentIndex(0);

    EXPECT_EQ(joined(rows(fields())), "Specie");
    EXPECT_TRUE(rows(values()).isEmpty());
    click(fields(), 0);
    EXPECT_EQ(joined(rows(values())), "Tiglio");
}

TEST_F(DlgQueryTest, ADoubleClickInsertsTheFieldAsItStandsAndListsItsValues)
{
    open();

    doubleClick(fields(), 2);

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie"));
    EXPECT_EQ(values().model()->rowCount(), 3);
}

TEST_F(DlgQueryTest, CtrlReturnIsTheKeyboardsDoubleClick)
{
    open();
    fields().setFocus();
    fields().setCurrentIndex(fields().model()->index(2, 0));
    QTest::keyClick(&fields(), Qt::Key_Return, Qt::ControlModifier);
    ui::press(*m_dialog, 2074);
    values().setFocus();
    values().setCurrentIndex(values().model()->index(1, 0));
    QTest::keyClick(&values(), Qt::Key_Return, Qt::ControlModifier);

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = 10"));
}

TEST_F(DlgQueryTest, ValuesAreWrittenByTheFormatOfTheirField)
{
    open();
    const std::pair<int, const char*> expected[] = { { 0, "'Via Po'" }, { 1, "false" }, { 2, "9" },
        { 3, "1.23" }, { 4, "Date(31,12,1969)" }, { 5, "'A'" } };
    for (const auto& [field, text] : expected) {
        filter().clear();
        click(fields(), field);
        doubleClick(values(), 0);
        EXPECT_EQ(filter().text().toStdString(), text);
    }
}

TEST_F(DlgQueryTest, YesIsInsertedAsTrue)
{
    open();
    click(fields(), 1);

    doubleClick(values(), 1);

    EXPECT_EQ(filter().text(), QStringLiteral("true"));
}

TEST_F(DlgQueryTest, OperatorsAreInsertedWithOneBlankOnEachSide)
{
    open();
    const std::pair<int, const char*> operators[] = { { 2073, " < " }, { 2074, " = " },
        { 2075, " > " }, { 2076, " <= " }, { 2077, " <> " }, { 2078, " >= " }, { 2079, " AND " },
        { 2080, " OR " }, { 2082, " NOT " }, { 2083, " LIKE " }, { 2085, " IS NULL " } };
    for (const auto& [id, text] : operators) {
        filter().clear();
        ui::press(*m_dialog, id);
        EXPECT_EQ(filter().text().toStdString(), text);
    }
}

TEST_F(DlgQueryTest, AnInsertionAtTheCaretLeavesTheCaretBehindIt)
{
    open();
    filter().setText(QStringLiteral("abcdef"));
    filter().setCursorPosition(3);

    ui::press(*m_dialog, 2079);

    EXPECT_EQ(filter().text(), QStringLiteral("abc AND def"));
    EXPECT_EQ(filter().cursorPosition(), 8);
    EXPECT_FALSE(filter().hasSelectedText());
}

TEST_F(DlgQueryTest, AValueReplacesEveryOccurrenceOfTheSelectedText)
{
    open();
    filter().setText(QStringLiteral("abc = 'x' OR abc = 'y'"));
    click(fields(), 0);
    filter().setSelection(0, 3);

    doubleClick(values(), 0);

    EXPECT_EQ(filter().text(), QStringLiteral("'Via Po' = 'x' OR 'Via Po' = 'y'"));
    EXPECT_EQ(filter().cursorPosition(), 11);
}

TEST_F(DlgQueryTest, RunShowsTheFoundRowsInEntityOrder)
{
    open();

    run("Corsie = 9 OR Nome = 'Via Roma'");

    EXPECT_EQ(sheet().currentIndex(), 1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 3);
    EXPECT_EQ(grid()->model()->index(0, 0).data().toString(), QStringLiteral("Via Roma"));
    EXPECT_EQ(grid()->model()->index(2, 3).data().toString(), QStringLiteral("7.00"));
    EXPECT_FALSE(grid()->model()->flags(grid()->model()->index(0, 0)) & Qt::ItemIsEditable);
    EXPECT_EQ(m_feedback.found, std::vector<std::size_t> { 3 });
    EXPECT_EQ(m_feedback.drawing, 77);
    EXPECT_TRUE(m_library.changes().empty());
}

TEST_F(DlgQueryTest, ARowOfTheResultCentresTheDrawing)
{
    open();
    run("Corsie = 9");

    grid()->setFocus();
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {},
        grid()->visualRect(grid()->model()->index(1, 0)).center());

    EXPECT_EQ(m_engine.centred, 1);
}

TEST_F(DlgQueryTest, RunWhileTheResultIsInFrontShowsTheNewResult)
{
    open();
    run("Corsie = 9");

    run("Corsie = 10");

    EXPECT_EQ(sheet().currentIndex(), 1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 1);
}

TEST_F(DlgQueryTest, TheGridStaysUntilTheNextRun)
{
    open();
    run("Corsie = 9");
    QTableView* const first = grid();

    sheet().setCurrentIndex(0);
    sheet().setCurrentIndex(1);

    EXPECT_EQ(grid(), first);
}

TEST_F(DlgQueryTest, AWrongFilterIsToldAndKeptAndEmptiesTheResult)
{
    open();
    run("Corsie = 9");
    sheet().setCurrentIndex(0);

    runWrong("Corsie = ");

    EXPECT_EQ(sheet().currentIndex(), 0);
    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = "));
    EXPECT_EQ(grid(), nullptr);
    EXPECT_EQ(m_feedback.found, (std::vector<std::size_t> { 2, 0 }));
    sheet().setCurrentIndex(1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 0);
}

TEST_F(DlgQueryTest, AWrongFilterWhileTheResultIsInFrontLeavesThePageEmptyUntilItIsShownAgain)
{
    open();
    run("Corsie = 9");

    runWrong("");

    EXPECT_EQ(sheet().currentIndex(), 1);
    EXPECT_EQ(grid(), nullptr);
    sheet().setCurrentIndex(0);
    sheet().setCurrentIndex(1);
    ASSERT_NE(grid(), nullptr);
    EXPECT_EQ(grid()->model()->rowCount(), 0);
}

TEST_F(DlgQueryTest, NothingIsInsertedWhileTheResultIsInFront)
{
    open();
    run("Corsie = 9");

    ui::press(*m_dialog, 2079);
    doubleClick(fields(), 0);
    doubleClick(values(), 0);

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = 9"));
    EXPECT_EQ(joined(rows(values())), "Via Po, Via Roma");
}

TEST_F(DlgQueryTest, ValuesGatheredWhileTheResultIsInFrontLeaveTheFormatAsItWas)
{
    open();
    click(fields(), 2);
    run("Corsie = 9");
    click(fields(), 0); // texts, but the format stays that of "Corsie"
    sheet().setCurrentIndex(0);
    filter().clear();

    doubleClick(values(), 0);
    EXPECT_EQ(filter().text(), QStringLiteral("Via Po"));

    themes().setCurrentIndex(0);
    themes().setCurrentIndex(1);
    filter().clear();
    click(fields(), 0);
    doubleClick(values(), 0);
    EXPECT_EQ(filter().text(), QStringLiteral("'Via Po'"));
}

TEST_F(DlgQueryTest, ReturnInTheFilterRunsItAndDoesNotClose)
{
    open();
    filter().setText(QStringLiteral("Corsie = 9"));
    filter().setFocus();

    QTest::keyClick(&filter(), Qt::Key_Return);

    EXPECT_TRUE(m_dialog->isVisible());
    EXPECT_EQ(sheet().currentIndex(), 1);
    EXPECT_TRUE(ui::at<QPushButton>(*m_dialog, 2081).isDefault());
    EXPECT_FALSE(ui::at<QPushButton>(*m_dialog, 1).isDefault());
}

TEST_F(DlgQueryTest, OkClosesTheDialog)
{
    open();

    ui::press(*m_dialog, 1);

    EXPECT_FALSE(m_dialog->isVisible());
    EXPECT_EQ(m_dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(m_library.changes().empty());
}

TEST_F(DlgQueryTest, TheLineUnderTheFilterCountsWhatIsTyped)
{
    open();
    auto* line = m_dialog->findChild<QLabel*>(QStringLiteral("liveLine"));

    ui::typeInto(filter(), QStringLiteral("Corsie >= 10"));

    EXPECT_TRUE(ui::waitUntil([&] {
        return line->text() == QStringLiteral("2 entità su 4 soddisfano il filtro");
    })) << line->text().toStdString();
}

TEST_F(DlgQueryTest, APastedFilterWithALineEndIsNotToldToBeWrong)
{
    open();
    auto* line = m_dialog->findChild<QLabel*>(QStringLiteral("liveLine"));
    QApplication::clipboard()->setText(QStringLiteral("Corsie >= 10\r\n"));
    filter().setFocus();

    QTest::keyClick(&filter(), Qt::Key_V, Qt::ControlModifier);

    EXPECT_TRUE(ui::waitUntil([&] {
        return line->text() == QStringLiteral("2 entità su 4 soddisfano il filtro");
    })) << line->text().toStdString();
}

TEST_F(DlgQueryTest, ColumnWidthsStayFromOneResultToTheNextOfTheSameTheme)
{
    open();
    run("Corsie >= 10");
    auto* grid = m_dialog->findChild<QTableView*>(QStringLiteral("id1000"));
    ASSERT_NE(grid, nullptr);
    grid->setColumnWidth(1, 173);

    run("Corsie < 10");

    grid = m_dialog->findChild<QTableView*>(QStringLiteral("id1000"));
    ASSERT_NE(grid, nullptr);
    EXPECT_EQ(grid->columnWidth(1), 173);
}

TEST_F(DlgQueryTest, TheListsOfferTheirDoubleClickAsAMenu)
{
    open();
    click(fields(), 0);
    ASSERT_EQ(fields().contextMenuPolicy(), Qt::ActionsContextMenu);
    ASSERT_EQ(fields().actions().size(), 1);
    fields().actions().first()->trigger();
    EXPECT_FALSE(filter().text().isEmpty());
    EXPECT_EQ(values().actions().size(), 1);
}

TEST_F(DlgQueryTest, FieldsCarryTheirHandles)
{
    open();

    EXPECT_EQ(fields().model()->index(2, 0).data(Qt::UserRole).value<void*>(),
        m_library.GetField(m_library.FindTable("Strade"), 2));
    EXPECT_EQ(themes().itemData(1).value<void*>(), m_library.GetTheme(1));
}
