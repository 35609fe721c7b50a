// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterEdit.h"

#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTest>

using query::CFilterEdit;

namespace {

struct Edit {
    CFilterEdit edit;
    Edit()
    {
        edit.setFieldNames({ QStringLiteral("Nome"), QStringLiteral("Data rilievo"),
            QStringLiteral("Note"), QStringLiteral("and"), QStringLiteral("12") });
        edit.resize(500, 30);
        edit.show();
        edit.activateWindow();
        edit.setFocus();
        QApplication::processEvents();
    }
    QStringList completionsOf(const char* text)
    {
        edit.setText(QString::fromUtf8(text));
        return edit.completions();
    }
};

} // namespace

TEST(FilterEditTest, PastedLineEndsAndTabsBecomeBlanks)
{
    Edit e;
    QApplication::clipboard()->setText(QStringLiteral("A = 1\r\nAND\tB = 2\n"));

    QTest::keyClick(&e.edit, Qt::Key_V, Qt::ControlModifier);

    EXPECT_EQ(e.edit.text(), QStringLiteral("A = 1  AND B = 2 "));
}

TEST(FilterEditTest, ACleanedPasteIsWhatTheNextKeyIsComparedWith)
{
    Edit e;
    QApplication::clipboard()->setText(QStringLiteral("A = 1\n"));
    QTest::keyClick(&e.edit, Qt::Key_V, Qt::ControlModifier);
    // As the dialog inserts a value:
    e.edit.setText(e.edit.text() + QStringLiteral("AND B = 'x\ty'"));
    QTest::keyClicks(&e.edit, QStringLiteral(" "));

    EXPECT_EQ(e.edit.text(), QStringLiteral("A = 1 AND B = 'x\ty' "));
}

TEST(FilterEditTest, CompletesFieldsAndKeywordsByWhatWasTyped)
{
    Edit e;

    EXPECT_EQ(e.completionsOf("no"),
        (QStringList { QStringLiteral("Nome"), QStringLiteral("Note"), QStringLiteral("NOT"),
            QStringLiteral("Now()") }));
    EXPECT_EQ(e.completionsOf("Nome = 1 A"),
        (QStringList { QStringLiteral("[and]"), QStringLiteral("AND") }));
    EXPECT_EQ(e.completionsOf("dat"),
        (QStringList { QStringLiteral("[Data rilievo]"), QStringLiteral("Date(") }));
    EXPECT_EQ(e.completionsOf("[Data r"), QStringList { QStringLiteral("[Data rilievo]") });
    EXPECT_TRUE(e.completionsOf("zzz").isEmpty());
}

TEST(FilterEditTest, ABracketInATextIsNoNameAndAnApostropheInANameIsNoText)
{
    Edit e;
    const QStringList offered { QStringLiteral("Nome"), QStringLiteral("Note"),
        QStringLiteral("NOT"), QStringLiteral("Now()") };

    EXPECT_EQ(e.completionsOf("Nome = 'x [y' AND no"), offered);
    EXPECT_EQ(e.completionsOf("Nome = '[' OR Nome = ']' AND no"), offered);
    EXPECT_EQ(e.completionsOf("[L'altro] = 1 AND no"), offered);
    EXPECT_EQ(e.completionsOf("Nome = 'x [y' AND [Data r"),
        QStringList { QStringLiteral("[Data rilievo]") });
}

/// Ctrl+Space, then Return on what is offered first.
static void takeFirstOffer(QWidget& edit)
{
    QTest::keyClick(&edit, Qt::Key_Space, Qt::ControlModifier);
    QWidget* popup = QApplication::activePopupWidget();
    ASSERT_NE(popup, nullptr);
    QTest::keyClick(popup, Qt::Key_Return);
}

TEST(FilterEditTest, CtrlSpaceAfterATextWithABracketReplacesOnlyTheWord)
{
    Edit e;
    e.edit.setText(QStringLiteral("Nome = 'x [y' AND dat"));

    takeFirstOffer(e.edit);

    EXPECT_EQ(e.edit.text(), QStringLiteral("Nome = 'x [y' AND [Data rilievo]"));
}

TEST(FilterEditTest, CtrlSpaceOffersAndReturnTakesTheWord)
{
    Edit e;
    e.edit.setText(QStringLiteral("Nome = 'x' AND dat"));

    takeFirstOffer(e.edit);

    EXPECT_EQ(e.edit.text(), QStringLiteral("Nome = 'x' AND [Data rilievo]"));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(FilterEditTest, AltDownOffersTheLastFilters)
{
    Edit e;
    e.edit.setText(QStringLiteral("alt"));
    e.edit.setHistory({ QStringLiteral("A = 1 & B"), QStringLiteral("B = 2") });
    QTimer::singleShot(0, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        EXPECT_EQ(menu->actions().size(), 2);
        menu->setActiveAction(menu->actions().at(0));
        QTest::keyClick(menu, Qt::Key_Return);
    });

    QTest::keyClick(&e.edit, Qt::Key_Down, Qt::AltModifier);

    EXPECT_EQ(e.edit.text(), QStringLiteral("A = 1 & B"));
}

TEST(FilterEditTest, MarkingChangesNeitherTextNorSelectionNorUndo)
{
    Edit e;
    ui::typeInto(e.edit, QStringLiteral("Nome = AND"));
    e.edit.setSelection(0, 4);

    e.edit.markWrong(7, 3);

    EXPECT_EQ(e.edit.text(), QStringLiteral("Nome = AND"));
    EXPECT_EQ(e.edit.selectedText(), QStringLiteral("Nome"));
    EXPECT_TRUE(e.edit.isUndoAvailable());
}
