// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/structure/EditorTesting.h"

#include "kit/texts/TextLoader.h"

#include <QColor>

namespace {

class DlgTableEditTest : public structuretest::Editor { };

TEST_F(DlgTableEditTest, ShowsTheFieldsAndABlankRow)
{
    open();
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Struttura tabella"));
    ASSERT_EQ(grid().model()->rowCount(), 5);
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note"));
    EXPECT_EQ(text(1, 1), QStringLiteral("Da Utente"));
    EXPECT_EQ(text(1, 2), QStringLiteral("Numerico"));
    EXPECT_EQ(text(2, 1), QStringLiteral("Area"));
    EXPECT_EQ(text(2, 2), QStringLiteral("Decimale"));
    EXPECT_EQ(text(4, 0), QString());
    for (int column = 0; column < 3; ++column)
        EXPECT_EQ(grid().columnWidth(column), 100);
    EXPECT_EQ(grid().verticalHeader()->width(), 20);
    EXPECT_FALSE(required().isVisible());
    EXPECT_FALSE(hasAnyPage());
    EXPECT_FALSE(up().isEnabled());
    EXPECT_FALSE(down().isEnabled());
}

TEST_F(DlgTableEditTest, AComputedFieldsFormatIsGreenAndReadOnly)
{
    open();
    EXPECT_EQ(cell(2, 2).data(Qt::BackgroundRole).value<QColor>(), QColor(223, 255, 210));
    EXPECT_FALSE(cell(2, 2).flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(cell(1, 2).flags() & Qt::ItemIsEditable);
    click(2, 0);
    EXPECT_TRUE(required().isVisible());
    EXPECT_FALSE(required().isEnabled());
}

TEST_F(DlgTableEditTest, ThePageFollowsTheRowAndTheBoxItsField)
{
    open();
    click(0, 0);
    EXPECT_NE(page("CSubDlgFieldString"), nullptr);
    EXPECT_TRUE(required().isVisible());
    EXPECT_TRUE(required().isChecked());
    click(1, 1);
    EXPECT_EQ(page("CSubDlgFieldString"), nullptr);
    EXPECT_NE(page("CSubDlgFieldInt"), nullptr);
    EXPECT_FALSE(required().isChecked());
    click(4, 0);
    EXPECT_FALSE(hasAnyPage());
    EXPECT_FALSE(required().isVisible());
}

TEST_F(DlgTableEditTest, ANameOfAnotherFieldIsRefusedWhateverItsCase)
{
    open();
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Esiste già un campo con questo nome!\nInserire un nome diverso!"),
        kit::Answer::Ok);
    typeName(3, QStringLiteral("corsie"));
    EXPECT_EQ(text(3, 0), QStringLiteral("Note"));
    EXPECT_EQ(grid().currentIndex(), cell(3, 0));
}

TEST_F(DlgTableEditTest, AFieldsOwnNameInOtherCaseIsAccepted)
{
    open();
    typeName(3, QStringLiteral("NOTE"));
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area NOTE"));
}

TEST_F(DlgTableEditTest, AnAreaTurnsATextIntoADecimalAndStaysOneAfterwards)
{
    open();
    click(3, 0);
    chooseFrom(3, 1, QStringLiteral("Area"));
    EXPECT_EQ(text(3, 1), QStringLiteral("Area"));
    EXPECT_EQ(text(3, 2), QStringLiteral("Decimale"));
    EXPECT_FALSE(cell(3, 2).flags() & Qt::ItemIsEditable);
    EXPECT_NE(page("CSubDlgFieldDouble"), nullptr);
    EXPECT_FALSE(required().isEnabled());
    EXPECT_FALSE(ui::at<QLineEdit>(*page("CSubDlgFieldDouble"), 2008).isEnabled());

    chooseFrom(3, 1, QStringLiteral("Da Utente"));
    EXPECT_EQ(text(3, 2), QStringLiteral("Decimale"));
    EXPECT_TRUE(cell(3, 2).flags() & Qt::ItemIsEditable);
    EXPECT_TRUE(required().isEnabled());
    EXPECT_TRUE(ui::at<QLineEdit>(*page("CSubDlgFieldDouble"), 2008).isEnabled());
    chooseFrom(3, 1, QStringLiteral("Nome Punto"));
    EXPECT_EQ(text(3, 2), QStringLiteral("Testo"));
    chooseFrom(3, 1, QStringLiteral("Foto 5"));
    EXPECT_EQ(text(3, 2), QStringLiteral("Testo"));
}

TEST_F(DlgTableEditTest, AnotherFormatBringsItsPage)
{
    open();
    chooseFrom(1, 2, QStringLiteral("Data"));
    EXPECT_EQ(text(1, 2), QStringLiteral("Data"));
    EXPECT_EQ(page("CSubDlgFieldInt"), nullptr);
    EXPECT_NE(page("CSubDlgFieldDate"), nullptr);
}

TEST_F(DlgTableEditTest, TypingInTheBlankRowMakesATextFieldAndANewBlankRow)
{
    open();
    click(4, 0);
    ui::CModalDriver driver;
    QTest::keyClick(grid().viewport(), Qt::Key_Q);
    QApplication::processEvents();
    ASSERT_EQ(grid().model()->rowCount(), 6);
    EXPECT_EQ(text(4, 2), QStringLiteral("Testo"));
    auto* edit = editor<QLineEdit>();
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->text(), QStringLiteral("q")) << "the edit goes on";
    ui::typeInto(*edit, QStringLiteral("uota"));
    QTest::keyClick(edit, Qt::Key_Return);
    QApplication::processEvents();
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note quota"));
    EXPECT_EQ(text(5, 0), QString());
}

TEST_F(DlgTableEditTest, EscapeLeavesTheNewFieldNamelessAndOkRefusesIt)
{
    open();
    click(4, 0);
    QTest::keyClick(grid().viewport(), Qt::Key_Q);
    auto* edit = editor<QLineEdit>();
    ASSERT_NE(edit, nullptr);
    QTest::keyClick(edit, Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_TRUE(dialog->isVisible()) << "Escape ends the edit only";
    ASSERT_EQ(grid().model()->rowCount(), 6);
    EXPECT_EQ(text(4, 0), QString());

    ui::CModalDriver driver;
    driver.box(QStringLiteral("Alcuni campi non hanno il nome!"), kit::Answer::Ok);
    ui::press(*dialog, 1);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableEditTest, AFormatChosenInTheBlankRowMakesAFieldToo)
{
    open();
    chooseFrom(4, 2, QStringLiteral("Data"));
    EXPECT_EQ(grid().model()->rowCount(), 6);
    EXPECT_EQ(text(4, 2), QStringLiteral("Data"));
    EXPECT_NE(page("CSubDlgFieldDate"), nullptr);
}

TEST_F(DlgTableEditTest, NamesOfBlanksAreNamesAndStrangeOnesStayAsTheyAre)
{
    open("table T (a text, b text)");
    typeName(0, QStringLiteral("   "));
    typeName(1, QStringLiteral("<b>%s</b> & 😀 città"));
    EXPECT_EQ(text(1, 0), QStringLiteral("<b>%s</b> & 😀 città"));
    ui::press(*dialog, 1);
    EXPECT_FALSE(dialog->isVisible());
    gis::CDBTable* table = library->GetTable(0);
    EXPECT_EQ(library->GetFieldName(library->GetField(table, 0)), orv::String("   "));
    EXPECT_EQ(
        library->GetFieldName(library->GetField(table, 1)), orv::String("<b>%s</b> & 😀 città"));
}

TEST_F(DlgTableEditTest, MoveButtonsAreForOneWholeRowThatCanMove)
{
    open();
    click(1, 0);
    EXPECT_FALSE(up().isEnabled()) << "one cell is no row";
    EXPECT_FALSE(down().isEnabled());
    choose(0);
    EXPECT_FALSE(up().isEnabled());
    EXPECT_TRUE(down().isEnabled());
    choose(1);
    EXPECT_TRUE(up().isEnabled());
    EXPECT_TRUE(down().isEnabled());
    choose(3);
    EXPECT_TRUE(up().isEnabled());
    EXPECT_FALSE(down().isEnabled());
    choose(4);
    EXPECT_FALSE(up().isEnabled()) << "the blank row";
    EXPECT_FALSE(down().isEnabled());
}

TEST_F(DlgTableEditTest, AMovedFieldTakesItsPageAndSelectionAlong)
{
    open();
    choose(1);
    QWidget* const before = page("CSubDlgFieldInt");
    ASSERT_NE(before, nullptr);
    ui::type(*before, 2013, QStringLiteral("2"));
    ui::press(*dialog, 2089);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Corsie Note"));
    EXPECT_EQ(page("CSubDlgFieldInt"), before);
    EXPECT_EQ(grid().selectionModel()->selectedRows().first().row(), 2);
    ui::press(*dialog, 2088);
    ui::press(*dialog, 2088);
    EXPECT_EQ(names(), QStringLiteral("Corsie Nome Area Note"));
    EXPECT_FALSE(up().isEnabled());
    ui::press(*dialog, 1);

    orv::CPolyValue constraints[gis::ConstraintCount];
    gis::CDBTable* table = library->GetTable(0);
    library->GetFieldConstraints(library->GetField(table, 0), constraints);
    EXPECT_EQ(constraints[1], orv::CPolyValue(2)) << "what was typed belongs to the moved field";
}

TEST_F(DlgTableEditTest, TheDeleteKeyDeletesAWholeRowOnly)
{
    open();
    click(1, 0);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note"));
    choose(1);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Note"));
    EXPECT_FALSE(hasAnyPage());
    EXPECT_FALSE(required().isVisible());
    EXPECT_TRUE(grid().selectionModel()->selectedIndexes().isEmpty());
    EXPECT_FALSE(down().isEnabled());
    // The field that took its place has a page of its own.
    click(1, 0);
    EXPECT_NE(page("CSubDlgFieldDouble"), nullptr);
    choose(3);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Note")) << "the blank row stays";
}

TEST_F(DlgTableEditTest, WhatIsWrongOnAPageIsToldWhenItIsLeft)
{
    open();
    click(1, 0);
    ui::type(*page("CSubDlgFieldInt"), 2012, QStringLiteral("abc"));
    ui::CModalDriver driver;
    driver.box(kit::text(texts::DefaultInvalid), kit::Answer::Ok);
    click(0, 0);
    EXPECT_EQ(driver.stepsTaken(), 1);
}

TEST_F(DlgTableEditTest, OkAppliesEverythingAndBringsTheRowsUpToDate)
{
    open();
    typeName(0, QStringLiteral("Denominazione"));
    click(1, 0);
    required().setChecked(true);
    ui::type(*page("CSubDlgFieldInt"), 2012, QStringLiteral("4"));
    library->clearCalls();
    ui::press(*dialog, 1);

    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(library->callsOf("RecalcAllPredefValues"),
        std::vector<std::string> { "RecalcAllPredefValues(P, P#0)" });
    EXPECT_EQ(library->callsOf("InitializeWithDefVal"),
        std::vector<std::string> { "InitializeWithDefVal(Strade, Strade[1])" });
    gis::CDBTable* table = library->GetTable(0);
    EXPECT_EQ(library->GetFieldName(library->GetField(table, 0)), orv::String("Denominazione"));
    EXPECT_TRUE(library->IsFieldRequested(library->GetField(table, 1)));
    orv::CPolyValue value;
    library->GetRowValue(library->GetRow(table, 1), 1, value);
    EXPECT_EQ(value, orv::CPolyValue(4)) << "the empty cell of the row without an entity";
    library->GetRowValue(library->GetRow(table, 0), 1, value);
    EXPECT_EQ(value, orv::CPolyValue(2));
}

TEST_F(DlgTableEditTest, OkTakesWhatIsStillBeingTyped)
{
    open();
    click(3, 0);
    QTest::keyClick(&grid(), Qt::Key_F2);
    auto* edit = editor<QLineEdit>();
    ASSERT_NE(edit, nullptr);
    edit->selectAll();
    ui::typeInto(*edit, QStringLiteral("Annotazioni"));
    ui::press(*dialog, 1);
    EXPECT_EQ(library->GetFieldName(library->GetField(library->GetTable(0), 3)),
        orv::String("Annotazioni"));
}

TEST_F(DlgTableEditTest, CancelLeavesTheTableExactlyAsItWas)
{
    open();
    const std::string before = table();
    typeName(0, QStringLiteral("X"));
    chooseFrom(1, 2, QStringLiteral("Testo"));
    choose(3);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    click(0, 0);
    ui::type(*page("CSubDlgFieldString"), 2021, QStringLiteral("predefinito"));
    library->clearCalls();
    ui::press(*dialog, 2);

    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());
    EXPECT_EQ(table(), before);
}

TEST_F(DlgTableEditTest, FiveHundredFieldsAreOneGridAndOnePage)
{
    std::string notation = "table T (";
    for (int i = 0; i < 500; ++i)
        notation += (i ? ", f" : "f") + std::to_string(i) + (i % 2 ? " text" : " integer");
    open((notation + ")").c_str());
    ASSERT_EQ(grid().model()->rowCount(), 501);
    click(499, 0);
    EXPECT_NE(page("CSubDlgFieldString"), nullptr);
    click(498, 0);
    EXPECT_NE(page("CSubDlgFieldInt"), nullptr);
    EXPECT_EQ(page("CSubDlgFieldString"), nullptr);
}

} // namespace
