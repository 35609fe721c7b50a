// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/IdentifyPanel.h"
#include "embedded/model/Library.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTableWidget>
#include <QTest>

namespace {

using namespace apptest;

class IdentifyPanelTest : public testing::Test {
protected:
    IdentifyPanelTest() { openTown(document, folder.file(QStringLiteral("t.gpkg"))); }
    gis::CEnt* entity(int index)
    {
        return document.library().GetEnt(document.library().GetTheme(0), index);
    }
    QTableWidget& table() { return *panel.findChild<QTableWidget*>(QStringLiteral("attributes")); }
    embedded::LinkedPoint* point()
    {
        return document.library().GetTheme(0)->geometry().linkedPointOf(0);
    }
    void setDescription(const orv::String& text)
    {
        embedded::LinkedPoint changed = *point();
        changed.description = text;
        document.act(QStringLiteral("Descrizione"),
            [&] { embedded::Library::of(&document.library())->setLinkedPoint(point(), changed); });
    }
    QLineEdit& edit(int index) { return *panel.findChildren<QLineEdit*>().at(index); }
    QString shown(int row) { return table().item(row, 1)->text(); }

    CFolder folder;
    app::Document document;
    app::IdentifyPanel panel { document };
};

TEST_F(IdentifyPanelTest, ShowsTheAttributesOfAnEntity)
{
    panel.show(entity(1));

    ASSERT_EQ(table().rowCount(), 3);
    EXPECT_EQ(table().item(0, 0)->text(), QStringLiteral("nome"));
    EXPECT_EQ(shown(0), QStringLiteral("b"));
    EXPECT_EQ(shown(1), QStringLiteral("y"));
    panel.show(nullptr);
    EXPECT_EQ(table().rowCount(), 0);
}

TEST_F(IdentifyPanelTest, ThePointsTextsAreEditedAndPredefinedValuesFollow)
{
    panel.show(entity(0));
    panel.setAttribute(Qt::WA_DontShowOnScreen);
    panel.QWidget::show();
    const auto edits = panel.findChildren<QLineEdit*>();
    ASSERT_EQ(edits.size(), 8);
    EXPECT_EQ(edits[0]->text(), QStringLiteral("P1"));
    EXPECT_EQ(edits[1]->text(), QStringLiteral("angolo"));

    edits[0]->setFocus();
    ui::typeInto(*edits[0], QStringLiteral("Città <b>"));
    QTest::keyClick(edits[0], Qt::Key_Return);

    EXPECT_TRUE(shown(2).contains(QStringLiteral("Città <b>"))) << shown(2).toStdString();
    EXPECT_EQ(document.changes().UndoName(), orv::String("Attributi del punto"));
    document.undo();
    EXPECT_EQ(edits[0]->text(), QStringLiteral("P1"));
    EXPECT_TRUE(document.isSaved());
}

TEST_F(IdentifyPanelTest, LeavingAnEditUnchangedIsNoAct)
{
    panel.show(entity(0));
    const auto edits = panel.findChildren<QLineEdit*>();
    QTest::keyClick(edits[3], Qt::Key_Return);
    EXPECT_FALSE(document.changes().CanUndo());
}

TEST_F(IdentifyPanelTest, AnEntityWithoutAPointHasNoEdits)
{
    panel.show(entity(1));
    EXPECT_FALSE(panel.findChildren<QLineEdit*>().first()->isVisibleTo(&panel));
    panel.show(entity(0));
    EXPECT_TRUE(panel.findChildren<QLineEdit*>().first()->isVisibleTo(&panel));
}

TEST_F(IdentifyPanelTest, AnotherLibraryLeavesNothingBehind)
{
    panel.show(entity(0));
    document.startNew();
    EXPECT_EQ(panel.entity(), nullptr);
    EXPECT_EQ(table().rowCount(), 0);
}

/// Files of other programs hold bytes that are no UTF-8; they must not become question marks
/// because the user wrote something else.
TEST_F(IdentifyPanelTest, ATextThatCannotBeShownStaysWhenAnotherOneIsChanged)
{
    const orv::String bytes("citt\xE0 \xFF");
    setDescription(bytes);
    panel.show(entity(0));
    ui::typeInto(edit(0), QStringLiteral("bis"));
    QTest::keyClick(&edit(0), Qt::Key_Return);
    QTest::keyClick(&edit(1), Qt::Key_Return); // entered and left without typing

    EXPECT_EQ(point()->name, orv::String("P1bis"));
    EXPECT_EQ(point()->description, bytes);
    document.undo();
    EXPECT_EQ(point()->description, bytes);
}

TEST_F(IdentifyPanelTest, AVeryLongTextComesBackWhole)
{
    constexpr int Letters = 40'000; // more than an edit takes that is left as it comes
    const std::string text(Letters, 'x');
    setDescription(orv::String(text));
    panel.show(entity(0));
    EXPECT_EQ(edit(1).text().size(), Letters);
    QTest::keyClick(&edit(1), Qt::Key_End);
    ui::typeInto(edit(1), QStringLiteral("y"));
    QTest::keyClick(&edit(1), Qt::Key_Return);
    EXPECT_EQ(point()->description, orv::String(text + "y"));
}

TEST_F(IdentifyPanelTest, WhatIsTypedWaitsUntilItsEditIsLeft)
{
    panel.setAttribute(Qt::WA_DontShowOnScreen);
    panel.QWidget::show();
    panel.show(entity(0));
    EXPECT_FALSE(panel.hasPendingText());
    edit(0).setFocus();
    ui::typeInto(edit(0), QStringLiteral("bis"));
    EXPECT_TRUE(panel.hasPendingText());
    EXPECT_EQ(point()->name, orv::String("P1"));
    edit(1).setFocus();
    panel.commit();
    EXPECT_FALSE(panel.hasPendingText());
    EXPECT_EQ(point()->name, orv::String("P1bis"));
}

} // namespace
