// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/structure/EditorTesting.h"

#include "embedded/model/Library.h"
#include "kit/Progress.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextLoader.h"

#include <QProgressDialog>
#include <QSignalSpy>
#include <QTimer>

#include <string>
#include <thread>

namespace {

class DlgTableEditCasesTest : public structuretest::Editor {
protected:
    gis::CField* field(int index) { return library->GetField(library->GetTable(0), index); }
    void startEdit(int row, int column)
    {
        if (grid().currentIndex() != cell(row, column))
            click(row, column);
        QTest::keyClick(&grid(), Qt::Key_F2);
    }
    void writeInto(int row, const QString& name)
    {
        startEdit(row, 0);
        auto* edit = editor<QLineEdit>();
        ASSERT_NE(edit, nullptr);
        edit->selectAll();
        edit->insert(name);
    }
};

constexpr const char* NameUsed = "Esiste già un campo con questo nome!\nInserire un nome diverso!";

TEST_F(DlgTableEditCasesTest, AUsedNameIsRefusedAlsoWhenOneClicksElsewhere)
{
    open();
    writeInto(3, QStringLiteral("NOME"));
    ui::CModalDriver driver;
    driver.box(QString::fromUtf8(NameUsed), kit::Answer::Ok);
    click(1, 1);
    QApplication::processEvents();
    EXPECT_EQ(driver.stepsTaken(), 1) << "told once";
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note"));
}

TEST_F(DlgTableEditCasesTest, ARefusedNameKeepsTheFocusOnItsCell)
{
    for (const bool isClick : { true, false }) {
        open();
        writeInto(3, QStringLiteral("NOME"));
        ui::CModalDriver driver;
        driver.box(QString::fromUtf8(NameUsed), kit::Answer::Ok);
        if (isClick)
            click(1, 1);
        else
            QTest::keyClick(editor<QLineEdit>(), Qt::Key_Tab);
        QApplication::processEvents();
        EXPECT_EQ(driver.stepsTaken(), 1) << "told once";
        EXPECT_EQ(grid().currentIndex(), cell(3, 0)) << (isClick ? "click" : "Tab");
    }
}

TEST_F(DlgTableEditCasesTest, TheKeyboardDoesWhatTheMouseDoes)
{
    open();
    click(1, 0);
    QTest::keyClick(&grid(), Qt::Key_Space);
    EXPECT_EQ(editor<QLineEdit>(), nullptr) << "a click edits nothing";
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note"));

    QTest::keyClick(&grid(), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_NE(editor<QLineEdit>(), nullptr);
    QTest::keyClick(editor<QLineEdit>(), Qt::Key_Escape);
    QApplication::processEvents();

    EXPECT_FALSE(down().isEnabled());
    QTest::keyClick(&grid(), Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_TRUE(up().isEnabled());
    ui::press(*dialog, 2089);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Corsie Note"));
    QTest::keyClick(&grid(), Qt::Key_Space, Qt::ShiftModifier);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Note"));

    grid().setCurrentIndex(cell(3, 0)); // the blank row
    QTest::keyClick(&grid(), Qt::Key_Space);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Note")) << "no field of blanks";
}

TEST_F(DlgTableEditCasesTest, CancellingWithAPageInUseTouchesNothing)
{
    open();
    click(1, 0);
    QWidget* integers = page("CSubDlgFieldInt");
    ASSERT_NE(integers, nullptr);
    auto& minimum = ui::at<QLineEdit>(*integers, 2013);
    minimum.setFocus();
    minimum.setText(QStringLiteral("abc"));
    library->clearCalls();
    QTest::keyClick(&minimum, Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableEditCasesTest, AUsedNameIsRefusedWhenOkEndsTheEdit)
{
    open();
    writeInto(3, QStringLiteral("nome"));
    ui::CModalDriver driver;
    driver.box(QString::fromUtf8(NameUsed), kit::Answer::Ok);
    ui::press(*dialog, 1);
    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_EQ(library->GetFieldName(field(3)), orv::String("Note"));
}

TEST_F(DlgTableEditCasesTest, ClosingTheWindowForgetsWhatIsBeingTyped)
{
    open();
    writeInto(3, QStringLiteral("nome"));
    const ui::CModalDriver driver;
    library->clearCalls();
    dialog->close();
    QApplication::processEvents();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_EQ(driver.stepsTaken(), 0);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableEditCasesTest, ANameThatADeletedFieldHadIsFree)
{
    open();
    choose(1);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    typeName(2, QStringLiteral("Corsie"));
    EXPECT_EQ(names(), QStringLiteral("Nome Area Corsie"));
    ui::press(*dialog, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(library->GetFieldFormat(field(2)), gis::FieldFormat::Text);
    EXPECT_NE(support::printRows(*library->GetTable(0)).find("'x'"), std::string::npos)
        << "the renamed field keeps its cells";
}

TEST_F(DlgTableEditCasesTest, SeveralNamesMayBeEmptyUntilOk)
{
    open();
    typeName(0, QString());
    typeName(1, QString());
    EXPECT_EQ(names(), QStringLiteral("  Area Note"));
    ui::CModalDriver driver;
    driver.box(
        QStringLiteral("Alcuni campi non hanno il nome!"), kit::Answer::Ok, [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
        });
    ui::press(*dialog, 1);
    EXPECT_TRUE(dialog->isVisible());
}

TEST_F(DlgTableEditCasesTest, NamesOfAnyLengthComeBackWhole)
{
    open();
    const QString name(10'000, QLatin1Char('n'));
    typeName(0, name);
    ui::press(*dialog, 1);
    EXPECT_EQ(kit::toQt(library->GetFieldName(field(0))), name);
}

TEST_F(DlgTableEditCasesTest, AToolTipIsTheNameAndNoMarkup)
{
    open("table T (\"<b>a</b>\" text)");
    EXPECT_EQ(cell(0, 0).data(Qt::ToolTipRole).toString(),
        QStringLiteral("<span>&lt;b&gt;a&lt;/b&gt;</span>"));
}

TEST_F(DlgTableEditCasesTest, SourcesAndFormatsAreOfferedInTheirOrder)
{
    open();
    startEdit(0, 1);
    ASSERT_NE(editor<QComboBox>(), nullptr);
    EXPECT_EQ(editor<QComboBox>()->count(), 15);
    EXPECT_EQ(editor<QComboBox>()->currentText(), QStringLiteral("Da Utente"));
    QTest::keyClick(editor<QComboBox>(), Qt::Key_Escape);
    QApplication::processEvents();
    EXPECT_TRUE(dialog->isVisible());
    startEdit(1, 2);
    ASSERT_NE(editor<QComboBox>(), nullptr);
    EXPECT_EQ(editor<QComboBox>()->count(), 6);
    EXPECT_EQ(editor<QComboBox>()->itemText(1), QStringLiteral("Numerico"));
    EXPECT_EQ(editor<QComboBox>()->currentText(), QStringLiteral("Numerico"));
}

TEST_F(DlgTableEditCasesTest, AComputedFormatDoesNotOpen)
{
    open();
    startEdit(2, 2);
    EXPECT_EQ(editor<QComboBox>(), nullptr);
}

TEST_F(DlgTableEditCasesTest, EverySourceGivesItsFormat)
{
    open("table T (a date)");
    for (int type = 1; type < 15; ++type) {
        const bool isText = type <= 2 || type >= 9;
        grid().model()->setData(
            cell(0, 1), kit::text(texts::FieldTypeFromUser + type), Qt::EditRole);
        EXPECT_EQ(text(0, 2), isText ? QStringLiteral("Testo") : QStringLiteral("Decimale"))
            << type;
        EXPECT_FALSE(cell(0, 2).flags() & Qt::ItemIsEditable);
        grid().model()->setData(cell(0, 1), QStringLiteral("Da Utente"), Qt::EditRole);
        EXPECT_TRUE(cell(0, 2).flags() & Qt::ItemIsEditable);
        EXPECT_FALSE(cell(0, 2).data(Qt::BackgroundRole).isValid());
        grid().model()->setData(cell(0, 2), QStringLiteral("Data"), Qt::EditRole);
    }
}

TEST_F(DlgTableEditCasesTest, AnEmptySourceOrFormatIsRefusedWithoutAMessage)
{
    open();
    const ui::CModalDriver driver;
    grid().model()->setData(cell(1, 1), QString(), Qt::EditRole);
    grid().model()->setData(cell(1, 2), QString(), Qt::EditRole);
    EXPECT_EQ(text(1, 1), QStringLiteral("Da Utente"));
    EXPECT_EQ(text(1, 2), QStringLiteral("Numerico"));
    EXPECT_EQ(driver.stepsTaken(), 0);
}

TEST_F(DlgTableEditCasesTest, ComputedFieldsHaveTheirFormatFromTheBeginningAndOnlyForOk)
{
    open("table T (Superficie text from area, Punto integer from name, Nota text)");
    EXPECT_EQ(text(0, 2), QStringLiteral("Decimale"));
    EXPECT_EQ(text(1, 2), QStringLiteral("Testo"));
    ui::press(*dialog, 2);
    EXPECT_EQ(library->GetFieldFormat(field(0)), gis::FieldFormat::Text);
    EXPECT_EQ(library->GetFieldFormat(field(1)), gis::FieldFormat::Integer);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableEditCasesTest, AFormatThereAndBackBeginsWithoutLimits)
{
    open();
    chooseFrom(1, 2, QStringLiteral("Testo"));
    chooseFrom(1, 2, QStringLiteral("Numerico"));
    ASSERT_NE(page("CSubDlgFieldInt"), nullptr);
    EXPECT_EQ(ui::at<QLineEdit>(*page("CSubDlgFieldInt"), 2013).text(), QString());
    EXPECT_EQ(ui::at<QLineEdit>(*page("CSubDlgFieldInt"), 2014).text(), QString());
}

TEST_F(DlgTableEditCasesTest, WhatAPageHeldIsThereAgainWhenOneComesBack)
{
    open();
    click(3, 0);
    ui::at<QLineEdit>(*page("CSubDlgFieldString"), 2021).setText(QStringLiteral("<b>%s</b> & 😀"));
    required().setChecked(true);
    click(1, 0);
    EXPECT_FALSE(required().isChecked());
    click(3, 1);
    EXPECT_EQ(ui::at<QLineEdit>(*page("CSubDlgFieldString"), 2021).text(),
        QStringLiteral("<b>%s</b> & 😀"));
    EXPECT_TRUE(required().isChecked());
}

TEST_F(DlgTableEditCasesTest, TheGridStaysWhereItIsWhilePagesComeAndGo)
{
    open("table T (a text, b boolean, c integer, d list ('x'), e date)");
    click(0, 0);
    const QRect place = grid().geometry();
    for (int row = 1; row < 6; ++row) {
        click(row, 0);
        QApplication::processEvents();
        EXPECT_EQ(grid().geometry(), place) << row;
    }
}

TEST_F(DlgTableEditCasesTest, ADeletedRowsPageStillSaysWhatIsWrong)
{
    open();
    choose(1);
    ui::type(*page("CSubDlgFieldInt"), 2013, QStringLiteral("31/02/2020"));
    ui::CModalDriver driver;
    driver.box(kit::text(texts::MinimumInvalid), kit::Answer::Ok);
    QTest::keyClick(&grid(), Qt::Key_Delete);
    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_EQ(names(), QStringLiteral("Nome Area Note"));
}

TEST_F(DlgTableEditCasesTest, OkShowsThePagesMessagesAndAppliesTheRest)
{
    open();
    click(1, 0);
    ui::type(*page("CSubDlgFieldInt"), 2013, QStringLiteral("9"));
    ui::type(*page("CSubDlgFieldInt"), 2014, QStringLiteral("2"));
    required().setChecked(true);
    ui::CModalDriver driver;
    driver.box(kit::text(texts::RangeIncongruent), kit::Answer::Ok);
    ui::press(*dialog, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_TRUE(library->IsFieldRequested(field(1)));
    orv::CPolyValue constraints[gis::ConstraintCount];
    library->GetFieldConstraints(field(1), constraints);
    EXPECT_EQ(constraints[1], orv::CPolyValue(1));
    EXPECT_EQ(constraints[2], orv::CPolyValue(8));
}

TEST_F(DlgTableEditCasesTest, AChangeThatTheLibraryRefusesLeavesTheDialogOpen)
{
    open("table T (a integer)");
    click(0, 0);
    library->DeleteTable(library->GetTable(0));
    library->clearCalls();
    const ui::CModalDriver driver;
    ui::press(*dialog, 1);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_NE(page("CSubDlgFieldInt"), nullptr) << "the page is there again";
    EXPECT_TRUE(library->callsOf("InitializeWithDefVal").empty());
    EXPECT_EQ(driver.stepsTaken(), 0);
}

/// A user who stops at the first sight.
class CImpatient final : public embedded::IProgress {
public:
    bool advance(double) override { return false; }
    void finish() override { ++finished; }
    int finished = 0;
};

TEST_F(DlgTableEditCasesTest, AConversionThatIsStoppedChangesNothingAndCanBeTriedAgain)
{
    open();
    const std::string before = table();
    chooseFrom(3, 2, QStringLiteral("Decimale"));
    CImpatient impatient;
    embedded::Library::of(library.get())->setProgress(&impatient);
    ui::press(*dialog, 1);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(table(), before);
    EXPECT_EQ(impatient.finished, 1);
    EXPECT_EQ(text(3, 2), QStringLiteral("Decimale"));

    embedded::Library::of(library.get())->setProgress(nullptr);
    ui::press(*dialog, 1);
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
    EXPECT_EQ(library->GetFieldFormat(field(3)), gis::FieldFormat::Decimal);
}

/// A host whose rows take their time.
class CSlowLibrary final : public support::CRecordingLibrary {
public:
    using CRecordingLibrary::CRecordingLibrary;
    void InitializeWithDefVal(gis::CDBTable*, orv::CResultRow*) override
    {
        if (++initialized % 4096 == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    int initialized = 0;
};

TEST(DlgTableEditRowsTest, LongUpdatesShowProgressThatCannotBeClosed)
{
    constexpr int rows = 40'960;
    CSlowLibrary library("table T (a integer)");
    library.GetTable(0)->addRows(rows);
    CDlgTableEdit dialog(&library, library.GetTable(0));
    dialog.show();
    int seen = 0;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&] {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* progress = qobject_cast<QProgressDialog*>(window);
                progress && progress->isVisible()) {
                ++seen;
                EXPECT_EQ(progress->findChild<QPushButton*>(), nullptr);
                progress->close();
                QTest::keyClick(progress, Qt::Key_Escape);
                EXPECT_TRUE(progress->isVisible());
                dialog.accept(); // a second OK while the first is at work
                dialog.reject();
            }
    });
    look.start(10);
    ui::press(dialog, 1);
    EXPECT_GT(seen, 0);
    EXPECT_EQ(library.initialized, rows) << "each row once";
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

/// Texts and lists in turns.
std::string tableOf(int fields)
{
    std::string notation = "table T (";
    for (int i = 0; i < fields; ++i)
        notation += (i ? ", f" : "f") + std::to_string(i) + (i % 2 ? " text" : " list ('a', 'b')");
    return notation + ")";
}

/// So that 500 fields open and scroll as twenty do: no field has widgets of its own but the one
/// that is selected.
TEST_F(DlgTableEditCasesTest, FiveHundredFieldsNeedNoMoreWidgetsThanTwenty)
{
    const auto widgets = [this](int row) {
        click(row, 0);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
        return dialog->findChildren<QWidget*>().size();
    };
    open(tableOf(20).c_str());
    const auto ofAList = widgets(0);
    const auto ofAText = widgets(1);

    open(tableOf(500).c_str());
    for (int row = 0; row < 500; row += 25)
        EXPECT_EQ(widgets(row), row % 2 ? ofAText : ofAList) << row;
    choose(250);
    ui::press(*dialog, 2089);
    EXPECT_EQ(text(251, 0), QStringLiteral("f250"));
}

} // namespace
