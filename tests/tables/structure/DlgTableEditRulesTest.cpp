// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/structure/EditorTesting.h"

#include "kit/texts/TextLoader.h"
#include "tables/structure/FieldModel.h"

#include <QEvent>

namespace {

class DlgTableEditRulesTest : public structuretest::Editor {
protected:
    void* handle(int row) { return cell(row, 0).data(Qt::UserRole).value<void*>(); }
    /// The name of a wholly selected row, being edited in place; the row stays selected.
    QLineEdit* editNameOfChosen(int row, const QString& name)
    {
        choose(row);
        QTest::keyClick(&grid(), Qt::Key_F2);
        auto* edit = editor<QLineEdit>();
        if (edit) {
            edit->selectAll();
            ui::typeInto(*edit, name);
        }
        return edit;
    }
    /// A choice made with the keys in an open list, then given up.
    void goThroughAndEscape(int row, int column, int steps)
    {
        click(row, column);
        QTest::keyClick(&grid(), Qt::Key_F2);
        auto* combo = editor<QComboBox>();
        ASSERT_NE(combo, nullptr);
        for (int i = 0; i < steps; ++i)
            QTest::keyClick(combo, Qt::Key_Down);
        ASSERT_GE(combo->currentIndex(), steps - 1);
        QTest::keyClick(combo, Qt::Key_Escape);
        QApplication::processEvents();
        ASSERT_EQ(editor<QComboBox>(), nullptr);
    }
};

TEST(FieldModelHandlesTest, EachRowHoldsTheHandleOfItsFieldAndTheBlankRowNone)
{
    support::CRecordingLibrary library(structuretest::Streets);
    gis::CCtrlDlgTableEdit controller(&library, library.GetTable(0));
    tables::CFieldModel model(controller);
    const auto handle = [&model](int row, int column = 0) {
        return model.index(row, column).data(Qt::UserRole).value<void*>();
    };
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(handle(row), controller.GetCurField(row)) << row;
    EXPECT_EQ(handle(4), nullptr) << "the blank row is no field yet";

    model.swapFields(1, 3);
    EXPECT_EQ(handle(1), controller.GetCurField(1));
    model.removeField(0);
    for (int row = 0; row < 3; ++row)
        EXPECT_EQ(handle(row), controller.GetCurField(row)) << row;
    model.appendField();
    EXPECT_EQ(handle(3), controller.GetCurField(3));
    EXPECT_EQ(handle(4), nullptr);
}

TEST_F(DlgTableEditRulesTest, AFieldsHandleGoesWithItWhenItIsMoved)
{
    open();
    void* const moved = handle(1);
    void* const other = handle(2);
    ASSERT_NE(moved, nullptr);
    ASSERT_NE(moved, other);
    EXPECT_EQ(handle(4), nullptr);
    choose(1);
    ui::press(*dialog, 2089);
    EXPECT_EQ(handle(2), moved);
    EXPECT_EQ(handle(1), other);
    ui::press(*dialog, 2088);
    EXPECT_EQ(handle(1), moved);
    EXPECT_EQ(handle(2), other);
}

TEST_F(DlgTableEditRulesTest, ColumnsHaveTheirTitlesInTheMiddle)
{
    open();
    const QStringList titles { QStringLiteral("Nome"), QStringLiteral("Tipo"),
        QStringLiteral("Formato") };
    ASSERT_EQ(grid().model()->columnCount(), titles.size());
    for (int column = 0; column < titles.size(); ++column) {
        const auto header
            = [&](int role) { return grid().model()->headerData(column, Qt::Horizontal, role); };
        EXPECT_EQ(header(Qt::DisplayRole).toString(), titles[column]);
        EXPECT_EQ(header(Qt::TextAlignmentRole).toInt(), Qt::AlignCenter) << column;
    }
    EXPECT_FALSE(grid().horizontalHeader()->isHidden());
}

TEST_F(DlgTableEditRulesTest, OkLooksAtTheNamesFirstAndLeavesThePageAsItWasTyped)
{
    open();
    typeName(3, QString());
    click(1, 0);
    QWidget* const shown = page("CSubDlgFieldInt");
    ASSERT_NE(shown, nullptr);
    ui::type(*shown, 2012, QStringLiteral("abc"));
    required().setChecked(true);
    library->clearCalls();
    ui::CModalDriver driver; // one box only: what is wrong on the page is not told yet
    driver.box(kit::text(texts::FieldNamesMissing), kit::Answer::Ok);
    ui::press(*dialog, 1);
    QApplication::processEvents();

    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_TRUE(dialog->isVisible());
    ASSERT_EQ(page("CSubDlgFieldInt"), shown) << "the same page, not one made anew";
    EXPECT_EQ(ui::at<QLineEdit>(*shown, 2012).text(), QStringLiteral("abc"));
    EXPECT_TRUE(required().isChecked());
    EXPECT_TRUE(library->changes().empty());
}

TEST_F(DlgTableEditRulesTest, ANameBeingTypedIsItsOwnFieldsWhenTheRowIsMoved)
{
    for (const bool isDown : { true, false }) {
        SCOPED_TRACE(isDown ? "down" : "up");
        open();
        void* const field = handle(1);
        ASSERT_NE(editNameOfChosen(1, QStringLiteral("Piste")), nullptr);
        ASSERT_TRUE(up().isEnabled());
        ASSERT_TRUE(down().isEnabled());
        (isDown ? down() : up()).click(); // leaves the focus in the edit, as an access key would
        QApplication::processEvents();

        EXPECT_EQ(editor<QLineEdit>(), nullptr);
        EXPECT_EQ(names(),
            isDown ? QStringLiteral("Nome Area Piste Note")
                   : QStringLiteral("Piste Nome Area Note"));
        EXPECT_EQ(handle(isDown ? 2 : 0), field);
        ui::press(*dialog, 1);
        gis::CDBTable* table = library->GetTable(0);
        gis::CField* renamed = library->GetField(table, isDown ? 2 : 0);
        EXPECT_EQ(library->GetFieldName(renamed), orv::String("Piste"));
        EXPECT_EQ(library->GetFieldFormat(renamed), gis::FieldFormat::Integer);
    }
}

TEST_F(DlgTableEditRulesTest, AUsedNameBeingTypedIsToldAndNothingMoves)
{
    open();
    ASSERT_NE(editNameOfChosen(1, QStringLiteral("note")), nullptr);
    ui::CModalDriver driver;
    driver.box(QStringLiteral("Esiste già un campo con questo nome!\nInserire un nome diverso!"),
        kit::Answer::Ok);
    down().click();
    QApplication::processEvents();
    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_EQ(names(), QStringLiteral("Nome Corsie Area Note"));
    EXPECT_EQ(grid().currentIndex(), cell(1, 0));
}

/// Notes which page was there whenever "Obbligatorio" was enabled or disabled.
class CBoxWatch final : public QObject {
public:
    CBoxWatch(QCheckBox& box, std::function<QString()> pageName)
        : m_box(box)
        , m_pageName(std::move(pageName))
    {
        box.installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == &m_box && event->type() == QEvent::EnabledChange)
            seen << m_pageName()
                    + (m_box.isEnabled() ? QStringLiteral(" on") : QStringLiteral(" off"));
        return QObject::eventFilter(watched, event);
    }
    QStringList seen;

private:
    QCheckBox& m_box;
    std::function<QString()> m_pageName;
};

TEST_F(DlgTableEditRulesTest, RequiredIsOfThePageThatIsShownNotOfTheRowThatIsChanged)
{
    open("table T (a text required, b integer, c decimal 2 from area)");
    const auto shownPage = [this] {
        for (const char* name : { "CSubDlgFieldString", "CSubDlgFieldInt", "CSubDlgFieldDouble" })
            if (page(name))
                return QString::fromLatin1(name);
        return QString();
    };
    click(0, 0);
    ASSERT_TRUE(required().isEnabled());
    ASSERT_TRUE(required().isChecked());
    CBoxWatch watch(required(), shownPage);
    // The other row becomes computed; only its own page disables the box.
    grid().model()->setData(cell(1, 1), QStringLiteral("Area"), Qt::EditRole);
    EXPECT_EQ(watch.seen, QStringList { QStringLiteral("CSubDlgFieldDouble off") });

    click(0, 1); // another cell: the first is selected still
    EXPECT_TRUE(required().isEnabled());
    EXPECT_TRUE(required().isChecked()) << "as its field has it";
    click(2, 0);
    ASSERT_FALSE(required().isEnabled());
    watch.seen.clear();
    // A computed field is shown while another row goes back to the user.
    grid().model()->setData(cell(1, 1), QStringLiteral("Da Utente"), Qt::EditRole);
    EXPECT_EQ(watch.seen.size(), 1) << watch.seen.join(QLatin1Char(',')).toStdString();
    EXPECT_TRUE(required().isEnabled()) << "the page of the changed row";
    EXPECT_FALSE(required().isChecked());
    click(2, 1);
    EXPECT_FALSE(required().isEnabled());
}

TEST_F(DlgTableEditRulesTest, ASourceChosenInAnotherRowTakesNothingFromTheFieldBefore)
{
    open("table T (a text required, b integer)");
    click(0, 0);
    chooseFrom(1, 1, QStringLiteral("Area"));
    EXPECT_FALSE(required().isEnabled());
    EXPECT_FALSE(required().isChecked());
    click(0, 0);
    EXPECT_TRUE(required().isEnabled());
    EXPECT_TRUE(required().isChecked());
    ui::press(*dialog, 1);
    gis::CDBTable* table = library->GetTable(0);
    EXPECT_TRUE(library->IsFieldRequested(library->GetField(table, 0)));
    EXPECT_FALSE(library->IsFieldRequested(library->GetField(table, 1)));
}

TEST_F(DlgTableEditRulesTest, EscapeAfterAChoiceInTheBlankRowLeavesANamelessTextField)
{
    // The choice began the row; given up, the row is as one that was just begun.
    for (const int column : { 1, 2 }) {
        SCOPED_TRACE(column);
        open();
        goThroughAndEscape(4, column, 4);
        EXPECT_TRUE(dialog->isVisible());
        ASSERT_EQ(grid().model()->rowCount(), 6);
        EXPECT_EQ(text(4, 0), QString());
        EXPECT_EQ(text(4, 1), QStringLiteral("Da Utente"));
        EXPECT_EQ(text(4, 2), QStringLiteral("Testo"));
        EXPECT_NE(page("CSubDlgFieldString"), nullptr);
        EXPECT_TRUE(required().isEnabled());

        ui::CModalDriver driver;
        driver.box(kit::text(texts::FieldNamesMissing), kit::Answer::Ok);
        ui::press(*dialog, 1);
        EXPECT_TRUE(dialog->isVisible());
    }
}

TEST_F(DlgTableEditRulesTest, EscapeWithoutAChoiceLeavesTheBlankRowBlank)
{
    for (const int column : { 0, 1, 2 }) {
        open();
        click(4, column);
        QTest::keyClick(&grid(), Qt::Key_F2);
        QWidget* edit = column == 0 ? static_cast<QWidget*>(editor<QLineEdit>())
                                    : static_cast<QWidget*>(editor<QComboBox>());
        ASSERT_NE(edit, nullptr);
        QTest::keyClick(edit, Qt::Key_Escape);
        QApplication::processEvents();
        EXPECT_EQ(grid().model()->rowCount(), 5) << column;
        EXPECT_EQ(handle(4), nullptr);
    }
}

} // namespace
