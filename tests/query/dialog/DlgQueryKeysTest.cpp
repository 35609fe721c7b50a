// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/dialog/QueryDialogTesting.h"

#include <QLabel>
#include <QPushButton>
#include <QTabBar>

// The query dialog by the keyboard, and with names longer than its window.

namespace {

class DlgQueryKeysTest : public querytest::DlgQueryFixture {
protected:
    /// Tab from where the focus is, as often as said; the widgets that got the focus.
    QList<QWidget*> tabs(int count)
    {
        QList<QWidget*> reached;
        for (int i = 0; i < count; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached.append(QApplication::focusWidget());
        }
        return reached;
    }
    QPushButton* button(int id) { return &ui::at<QPushButton>(*m_dialog, id); }
    QTabBar* tabBar() { return sheet().tabBar(); }
    QLabel& liveLine() { return *m_dialog->findChild<QLabel*>(QStringLiteral("liveLine")); }
    /// What is shown must leave the window as wide as it is, and let it be as narrow as before.
    void expectWidth(int width, int leastWidth)
    {
        QApplication::processEvents();
        EXPECT_EQ(m_dialog->width(), width);
        EXPECT_LE(m_dialog->minimumSizeHint().width(), leastWidth);
    }
};

constexpr int IdRun = 2081;
constexpr int IdOk = 1;

} // namespace

TEST_F(DlgQueryKeysTest, CtrlEnterOfTheKeypadIsADoubleClickToo)
{
    open();
    const ui::CModalDriver driver; // no message comes
    const auto held = Qt::ControlModifier | Qt::KeypadModifier;
    fields().setFocus();
    fields().setCurrentIndex(fields().model()->index(2, 0));
    QTest::keyClick(&fields(), Qt::Key_Enter, held);
    EXPECT_EQ(joined(rows(values())), "9, 10, 100");
    ui::press(*m_dialog, 2074);
    values().setFocus();
    values().setCurrentIndex(values().model()->index(1, 0));
    QTest::keyClick(&values(), Qt::Key_Enter, held);

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = 10"));
    EXPECT_EQ(sheet().currentIndex(), 0) << "the filter is not run";
}

TEST_F(DlgQueryKeysTest, EnterOfTheKeypadWithoutCtrlRunsTheFilter)
{
    open();
    filter().setText(QStringLiteral("Corsie = 9"));
    fields().setFocus();
    fields().setCurrentIndex(fields().model()->index(2, 0));

    QTest::keyClick(&fields(), Qt::Key_Enter, Qt::KeypadModifier);

    EXPECT_EQ(filter().text(), QStringLiteral("Corsie = 9"));
    EXPECT_EQ(sheet().currentIndex(), 1);
}

TEST_F(DlgQueryKeysTest, TabLeadsFromTheTabsToTheFilterAndThenToTheButtons)
{
    open();
    tabBar()->setFocus();

    EXPECT_EQ(tabs(3), (QList<QWidget*> { &filter(), button(IdRun), button(IdOk) }));
}

TEST_F(DlgQueryKeysTest, TabLeadsFromTheTabsToTheResultBeforeTheButtons)
{
    open();
    for (const char* text : { "Corsie = 9", "Corsie = 10" }) { // the second grid is a new one
        run(text);
        ASSERT_EQ(sheet().currentIndex(), 1);
        tabBar()->setFocus();

        EXPECT_EQ(tabs(3), (QList<QWidget*> { grid(), button(IdRun), button(IdOk) }));

        QTest::keyClick(button(IdOk), Qt::Key_Backtab, Qt::ShiftModifier);
        QTest::keyClick(button(IdRun), Qt::Key_Backtab, Qt::ShiftModifier);
        EXPECT_EQ(QApplication::focusWidget(), grid());
    }
    sheet().setCurrentIndex(0);
    tabBar()->setFocus();
    EXPECT_EQ(tabs(3), (QList<QWidget*> { &filter(), button(IdRun), button(IdOk) }));
}

TEST_F(DlgQueryKeysTest, TabLeadsFromTheResultThroughWhatFindsInItToTheButtons)
{
    open();
    run("Corsie = 9");
    QTest::keyClick(grid(), Qt::Key_F, Qt::ControlModifier);
    auto* sought = m_dialog->findChild<QLineEdit*>(QStringLiteral("sought"));
    ASSERT_TRUE(sought && sought->hasFocus());

    const QList<QWidget*> reached = tabs(5);

    for (int i = 0; i < 3; ++i) // previous, next, close
        EXPECT_EQ(reached[i]->parentWidget(), sought->parentWidget());
    EXPECT_EQ(reached.mid(3), (QList<QWidget*> { button(IdRun), button(IdOk) }));
}

TEST_F(DlgQueryKeysTest, AGridMadeWhenItsPageIsShownLaterIsReachedBeforeTheButtonsToo)
{
    open();
    run("Corsie = 9");
    sheet().setCurrentIndex(0);
    runWrong("Corsie = ");
    ASSERT_EQ(grid(), nullptr);
    m_dialog->activateWindow(); // as window managers do when the message has gone
    QApplication::processEvents();

    sheet().setCurrentIndex(1);
    tabBar()->setFocus();

    EXPECT_EQ(tabs(3), (QList<QWidget*> { grid(), button(IdRun), button(IdOk) }));
}

TEST_F(DlgQueryKeysTest, WhatIsSelectedInTheFilterStaysWhenTabLeavesIt)
{
    const std::pair<int, int> selections[] = { { 0, 3 }, { 3, -3 } }; // the caret behind, in front
    for (const auto& [start, length] : selections) {
        SCOPED_TRACE(length);
        open();
        filter().setText(QStringLiteral("abc = 'x' OR abc = 'y'"));
        click(fields(), 0);
        filter().setFocus();
        filter().setSelection(start, length);

        ASSERT_EQ(tabs(1), QList<QWidget*> { button(IdRun) });

        EXPECT_EQ(filter().selectedText(), QStringLiteral("abc"));
        EXPECT_EQ(filter().cursorPosition(), length > 0 ? 3 : 0) << "and the caret's side with it";
        doubleClick(values(), 0);
        EXPECT_EQ(filter().text(), QStringLiteral("'Via Po' = 'x' OR 'Via Po' = 'y'"));
        EXPECT_EQ(filter().cursorPosition(), 11);
    }
}

TEST_F(DlgQueryKeysTest, ASelectionMadeWithTheKeysIsReplacedByAnOperator)
{
    open();
    ui::typeInto(filter(), QStringLiteral("A = 1 ? B = 2 ? C = 3"));
    filter().setCursorPosition(7);
    QTest::keyClick(&filter(), Qt::Key_Left, Qt::ShiftModifier);
    ASSERT_EQ(filter().selectedText(), QStringLiteral("?"));

    button(2079)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button(2079), Qt::Key_Space);

    EXPECT_EQ(filter().text(), QStringLiteral("A = 1  AND  B = 2  AND  C = 3"));
}

TEST_F(DlgQueryKeysTest, ALongThemeNameLeavesTheDialogAsWideAsItWas)
{
    open();
    const int width = m_dialog->width();
    const int least = m_dialog->minimumSizeHint().width();
    {
        const support::RecordingPause pause(m_library);
        m_library.SetThemeName(m_library.FindTheme("Strade"), std::string(300, 'w').c_str());
    }
    open();

    EXPECT_EQ(themes().currentText().size(), 300);
    expectWidth(width, least);
}

TEST_F(DlgQueryKeysTest, LongFieldNamesAndValuesLeaveTheDialogAsWideAsItWas)
{
    open();
    const int width = m_dialog->width();
    const int least = m_dialog->minimumSizeHint().width();
    m_library.answerCells([](orv::CResultRow*, int, orv::CPolyValue& value) {
        value = orv::CPolyValue(orv::String(std::string(300, 'w').c_str()));
        return true;
    });

    click(fields(), 0);

    ASSERT_EQ(values().model()->rowCount(), 1);
    expectWidth(width, least);
}

TEST_F(DlgQueryKeysTest, ALongWordInTheFilterLeavesTheDialogAsWideAsItWas)
{
    open();
    const int width = m_dialog->width();
    const int least = m_dialog->minimumSizeHint().width();
    const QString word(500, QLatin1Char('w'));

    filter().setText(word); // wrong: said at once
    EXPECT_TRUE(liveLine().text().contains(QStringLiteral("www")));
    expectWidth(width, least);

    filter().setText(word + QStringLiteral(" = 1")); // right, with a name that is no field
    EXPECT_TRUE(ui::waitUntil(
        [&] { return liveLine().text().contains(QStringLiteral("nomi sconosciuti: www")); }));
    EXPECT_LT(liveLine().text().size(), 150);
    expectWidth(width, least);

    filter().setText(QStringLiteral("(A = '") + word + QStringLiteral("') AND"));
    EXPECT_TRUE(liveLine().text().contains(QStringLiteral("Esegui userebbe solo")));
    expectWidth(width, least);
}
