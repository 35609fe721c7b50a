// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/DlgTableList.h"

#include "kit/texts/QtText.h"
#include "tematica/Dialogs.h"
#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QTest>

using support::CRecordingLibrary;

namespace {

constexpr const char* Town = "table Zeta (a text); table alfa (a text); table Beta (n integer); "
                             "theme P: points 2d on Beta";
const QString NameUsed
    = QStringLiteral("Esiste già una tabella con questo nome!\nInserire un nome diverso!");
const QString NameMissing = QStringLiteral("Il nome della tabella non è stato inserito ");
const QString DeleteQuestion
    = QStringLiteral("Sei sicuro di voler cancellare la tabella selezionata?");

class DlgTableListTest : public testing::Test {
protected:
    void open(const char* notation = Town)
    {
        library = std::make_unique<CRecordingLibrary>(std::string_view(notation));
        dialog = std::make_unique<CDlgTableList>();
        dialog->SetLibGis(library.get());
        dialog->show();
        dialog->activateWindow();
        QApplication::processEvents();
        library->clearCalls();
    }
    QListView& list() { return ui::at<QListView>(*dialog, 2000); }
    QString names()
    {
        QStringList all;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            all << list().model()->index(row, 0).data().toString();
        return all.join(QLatin1Char(' '));
    }
    void select(int row)
    {
        QTest::mouseClick(list().viewport(), Qt::LeftButton, {},
            list().visualRect(list().model()->index(row, 0)).center());
        ASSERT_TRUE(list().selectionModel()->isSelected(list().model()->index(row, 0)));
    }
    void run(int command) { dialog->command(command)->trigger(); }
    bool isEnabled(int command) { return dialog->command(command)->isEnabled(); }
    /// What is entered in the list itself for the selected row.
    void rename(const QString& name)
    {
        QTest::keyClick(&list(), Qt::Key_F2);
        QLineEdit* edit = nullptr;
        for (auto* found : list().viewport()->findChildren<QLineEdit*>())
            if (found->isVisible())
                edit = found;
        ASSERT_NE(edit, nullptr);
        edit->setText(name);
        QTest::keyClick(edit, Qt::Key_Return);
        QApplication::processEvents();
        QApplication::processEvents();
    }

    std::unique_ptr<CRecordingLibrary> library;
    std::unique_ptr<CDlgTableList> dialog;
};

TEST_F(DlgTableListTest, AnEmptyLibraryOffersANewTableOnly)
{
    open("");
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Gestione tabelle"));
    EXPECT_EQ(names(), QString());
    EXPECT_TRUE(isEnabled(CDlgTableList::New));
    for (const int command : { 32772, 32773, 32780, 32785 })
        EXPECT_FALSE(isEnabled(command));
    QTest::keyClick(&list(), Qt::Key_Return);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTest::keyClick(&list(), Qt::Key_F2);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableListTest, TablesAscendWithoutRegardToCase)
{
    open();
    EXPECT_EQ(names(), QStringLiteral("alfa Beta Zeta"));
}

TEST_F(DlgTableListTest, ButtonsHaveTheirTips)
{
    open();
    const QStringList tips { QStringLiteral("Nuovo"), QStringLiteral("Elimina"),
        QStringLiteral("Rinomina"), QStringLiteral("Proprietà"), QStringLiteral("Visualizza") };
    int position = 0;
    for (const int command : { 32771, 32772, 32773, 32780, 32785 }) {
        orv::String text;
        EXPECT_TRUE(dialog->GetToolTipText(position, command, text));
        EXPECT_EQ(kit::toQt(text), tips[position]);
        EXPECT_EQ(dialog->command(command)->toolTip(), tips[position++]);
    }
}

TEST_F(DlgTableListTest, SelectingATableEnablesItsCommands)
{
    open();
    select(0);
    for (const int command : { 32771, 32772, 32773, 32780, 32785 })
        EXPECT_TRUE(isEnabled(command));
}

TEST_F(DlgTableListTest, ANewTableIsNamedFirst)
{
    open();
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        EXPECT_EQ(window.windowTitle(), QStringLiteral("Nome tabella"));
        ui::press(window, 1); // refused: no name
        ui::type(window, 2001, QStringLiteral("BETA"));
        ui::press(window, 1); // refused: used
        EXPECT_EQ(ui::at<QLineEdit>(window, 2001).text(), QStringLiteral("BETA"));
        ui::type(window, 2001, QStringLiteral("Gamma <b>%s</b>"));
        ui::press(window, 1);
    });
    driver.box(NameMissing, kit::Answer::Ok);
    driver.box(NameUsed, kit::Answer::Ok);
    run(CDlgTableList::New);

    EXPECT_EQ(names(), QStringLiteral("alfa Beta Gamma <b>%s</b> Zeta"));
    EXPECT_EQ(library->changes(),
        (std::vector<std::string> { "CreateTable('Gamma <b>%s</b>')", "SetModifiedFlag(yes)" }));
    EXPECT_FALSE(isEnabled(CDlgTableList::Rename)) << "no row is selected afterwards";
}

TEST_F(DlgTableListTest, ACancelledNameChangesNothing)
{
    open();
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        ui::type(window, 2001, QStringLiteral("Gamma"));
        ui::press(window, 2);
    });
    run(CDlgTableList::New);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableListTest, DeletingAsksFirstAndRefusesATableInUseAfterwards)
{
    open();
    select(1);
    {
        ui::CModalDriver driver;
        driver.box(DeleteQuestion, kit::Answer::No, [](QMessageBox& box) {
            EXPECT_EQ(box.icon(), QMessageBox::Information);
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
        });
        run(CDlgTableList::Delete);
    }
    {
        ui::CModalDriver driver;
        driver.box(DeleteQuestion, kit::Answer::Yes);
        driver.box(QStringLiteral("La tabella selezionata è attualemente associata ad almeno un "
                                  "Tema e non può essere cancellata"),
            kit::Answer::Ok);
        QTest::keyClick(&list(), Qt::Key_Delete);
    }
    EXPECT_TRUE(library->changes().empty());
    select(0);
    ui::CModalDriver driver;
    driver.box(DeleteQuestion, kit::Answer::Yes);
    run(CDlgTableList::Delete);
    EXPECT_EQ(names(), QStringLiteral("Beta Zeta"));
    EXPECT_EQ(library->changes(),
        (std::vector<std::string> { "DeleteTable(alfa)", "SetModifiedFlag(yes)" }));
}

TEST_F(DlgTableListTest, ATableMayChangeItsLettersCaseOrBeCalledBlanks)
{
    open();
    select(0);
    {
        ui::CModalDriver driver;
        driver.dialog("CDlgInputNameTable", [](QDialog& window) {
            EXPECT_EQ(ui::at<QLineEdit>(window, 2001).text(), QStringLiteral("alfa"));
            ui::type(window, 2001, QStringLiteral("ALFA"));
            ui::press(window, 1);
        });
        run(CDlgTableList::Rename);
    }
    EXPECT_EQ(names(), QStringLiteral("ALFA Beta Zeta"));
    select(0);
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        ui::type(window, 2001, QStringLiteral("   "));
        ui::press(window, 1);
    });
    run(CDlgTableList::Rename);
    EXPECT_EQ(names(), QStringLiteral("    Beta Zeta"));
}

TEST_F(DlgTableListTest, TheSameNameAgainIsStillARename)
{
    open();
    select(0);
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) { ui::press(window, 1); });
    run(CDlgTableList::Rename);
    EXPECT_EQ(library->changes(),
        (std::vector<std::string> { "SetTableName(alfa, 'alfa')", "SetModifiedFlag(yes)" }));
}

TEST_F(DlgTableListTest, ATableIsRenamedInPlace)
{
    open();
    select(2);
    rename(QStringLiteral("Acqua città 😀"));
    EXPECT_EQ(names(), QStringLiteral("Acqua città 😀 alfa Beta"));
    EXPECT_TRUE(library->wasCalled("SetModifiedFlag(yes)"));
}

TEST_F(DlgTableListTest, AWrongNameInPlaceIsRefusedAndTheOldOneStays)
{
    open();
    select(2);
    {
        ui::CModalDriver driver;
        driver.box(NameUsed, kit::Answer::Ok);
        rename(QStringLiteral("ALFA"));
    }
    {
        ui::CModalDriver driver;
        driver.box(NameMissing, kit::Answer::Ok);
        rename(QString());
    }
    EXPECT_EQ(names(), QStringLiteral("alfa Beta Zeta"));
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableListTest, EnterAndADoubleClickOpenTheStructure)
{
    open();
    select(0);
    {
        ui::CModalDriver driver;
        driver.dialog("CDlgTableEdit", [](QDialog& structure) { ui::press(structure, 2); });
        QTest::keyClick(&list(), Qt::Key_Return);
    }
    EXPECT_TRUE(dialog->isVisible());
    {
        ui::CModalDriver driver;
        driver.dialog("CDlgTableEdit", [](QDialog& structure) { ui::press(structure, 2); });
        QTest::mouseDClick(list().viewport(), Qt::LeftButton, {},
            list().visualRect(list().model()->index(0, 0)).center());
        ASSERT_TRUE(ui::waitUntil([&] { return driver.stepsTaken() == 1; }));
    }
    ui::CModalDriver driver;
    driver.dialog("CDlgShowTable", [](QDialog& grid) { ui::press(grid, 2); });
    run(CDlgTableList::Show);
}

TEST_F(DlgTableListTest, ClosingIsCancelling)
{
    open();
    QTest::keyClick(dialog.get(), Qt::Key_Escape);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
}

/// A name being typed when a command is chosen: the click leaves the focus in the edit.
class CommandDuringAnEditTest : public DlgTableListTest {
protected:
    void typeInPlace(const QString& name)
    {
        select(0);
        QTest::keyClick(&list(), Qt::Key_F2);
        QLineEdit* edit = nullptr;
        for (auto* found : list().viewport()->findChildren<QLineEdit*>())
            if (found->isVisible())
                edit = found;
        ASSERT_NE(edit, nullptr);
        edit->setText(name);
    }
};

TEST_F(CommandDuringAnEditTest, DeletesTheTableThatWasSelectedWhereverItsNewNameStands)
{
    open("table alfa (a text); table Beta (n integer); table Zeta (a text)");
    typeInPlace(QStringLiteral("zz"));
    ui::CModalDriver driver;
    // The edit must not be applied under the question: the rows would be others afterwards.
    driver.box(DeleteQuestion, kit::Answer::Yes, [](QMessageBox&) { QTest::qWait(50); });
    ui::press(*dialog, CDlgTableList::Delete);
    QApplication::processEvents();

    EXPECT_EQ(names(), QStringLiteral("Beta Zeta"));
}

TEST_F(CommandDuringAnEditTest, RenamesTheTableThatWasSelected)
{
    open("table alfa (a text); table Beta (n integer); table Zeta (a text)");
    typeInPlace(QStringLiteral("zz"));
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        QTest::qWait(50);
        EXPECT_EQ(ui::at<QLineEdit>(window, 2001).text(), QStringLiteral("zz"));
        ui::type(window, 2001, QStringLiteral("Omega"));
        ui::press(window, 1);
    });
    ui::press(*dialog, CDlgTableList::Rename);
    QApplication::processEvents();

    EXPECT_EQ(names(), QStringLiteral("Beta Omega Zeta"));
}

TEST_F(CommandDuringAnEditTest, ARefusedNameIsToldBeforeTheCommandAndTheOldOneStays)
{
    open("table alfa (a text); table Beta (n integer)");
    typeInPlace(QStringLiteral("beta"));
    ui::CModalDriver driver;
    driver.box(NameUsed, kit::Answer::Ok);
    driver.dialog("CDlgShowTable", [](QDialog& grid) { ui::press(grid, 2); });
    ui::press(*dialog, CDlgTableList::Show);
    EXPECT_EQ(names(), QStringLiteral("alfa Beta"));
}

TEST_F(DlgTableListTest, ANameInPlaceIsTheLibrarysBeforeTheNextEvent)
{
    open();
    select(0);
    QTest::keyClick(&list(), Qt::Key_F2);
    QAbstractItemDelegate* delegate = list().itemDelegate();
    QLineEdit edit;
    edit.setText(QStringLiteral("Acqua"));
    delegate->setModelData(&edit, list().model(), list().model()->index(0, 0));
    EXPECT_EQ(library->callsOf("SetTableName"),
        std::vector<std::string> { "SetTableName(alfa, 'Acqua')" });
}

TEST_F(DlgTableListTest, EscapeInAnEditLeavesTheNameAndTheWindow)
{
    open();
    select(0);
    QTest::keyClick(&list(), Qt::Key_F2);
    for (auto* edit : list().viewport()->findChildren<QLineEdit*>())
        if (edit->isVisible()) {
            edit->setText(QStringLiteral("altro"));
            QTest::keyClick(edit, Qt::Key_Escape);
            break;
        }
    QApplication::processEvents();
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());
    EXPECT_TRUE(isEnabled(CDlgTableList::Show)) << "the row is still selected";
}

TEST_F(DlgTableListTest, AnythingIsANameAndIsShownAsItIs)
{
    const QString odd[]
        = { QStringLiteral("%s %1 %n"), QStringLiteral("<b>x</b>"), QStringLiteral("A & B"),
              QString::fromUtf8("\xF0\x9F\x98\x80 città"), QStringLiteral("31/02/2020"),
              QStringLiteral("99999999999"), QString(10000, QLatin1Char('x')) };
    for (const QString& name : odd) {
        SCOPED_TRACE(name.left(20).toStdString());
        open("table alfa (a text)");
        ui::CModalDriver driver;
        driver.dialog("CDlgInputNameTable", [&](QDialog& window) {
            ui::at<QLineEdit>(window, 2001).setText(name);
            ui::press(window, 1);
        });
        run(CDlgTableList::New);
        const int row = list().model()->index(0, 0).data() == QStringLiteral("alfa") ? 1 : 0;
        EXPECT_EQ(list().model()->index(row, 0).data().toString(), name);
        EXPECT_NE(library->FindTable(kit::fromQt(name)), nullptr);
        select(row);
        rename(name + QLatin1Char('2'));
        EXPECT_NE(library->FindTable(kit::fromQt(name + QLatin1Char('2'))), nullptr);
    }
}

TEST_F(DlgTableListTest, TheFunctionAnswersFalseAlsoAfterChanges)
{
    CRecordingLibrary town(std::string_view { Town });
    ui::CModalDriver driver;
    driver.dialog("CDlgTableList", [](QDialog& window) {
        ui::press(window, CDlgTableList::New);
        window.close();
    });
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        ui::type(window, 2001, QStringLiteral("Nuova"));
        ui::press(window, 1);
    });
    EXPECT_FALSE(FDlgTableListGIS(&town));
    EXPECT_NE(town.FindTable("Nuova"), nullptr);
}

TEST_F(DlgTableListTest, TwoThousandTablesAreListedAndSelected)
{
    std::string notation;
    for (int i = 0; i < 2000; ++i)
        notation += "table t" + std::to_string(i) + " (a text);";
    open(notation.c_str());
    ASSERT_EQ(list().model()->rowCount(), 2000);
    list().setCurrentIndex(list().model()->index(1999, 0));
    EXPECT_TRUE(isEnabled(CDlgTableList::Show));
    EXPECT_EQ(list().model()->index(1, 0).data().toString(), QStringLiteral("t1"));
    EXPECT_TRUE(
        list().viewport()->rect().intersects(list().visualRect(list().model()->index(1999, 0))))
        << "the row is scrolled to";
}

} // namespace
