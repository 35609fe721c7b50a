// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/list/ListTesting.h"

#include "kit/texts/TextLoader.h"

#include <QPersistentModelIndex>
#include <QSignalSpy>

#include <functional>

namespace {

/// "Città" as an old program wrote it, one byte a letter.
constexpr const char* NotUtf8 = "Citt\xE0";

class TableListMessagesTest : public listtest::TableList {
protected:
    static std::function<void(QMessageBox&)> looksLike(
        QMessageBox::Icon icon, QMessageBox::StandardButtons buttons)
    {
        return [icon, buttons](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
            EXPECT_EQ(box.icon(), icon);
            EXPECT_EQ(box.standardButtons(), buttons);
        };
    }
    static QString shown(int text)
    {
        return kit::text(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    void run(int command) { dialog->command(command)->trigger(); }
    void openWithOldName()
    {
        open("table Zeta (a text)");
        {
            const support::RecordingPause pause(*library);
            library->SetTableName(library->GetTable(0), orv::String(NotUtf8));
        }
        dialog->SetLibGis(library.get());
        library->clearCalls();
    }
    std::string nameInLibrary()
    {
        const support::RecordingPause pause(*library);
        return library->GetTableName(library->GetTable(0)).Bytes();
    }
};

TEST_F(TableListMessagesTest, StructureAndRowsLeaveTheListAndItsSelectionAsTheyAre)
{
    for (const auto& [command, className] :
        { std::pair { CDlgTableList::Properties, "CDlgTableEdit" },
            std::pair { CDlgTableList::Show, "CDlgShowTable" } }) {
        SCOPED_TRACE(className);
        open();
        select(1);
        const QPersistentModelIndex selected(list().model()->index(1, 0));
        const QSignalSpy removed(list().model(), &QAbstractItemModel::rowsRemoved);
        const QSignalSpy added(list().model(), &QAbstractItemModel::rowsInserted);
        ui::CModalDriver driver;
        driver.dialog(className, [this](QDialog& window) {
            // What another window does to the library meanwhile is seen with the next change.
            library->CreateTable("Gamma");
            ui::press(window, 2);
        });
        run(command);
        settle();
        EXPECT_EQ(driver.stepsTaken(), 1);
        EXPECT_EQ(names(),
            (QStringList {
                QStringLiteral("alfa"), QStringLiteral("Beta"), QStringLiteral("Zeta") }));
        EXPECT_TRUE(removed.isEmpty());
        EXPECT_TRUE(added.isEmpty());
        ASSERT_TRUE(selected.isValid());
        EXPECT_EQ(list().selectionModel()->selectedIndexes(), QModelIndexList { selected });
        for (const int other : { 32772, 32773, 32780, 32785 })
            EXPECT_TRUE(dialog->command(other)->isEnabled()) << other;
    }
}

TEST_F(TableListMessagesTest, AConfirmedStructureLeavesTheListAsItIsToo)
{
    open();
    select(0);
    const QSignalSpy removed(list().model(), &QAbstractItemModel::rowsRemoved);
    ui::CModalDriver driver;
    driver.dialog("CDlgTableEdit", [](QDialog& structure) { ui::press(structure, 1); });
    QTest::keyClick(&list(), Qt::Key_Return);
    settle();
    EXPECT_TRUE(removed.isEmpty());
    EXPECT_TRUE(list().selectionModel()->isSelected(list().model()->index(0, 0)));
}

TEST_F(TableListMessagesTest, TheQuestionInformsAndTheRefusalWarns)
{
    open("table Beta (n integer); theme P: points 2d on Beta");
    select(0);
    ui::CModalDriver driver;
    driver.box(shown(texts::DeleteTable), kit::Answer::Yes,
        looksLike(QMessageBox::Information, QMessageBox::Yes | QMessageBox::No));
    driver.box(shown(texts::TableInUse), kit::Answer::Ok,
        looksLike(QMessageBox::Warning, QMessageBox::Ok));
    run(CDlgTableList::Delete);
    EXPECT_EQ(driver.stepsTaken(), 2);
    EXPECT_EQ(library->GetNumTables(), 1);
}

TEST_F(TableListMessagesTest, WrongNamesAreWarnedOfInTheDialog)
{
    open();
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        ui::press(window, 1);
        ui::type(window, 2001, QStringLiteral("BETA"));
        ui::press(window, 1);
        ui::press(window, 2);
    });
    driver.box(shown(texts::TableNameMissing), kit::Answer::Ok,
        looksLike(QMessageBox::Warning, QMessageBox::Ok));
    driver.box(shown(texts::TableNameUsed), kit::Answer::Ok,
        looksLike(QMessageBox::Warning, QMessageBox::Ok));
    run(CDlgTableList::New);
    EXPECT_EQ(driver.stepsTaken(), 3);
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(TableListMessagesTest, WrongNamesAreWarnedOfInPlace)
{
    open();
    for (const auto& [name, text] : { std::pair { QString(), texts::TableNameMissing },
             std::pair { QStringLiteral("ZETA"), texts::TableNameUsed } }) {
        QLineEdit* edited = edit(0);
        ASSERT_NE(edited, nullptr);
        edited->setText(name);
        ui::CModalDriver driver;
        driver.box(shown(text), kit::Answer::Ok, looksLike(QMessageBox::Warning, QMessageBox::Ok));
        QTest::keyClick(edited, Qt::Key_Return);
        ASSERT_TRUE(ui::waitUntil([&] { return driver.stepsTaken() == 1; }));
        settle();
    }
    EXPECT_EQ(names().first(), QStringLiteral("alfa"));
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(TableListMessagesTest, ANameThatIsNoUtf8StaysByteForByteWhenNothingIsTyped)
{
    openWithOldName();
    QLineEdit* edited = edit(0);
    ASSERT_NE(edited, nullptr);
    QTest::keyClick(edited, Qt::Key_Return);
    settle();
    EXPECT_EQ(nameInLibrary(), NotUtf8) << "in place";

    select(0);
    {
        ui::CModalDriver driver;
        driver.dialog("CDlgInputNameTable", [](QDialog& window) { ui::press(window, 1); });
        run(CDlgTableList::Rename);
    }
    EXPECT_EQ(nameInLibrary(), NotUtf8) << "in the dialog";

    edited = edit(0);
    ASSERT_NE(edited, nullptr);
    dialog->close();
    EXPECT_EQ(nameInLibrary(), NotUtf8) << "by closing the window";
}

TEST_F(TableListMessagesTest, ANameThatIsTypedOverItIsUtf8)
{
    openWithOldName();
    select(0);
    ui::CModalDriver driver;
    driver.dialog("CDlgInputNameTable", [](QDialog& window) {
        ui::type(window, 2001, QStringLiteral("Città"));
        ui::press(window, 1);
    });
    run(CDlgTableList::Rename);
    EXPECT_EQ(nameInLibrary(), "Citt\xC3\xA0");
}

} // namespace
