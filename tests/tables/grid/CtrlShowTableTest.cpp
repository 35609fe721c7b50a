// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/grid/ShowTableTesting.h"

#include "embedded/model/Library.h"

#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>

using support::CRecordingLibrary;

namespace {

class CtrlShowTableTest : public gridtest::ShowTableFixture { };

} // namespace

TEST_F(CtrlShowTableTest, HasTheColumnsOfTheTableAndRowNumbersFromOne)
{
    open();

    EXPECT_EQ(view().objectName(), QStringLiteral("id1000"));
    EXPECT_EQ(m_grid->objectName(), QStringLiteral("id1000"));
    EXPECT_EQ(view().model()->columnCount(), 7);
    EXPECT_EQ(view().model()->headerData(6, Qt::Horizontal).toString(), QStringLiteral("Area"));
    EXPECT_EQ(view().model()->headerData(2, Qt::Vertical).toInt(), 3);
    for (int column = 0; column < 7; ++column)
        EXPECT_EQ(view().columnWidth(column), 100);
    EXPECT_EQ(view().verticalHeader()->width(), 20);
    EXPECT_EQ(view().textElideMode(), Qt::ElideRight);
    EXPECT_FALSE(view().wordWrap());
}

TEST_F(CtrlShowTableTest, ComputedColumnsAreGreenAndOpenNoEditor)
{
    open();
    EXPECT_EQ(edit<QLineEdit>(0, 6), nullptr);

    view().clearSelection();
    view().makeCurrent(cell(0, 0));
    QRect place = view().visualRect(cell(1, 6));
    const QImage picture = view().viewport()->grab().toImage();

    EXPECT_EQ(picture.pixelColor(place.left() + 3, place.bottom() - 3), QColor(223, 255, 210));
}

TEST_F(CtrlShowTableTest, TextsAreTypedAndTakenWithReturn)
{
    open();

    type(0, 0, QStringLiteral("Via Niccolò"));

    EXPECT_EQ(text(0, 0), "Via Niccolò");
    EXPECT_TRUE(m_library.changes().empty());
    EXPECT_TRUE(m_grid->Save());
    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[0], 0, 'Via Niccolò')"));
}

TEST_F(CtrlShowTableTest, EscapeLeavesTheCellAsItWas)
{
    open();
    auto* editor = edit<QLineEdit>(0, 0);
    ASSERT_NE(editor, nullptr);
    QTest::keyClicks(editor, QStringLiteral("xyz"));

    QTest::keyClick(editor, Qt::Key_Escape);
    QApplication::processEvents();

    EXPECT_EQ(text(0, 0), "Via Roma");
}

TEST_F(CtrlShowTableTest, YesNoIsChosenFromNoYesAndNothing)
{
    open();
    auto* combo = edit<QComboBox>(0, 2);
    ASSERT_NE(combo, nullptr);

    ASSERT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->itemText(0), QStringLiteral("No"));
    EXPECT_EQ(combo->itemText(1), QStringLiteral("Sì"));
    EXPECT_EQ(combo->itemText(2), QString());
    EXPECT_EQ(combo->currentIndex(), 1);
    combo->setCurrentIndex(2);
    EXPECT_TRUE(m_grid->Save());

    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[0], 2, -)"));
}

TEST_F(CtrlShowTableTest, AListIsChosenAfterTheEntryForNoValue)
{
    open();
    auto* combo = edit<QComboBox>(0, 1);
    ASSERT_NE(combo, nullptr);

    EXPECT_EQ(combo->count(), 3);
    EXPECT_EQ(combo->itemText(0), QString());
    EXPECT_EQ(combo->itemText(1), QStringLiteral("Strada"));
    combo->setCurrentIndex(2);
    EXPECT_TRUE(m_grid->Save());

    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[0], 1, 'Piazza')"));
}

TEST_F(CtrlShowTableTest, ATextThatIsNotInTheListStaysWhenNothingIsChosen)
{
    open();
    auto* combo = edit<QComboBox>(1, 1);
    ASSERT_NE(combo, nullptr);

    EXPECT_EQ(combo->currentIndex(), -1);
    view().commitOpenEditor();

    EXPECT_EQ(text(1, 1), "Vicolo");
}

TEST_F(CtrlShowTableTest, ADateIsTypedOrCleared)
{
    open();
    type(1, 5, QStringLiteral("1/2/2020"));
    EXPECT_EQ(text(1, 5), "01/02/2020");

    type(0, 5, QString());
    EXPECT_EQ(text(0, 5), "");
    EXPECT_TRUE(m_grid->Save());

    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[0], 5, -)"));
    EXPECT_TRUE(m_library.wasCalled("SetRowValue(Strade[1], 5, 01/02/2020)"));
}

TEST_F(CtrlShowTableTest, ANumberBeyondItsBoundsIsRefusedWithAMessageAndTheCellKeepsTheFocus)
{
    open();
    ui::CModalDriver driver;
    driver.box(QStringLiteral("ll valore inseito non rispetta i vincoli inseriti"), kit::Answer::Ok,
        [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
            EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        });

    type(0, 3, QStringLiteral("9"));
    ASSERT_TRUE(ui::waitUntil([&] { return driver.stepsTaken() == 1; }));
    ASSERT_TRUE(ui::waitUntil([&] { return m_grid->focusWidget() == &view(); }));

    EXPECT_EQ(text(0, 3), "2");
    EXPECT_EQ(view().currentIndex(), cell(0, 3));
}

TEST_F(CtrlShowTableTest, AnIntegerEqualToItsMaximumIsTaken)
{
    open();

    type(0, 3, QStringLiteral("8"));

    EXPECT_EQ(text(0, 3), "8");
}

TEST_F(CtrlShowTableTest, SavingWithARefusedEntryOpenShowsItsMessageAndSavesNothing)
{
    open();
    auto* editor = edit<QLineEdit>(0, 3);
    ASSERT_NE(editor, nullptr);
    editor->setText(QStringLiteral("99"));
    ui::CModalDriver driver;
    driver.box(
        QStringLiteral("ll valore inseito non rispetta i vincoli inseriti"), kit::Answer::Ok);

    EXPECT_FALSE(m_grid->Save());

    EXPECT_TRUE(m_library.changes().empty());
    EXPECT_EQ(driver.stepsTaken(), 1);
}

TEST_F(CtrlShowTableTest, AnEditedDecimalShowsTheHintWhereDecimalsAreChanged)
{
    open();
    EXPECT_EQ(label("hint"), "");

    type(0, 4, QStringLiteral("4"));

    EXPECT_EQ(text(0, 4), "4.00");
    EXPECT_EQ(label("hint"), "I decimali si modificano in \"Attributi gis\"");
    EXPECT_TRUE(m_grid->Save());
    EXPECT_EQ(m_library.changes(), std::vector<std::string> { "SetModifiedFlag(yes)" });
}

TEST_F(CtrlShowTableTest, ACurrentRowCentresTheDrawingOnItsEntity)
{
    open();
    EXPECT_TRUE(m_engine.centred.empty());

    click(2, 0);
    click(2, 3);

    EXPECT_EQ(m_engine.centred, std::vector<std::string> { "77: 30 40 0" });
    EXPECT_EQ(m_feedback.rows, std::vector<gis::CEnt*> { entity(1) });
    EXPECT_EQ(m_library.callsOf("GetEnt"), std::vector<std::string> { "GetEnt(Strade[2])" });
}

TEST_F(CtrlShowTableTest, ARowWithoutAnEntityCentresNothing)
{
    open();

    click(1, 0);

    EXPECT_TRUE(m_engine.centred.empty());
    EXPECT_EQ(m_feedback.rows, std::vector<gis::CEnt*> { nullptr });
}

TEST_F(CtrlShowTableTest, AfterSortingTheRowThatIsClickedIsTheOneThatIsCentred)
{
    open();
    view().sortByColumn(0, Qt::DescendingOrder); // Via Roma, Via Po, Corso

    click(1, 0);

    EXPECT_EQ(m_engine.centred, std::vector<std::string> { "77: 30 40 0" });
}

TEST_F(CtrlShowTableTest, AClickSelectsNoRowAndModifiersDo)
{
    open();
    EXPECT_EQ(label("counts"), "3 righe");

    click(0, 0);
    EXPECT_EQ(view().selectedCount(), 0);
    click(1, 0, Qt::ShiftModifier);
    EXPECT_EQ(view().selectedCount(), 2);
    EXPECT_EQ(label("counts"), "3 righe, 2 selezionate");
    click(2, 0, Qt::ControlModifier);
    EXPECT_EQ(view().selectedCount(), 3);
    click(0, 0, Qt::ControlModifier);
    EXPECT_EQ(view().selectedCount(), 2);
    click(0, 0);
    EXPECT_EQ(view().selectedCount(), 0);
    QTest::keyClick(&view(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view().selectedCount(), 3);
}

TEST_F(CtrlShowTableTest, CopyTakesTheSelectedRowsInTheirOrderOrElseTheCurrentCell)
{
    open();
    click(2, 0);
    QTest::keyClick(&view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Via Po"));

    view().sortByColumn(3, Qt::DescendingOrder);
    view().selectRuns({ { 0, 1 } });
    QTest::keyClick(&view(), Qt::Key_C, Qt::ControlModifier);

    EXPECT_EQ(QApplication::clipboard()->text().toStdString(),
        "\"Corso\tItalia\"\tVicolo\t\t4\t7.25\t\t20.0\n"
        "Via Roma\tStrada\tSì\t2\t3.50\t05/03/2016\t10.0");
}

TEST_F(CtrlShowTableTest, ACellWithATabIsCopiedInQuotesAsInARow)
{
    open();
    click(1, 0);
    QTest::keyClick(&view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("\"Corso\tItalia\""));
}

TEST_F(CtrlShowTableTest, SpaceIsAClickAndReplacesNoText)
{
    open();
    click(0, 0);
    QTest::keyClick(&view(), Qt::Key_Space);
    QTest::keyClick(&view(), Qt::Key_Down);
    EXPECT_EQ(text(0, 0), "Via Roma");
    EXPECT_EQ(m_grid->findChild<QLineEdit*>(QStringLiteral("qt_editor")), nullptr);
    EXPECT_EQ(view().currentIndex(), cell(1, 0));
}

TEST_F(CtrlShowTableTest, TheMenuKeyOffersWhatCanBeDoneAtTheCurrentCell)
{
    open();
    click(2, 0);
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(view().viewport(), &key);
    auto* menu = m_grid->findChild<QMenu*>(QStringLiteral("gridMenu"));
    ASSERT_NE(menu, nullptr);
    QStringList texts;
    for (const QAction* action : menu->actions())
        if (!action->isSeparator())
            texts << action->text().section(QLatin1Char('\t'), 0, 0);
    EXPECT_EQ(texts,
        (QStringList { QStringLiteral("Modifica"), QStringLiteral("Copia"),
            QStringLiteral("Seleziona tutto"), QStringLiteral("Trova...") }));
    EXPECT_TRUE(menu->actions().first()->isEnabled());
    menu->actions().at(2)->trigger(); // copy
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("Via Po"));
    menu->close();

    click(2, 6); // computed
    QApplication::sendEvent(view().viewport(), &key);
    menu = m_grid->findChildren<QMenu*>(QStringLiteral("gridMenu")).last();
    EXPECT_FALSE(menu->actions().first()->isEnabled());
    menu->close();
}

TEST_F(CtrlShowTableTest, ASelectionOfTooManyPiecesIsToldNotLostInSilence)
{
    constexpr int rows = 50'000;
    {
        const support::RecordingPause pause(m_library);
        gis::CTheme* theme = m_library.GetTheme(0);
        gis::CDBTable* table = m_library.GetTable(0);
        const int first = table->rowCount();
        table->addRows(rows);
        for (int i = 0; i < rows; i += 2) {
            theme->entities().addEntity(table->row(first + i));
            theme->entities().addPart(1);
            m_feedback.selected.push_back(
                theme->entities().entity(theme->entities().entityCount() - 1));
        }
    }

    open();

    EXPECT_TRUE(view().selectedRuns().empty());
    EXPECT_EQ(label("hint"), "Selezione troppo frammentata, non mostrata: 25.000 righe");
    view().selectRuns({ { 0, 1 } });
    EXPECT_EQ(label("hint"), "");
}

TEST_F(CtrlShowTableTest, ClicksOnAHeaderSortUpThenDownThenAsFilled)
{
    open();
    const auto clickHeader = [&](int column) {
        auto* header = view().horizontalHeader();
        const QPoint place(header->sectionViewportPosition(column) + 40, header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
    };

    clickHeader(0);
    EXPECT_EQ(text(0, 0), "Corso\tItalia");
    clickHeader(0);
    EXPECT_EQ(text(0, 0), "Via Roma");
    EXPECT_EQ(text(1, 0), "Via Po");
    clickHeader(0);
    EXPECT_EQ(text(1, 0), "Corso\tItalia");
    EXPECT_EQ(view().selectedCount(), 0);
}

TEST_F(CtrlShowTableTest, SortingKeepsSelectionCurrentRowAndColumnWidths)
{
    open();
    view().setColumnWidth(0, 173);
    click(0, 0);
    view().selectRuns({ { 0, 0 }, { 2, 2 } });

    view().sortByColumn(0, Qt::AscendingOrder); // Corso, Via Po, Via Roma

    EXPECT_EQ(view().columnWidth(0), 173);
    EXPECT_EQ(view().currentIndex().row(), 2);
    ASSERT_EQ(view().selectedRuns().size(), 1U);
    EXPECT_EQ(view().selectedRuns()[0].first, 1);
    EXPECT_EQ(view().selectedRuns()[0].last, 2);
}

TEST_F(CtrlShowTableTest, SavingAfterSortingRunsInFillOrder)
{
    open();
    view().sortByColumn(0, Qt::DescendingOrder); // Via Roma, Via Po, Corso
    type(2, 0, QStringLiteral("B"));
    type(1, 0, QStringLiteral("C"));

    EXPECT_TRUE(m_grid->Save());

    EXPECT_EQ(m_library.callsOf("SetRowValue"),
        (std::vector<std::string> {
            "SetRowValue(Strade[1], 0, 'B')", "SetRowValue(Strade[2], 0, 'C')" }));
}

TEST_F(CtrlShowTableTest, FindMakesTheNextMatchingCellTheCurrentOne)
{
    open();
    QTest::keyClick(&view(), Qt::Key_F, Qt::ControlModifier);
    auto* edit = m_grid->findChild<QLineEdit*>(QStringLiteral("sought"));
    ASSERT_TRUE(edit->isVisible());
    EXPECT_TRUE(edit->hasFocus());
    QTest::keyClicks(edit, QStringLiteral("via"));

    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(view().currentIndex(), cell(0, 0));
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(view().currentIndex(), cell(2, 0));
    QTest::keyClick(edit, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(view().currentIndex(), cell(0, 0));
    QTest::keyClicks(edit, QStringLiteral("xyz"));
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(label("hint"), "Nessuna cella contiene \"viaxyz\"");
    QTest::keyClick(edit, Qt::Key_Escape);
    EXPECT_FALSE(edit->isVisible());
    EXPECT_TRUE(view().hasFocus());
    EXPECT_EQ(label("hint"), "");
}

TEST_F(CtrlShowTableTest, EntitiesSelectedInTheDrawingAreSelectedRowsAndCentreNothing)
{
    m_feedback.selected = { entity(1) };

    open();

    ASSERT_EQ(view().selectedRuns().size(), 1U);
    EXPECT_EQ(view().selectedRuns()[0].first, 2);
    EXPECT_EQ(label("counts"), "3 righe, 1 selezionata");
    EXPECT_TRUE(m_engine.centred.empty());
    EXPECT_FALSE(view().currentIndex().isValid());
}

TEST_F(CtrlShowTableTest, AGridThatIsNotEditableOpensNoEditor)
{
    open();
    m_grid->SetEditable(false);

    EXPECT_EQ(edit<QLineEdit>(0, 0), nullptr);
    QTest::keyClicks(&view(), QStringLiteral("x"));

    EXPECT_EQ(text(0, 0), "Via Roma");
}

TEST_F(CtrlShowTableTest, NothingIsAskedForCellsThatAreNotShown)
{
    std::string notation = "table T (t text); rows T: ('0')";
    for (int row = 1; row < 3000; ++row)
        notation += ", ('" + std::to_string(row) + "')";
    CRecordingLibrary library(notation);
    CCtrlShowTable grid(nullptr, 0, &library, library.GetTable(0));

    library.clearCalls();
    grid.Fill();
    grid.resize(300, 200);
    grid.show();
    QApplication::processEvents();

    EXPECT_GT(library.countOf("GetRowValue"), 3);
    EXPECT_LT(library.countOf("GetRowValue"), 100);
}

TEST(CtrlShowTableWithoutATableTest, IsEmptyAndSaves)
{
    CRecordingLibrary library;
    CCtrlShowTable grid(nullptr, 0, &library, nullptr);
    grid.Fill();
    grid.show();
    QApplication::processEvents();

    EXPECT_EQ(grid.model().rowCount(), 0);
    EXPECT_EQ(grid.model().columnCount(), 0);
    EXPECT_TRUE(grid.Save());
    EXPECT_TRUE(library.changes().empty());
}
