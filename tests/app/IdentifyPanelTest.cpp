// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/IdentifyPanel.h"
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

} // namespace
