// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/tables/structure/EditorTesting.h"

namespace {

struct Page {
    const char* className;
    QStringList controls; // as they stand on the page
};

const Page Pages[] = {
    { "CSubDlgFieldString", { QStringLiteral("id2021") } },
    { "CSubDlgFieldBool", { QStringLiteral("id2005") } },
    { "CSubDlgFieldInt",
        { QStringLiteral("id2012"), QStringLiteral("id2013"), QStringLiteral("id2014") } },
    { "CSubDlgFieldDouble",
        { QStringLiteral("id2008"), QStringLiteral("id2009"), QStringLiteral("id2010"),
            QStringLiteral("id2011") } },
    { "CSubDlgFieldList",
        { QStringLiteral("id2016"), QStringLiteral("id2017"), QStringLiteral("id2018"),
            QStringLiteral("id2019"), QStringLiteral("id2020"), QStringLiteral("id2015") } },
    { "CSubDlgFieldDate", { QStringLiteral("id2006"), QStringLiteral("id2007") } },
};
constexpr const char* OneOfEach
    = "table T (a text, b boolean, c integer, d decimal 2, e list ('x', 'y'), f date)";
constexpr int PageCount = 6;

class PageTabOrderTest : public structuretest::Editor {
protected:
    /// The controls from "Obbligatorio" on, in the order of the focus, as far as Annulla.
    QStringList order()
    {
        QStringList names { required().objectName() };
        for (QWidget* next = required().nextInFocusChain(); next != &required();
             next = next->nextInFocusChain()) {
            if (!next->isVisible() || next->focusProxy() || !(next->focusPolicy() & Qt::TabFocus)
                || next->window() != dialog.get())
                continue;
            names << next->objectName();
            if (next->objectName() == QLatin1String("id2"))
                break;
        }
        return names;
    }
    /// The same, walked with the key. The parts of a date are one control.
    QStringList walk()
    {
        required().setFocus();
        QStringList names { required().objectName() };
        for (int key = 0; key < 20 && names.last() != QLatin1String("id2"); ++key) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QString name = QApplication::focusWidget()->objectName();
            if (name != names.last())
                names << name;
        }
        return names;
    }
    static QStringList expected(const Page& page)
    {
        return QStringList { QStringLiteral("id2004") } + page.controls
            + QStringList { QStringLiteral("id1"), QStringLiteral("id2") };
    }
};

TEST_F(PageTabOrderTest, AfterRequiredComesThePageInItsOrderThenTheButtons)
{
    open(OneOfEach);
    // There and back: each page is made anew, and none may leave the order as another wants it.
    for (const int row : { 0, 1, 2, 3, 4, 5, 4, 3, 2, 1, 0 }) {
        click(row, 0);
        ASSERT_NE(page(Pages[row].className), nullptr) << row;
        EXPECT_EQ(order(), expected(Pages[row])) << Pages[row].className;
    }
}

TEST_F(PageTabOrderTest, TheKeyGoesThroughEveryPage)
{
    for (int row = 0; row < PageCount; ++row) {
        open(OneOfEach);
        click(row, 0);
        QWidget* const shown = page(Pages[row].className);
        ASSERT_NE(shown, nullptr) << row;
        if (auto* mode = shown->findChild<QComboBox*>(QStringLiteral("id2006")))
            mode->setCurrentIndex(2); // a date given by the user, whose picker is open
        EXPECT_EQ(walk(), expected(Pages[row])) << Pages[row].className;
    }
}

TEST_F(PageTabOrderTest, WithoutAPageTheButtonsFollowTheGrid)
{
    open(OneOfEach);
    click(4, 0);
    click(6, 0); // the blank row
    ASSERT_FALSE(hasAnyPage());
    grid().setFocus();
    QTest::keyClick(&grid(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("id1"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), QStringLiteral("id2"));
}

} // namespace
