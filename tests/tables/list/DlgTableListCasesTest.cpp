// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/list/ListTesting.h"

using listtest::NameUsed;

namespace {

using DlgTableListCasesTest = listtest::TableList;

TEST_F(DlgTableListCasesTest, ASlowSecondClickOnTheSelectedNameEditsIt)
{
    open();
    select(1);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    select(1);
    EXPECT_TRUE(ui::waitUntil([&] { return editor() != nullptr; }));
}

TEST_F(DlgTableListCasesTest, ADoubleClickOnTheSelectedNameOpensTheStructureAndEditsNothing)
{
    open();
    select(1);
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    ui::CModalDriver driver;
    bool hadEditor = false;
    driver.dialog("CDlgTableEdit", [&](QDialog& structure) {
        QTest::qWait(QApplication::doubleClickInterval() + 100); // when the slow click would edit
        hadEditor = editor() != nullptr;
        ui::press(structure, 2);
    });
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, centre(1));
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, centre(1));
    ASSERT_TRUE(ui::waitUntil([&] { return driver.stepsTaken() == 1; }));
    EXPECT_FALSE(hadEditor);
    EXPECT_EQ(editor(), nullptr);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableListCasesTest, TabEndsTheEditAndBeginsNoOther)
{
    open();
    QLineEdit* name = edit(0);
    ASSERT_NE(name, nullptr);
    name->setText(QStringLiteral("gamma"));
    QTest::keyClick(name, Qt::Key_Tab);
    settle();
    EXPECT_EQ(editor(), nullptr);
    EXPECT_EQ(names(),
        (QStringList { QStringLiteral("Beta"), QStringLiteral("gamma"), QStringLiteral("Zeta") }));

    library->clearCalls();
    name = edit(0);
    ASSERT_NE(name, nullptr);
    name->setText(QStringLiteral("ZETA"));
    ui::CModalDriver driver;
    driver.box(NameUsed, kit::Answer::Ok);
    QTest::keyClick(name, Qt::Key_Backtab);
    ASSERT_TRUE(ui::waitUntil([&] { return driver.stepsTaken() == 1; }));
    EXPECT_TRUE(library->changes().empty()) << "no other table was renamed either";
}

TEST_F(DlgTableListCasesTest, ClosingTheWindowTakesARightNameAndTellsAWrongOne)
{
    open();
    QLineEdit* name = edit(0);
    ASSERT_NE(name, nullptr);
    name->setText(QStringLiteral("Zeta"));
    {
        ui::CModalDriver driver;
        driver.box(NameUsed, kit::Answer::Ok);
        dialog->close();
        ASSERT_EQ(driver.stepsTaken(), 1);
    }
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());

    settle();
    name = edit(0);
    ASSERT_NE(name, nullptr);
    name->setText(QStringLiteral("Omega"));
    dialog->close();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_NE(library->FindTable("Omega"), nullptr);
}

TEST_F(DlgTableListCasesTest, TheSameNameInPlaceIsStillARenameAndOnlyItsCaseMayChange)
{
    open();
    QTest::keyClick(edit(0), Qt::Key_Return);
    settle();
    EXPECT_FALSE(library->changes().empty());
    EXPECT_TRUE(library->GetModifiedFlag());

    QLineEdit* name = edit(0);
    name->setText(QStringLiteral("ALFA"));
    QTest::keyClick(name, Qt::Key_Return);
    settle();
    EXPECT_EQ(names().first(), QStringLiteral("ALFA"));
}

TEST_F(DlgTableListCasesTest, TheRenameDialogRefusesAUsedNameAndKeepsItAsTyped)
{
    open();
    select(0);
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& rename) {
        ui::type(rename, 2001, QStringLiteral("BETA"));
        ui::press(rename, 1);
        EXPECT_TRUE(rename.isVisible());
        EXPECT_EQ(ui::at<QLineEdit>(rename, 2001).text(), QStringLiteral("BETA"));
        ui::press(rename, 2);
    });
    driver.box(NameUsed, kit::Answer::Ok, [](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
    });
    dialog->command(CDlgTableList::Rename)->trigger();
    EXPECT_EQ(driver.stepsTaken(), 2);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableListCasesTest, ALongNameComesBackWholeFromTheRenameDialog)
{
    const std::string name(40'000, 'x');
    open();
    {
        const support::RecordingPause pause(*library);
        library->SetTableName(library->GetTable(0), orv::String(std::string_view(name)));
    }
    dialog->SetLibGis(library.get());
    select(2);
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& rename) { ui::press(rename, 1); });
    dialog->command(CDlgTableList::Rename)->trigger();
    EXPECT_EQ(library->GetTableName(library->GetTable(0)).Length(), 40'000);
}

TEST_F(DlgTableListCasesTest, NamesThatDifferByCaseOnlyStayInTheLibrarysOrder)
{
    open("");
    {
        const support::RecordingPause pause(*library);
        for (const char* name : { "beta", "ALFA", "alfa", "Alfa" })
            library->CreateTable(name);
    }
    dialog->SetLibGis(library.get());
    EXPECT_EQ(names(),
        (QStringList { QStringLiteral("ALFA"), QStringLiteral("alfa"), QStringLiteral("Alfa"),
            QStringLiteral("beta") }));
}

TEST_F(DlgTableListCasesTest, AfterEachChangeNothingIsSelected)
{
    open();
    const auto isNothingSelected = [&] {
        return list().selectionModel()->selectedIndexes().isEmpty()
            && !dialog->command(CDlgTableList::Delete)->isEnabled();
    };
    QLineEdit* name = edit(0);
    name->setText(QStringLiteral("nuova"));
    QTest::keyClick(name, Qt::Key_Return);
    settle();
    EXPECT_TRUE(isNothingSelected()) << "in place";
    select(0);
    {
        ui::CModalDriver driver;
        driver.dialog("CDlgInputNameTable", [](QDialog& rename) { ui::press(rename, 1); });
        dialog->command(CDlgTableList::Rename)->trigger();
    }
    EXPECT_TRUE(isNothingSelected()) << "renamed";
    select(0);
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Sei sicuro di voler cancellare la tabella selezionata?"),
            kit::Answer::Yes);
        dialog->command(CDlgTableList::Delete)->trigger();
    }
    EXPECT_TRUE(isNothingSelected()) << "deleted";
}

TEST_F(DlgTableListCasesTest, DeleteInAnEditDeletesALetter)
{
    open();
    QLineEdit* name = edit(0);
    ASSERT_NE(name, nullptr);
    QTest::keyClick(name, Qt::Key_Home);
    QTest::keyClick(name, Qt::Key_Delete);
    EXPECT_EQ(name->text(), QStringLiteral("lfa"));
    EXPECT_EQ(library->GetNumTables(), 3);
    QTest::keyClick(name, Qt::Key_Escape);
}

TEST_F(DlgTableListCasesTest, EveryRowHasTheTablesPicture)
{
    open();
    for (int row = 0; row < list().model()->rowCount(); ++row)
        EXPECT_FALSE(
            list().model()->index(row, 0).data(Qt::DecorationRole).value<QIcon>().isNull());
}

TEST(DlgTableListWithoutALibraryTest, OffersNothing)
{
    CDlgTableList dialog;
    dialog.show();
    for (const int command : { 32771, 32772, 32773, 32780, 32785 })
        EXPECT_FALSE(dialog.command(command)->isEnabled());
}

} // namespace
