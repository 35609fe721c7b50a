// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// Texts of a point that are still being typed in the panel, and what the window does meanwhile.

#include "tests/app/AppTesting.h"

#include "app/IdentifyPanel.h"
#include "embedded/model/Library.h"
#include "kit/MessageBox.h"
#include "kit/texts/QtText.h"
#include "tests/support/ui/ModalDriver.h"

#include <QAbstractItemView>
#include <QAction>
#include <QLineEdit>
#include <QTest>

namespace {

using namespace apptest;

class IdentifyWindowTest : public CTownWindow {
protected:
    IdentifyWindowTest()
    {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        identify(10, 10);
    }
    void identify(double x, double y)
    {
        window.canvas().setTool(app::MapTool::Identify);
        window.canvas().setView({ 50, 50, 0.5, window.canvas().size() });
        QTest::mouseClick(
            &window.canvas(), Qt::LeftButton, {}, window.canvas().view().toPixels(x, y).toPoint());
    }
    QLineEdit& edit(int index)
    {
        return *window.findChild<app::IdentifyPanel*>()->findChildren<QLineEdit*>().at(index);
    }
    /// Types at the end of an edit, which keeps the focus.
    void typeAtEnd(int index, const QString& text)
    {
        edit(index).setFocus();
        QTest::keyClick(&edit(index), Qt::Key_End);
        ui::typeInto(edit(index), text);
    }
    static QString pointName(const app::Document& document)
    {
        return kit::toQt(document.library().GetTheme(0)->geometry().linkedPointOf(0)->name);
    }
};

TEST_F(IdentifyWindowTest, TextBeingTypedCanBeSaved)
{
    ASSERT_EQ(edit(0).text(), QStringLiteral("P1"));
    QAction& save = action(QStringLiteral("Salva"));
    EXPECT_FALSE(save.isEnabled());
    typeAtEnd(0, QStringLiteral("bis è"));
    EXPECT_TRUE(save.isEnabled());
    EXPECT_EQ(pointName(window.document()), QStringLiteral("P1")) << "not yet left";

    QTest::keyClick(&edit(0), Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(window.document().isSaved());
    EXPECT_FALSE(save.isEnabled());
    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Attributi del punto"));
    window.document().startNew();
    app::Document saved;
    embedded::Report report;
    ASSERT_TRUE(saved.open(path, report).ok());
    EXPECT_EQ(pointName(saved), QStringLiteral("P1bis è"));
}

TEST_F(IdentifyWindowTest, TextThatIsTypedBackToWhatItWasIsNoAct)
{
    typeAtEnd(0, QStringLiteral("x"));
    QTest::keyClick(&edit(0), Qt::Key_Backspace);
    QTest::keyClick(&edit(0), Qt::Key_Return);
    EXPECT_FALSE(window.document().changes().CanUndo());
    EXPECT_FALSE(action(QStringLiteral("Salva")).isEnabled());
}

TEST_F(IdentifyWindowTest, TheNameBeingTypedIsInTheGridOpenedFromTheMenu)
{
    typeAtEnd(0, QStringLiteral("bis"));
    ui::CModalDriver driver;
    driver.dialog("CDlgShowTable", [&](QDialog& dialog) {
        const auto* view = dialog.findChild<QAbstractItemView*>(QStringLiteral("id1000"));
        ASSERT_NE(view, nullptr);
        EXPECT_EQ(view->model()->index(0, 2).data().toString(), QStringLiteral("P1bis"));
        ui::press(dialog, 2);
    });
    action(QStringLiteral("Tabella attributi...")).trigger();
    EXPECT_EQ(driver.stepsTaken(), 1);
    EXPECT_EQ(pointName(window.document()), QStringLiteral("P1bis"))
        << "cancelling the grid takes back what was done in the grid";
}

TEST_F(IdentifyWindowTest, ClosingAsksForTextThatIsStillBeingTyped)
{
    typeAtEnd(1, QStringLiteral(" nord"));
    {
        ui::CModalDriver driver;
        driver.box(QStringLiteral("Salvare le modifiche a \"t.gpkg\"?"), kit::Answer::Cancel);
        EXPECT_FALSE(window.close());
    }
    EXPECT_FALSE(window.document().isSaved());
}

TEST_F(IdentifyWindowTest, UndoTakesBackWhatIsBeingTyped)
{
    renameTable(window.document(), "Prima");
    typeAtEnd(0, QStringLiteral("bis"));
    action(QStringLiteral("Annulla Rinomina")).trigger();
    EXPECT_EQ(pointName(window.document()), QStringLiteral("P1"));
    EXPECT_EQ(edit(0).text(), QStringLiteral("P1"));
    EXPECT_EQ(tableName(window.document()), QStringLiteral("Prima"));
}

TEST_F(IdentifyWindowTest, TextBeingTypedBelongsToItsEntityAlsoWhenAnotherIsShown)
{
    typeAtEnd(0, QStringLiteral("bis"));
    identify(90, 90); // has no point
    EXPECT_EQ(pointName(window.document()), QStringLiteral("P1bis"));
    EXPECT_FALSE(window.document().isSaved());
    identify(10, 10);
    EXPECT_EQ(edit(0).text(), QStringLiteral("P1bis"));
}

/// Two points: the second must never get what was typed for the first.
TEST_F(IdentifyWindowTest, TextBeingTypedDoesNotGoToAnotherPoint)
{
    const QString other = folder.file(QStringLiteral("due.gpkg"));
    openTown(window.document(), other,
        "table T (nome text); rows T: ('a'), ('b'); theme P: points 2d on T active;"
        "ents P: 0 [10 10] point 'P1' 'uno', 1 [90 90] point 'P2' 'due'");
    auto* panel = window.findChild<app::IdentifyPanel*>();
    panel->show(entity(0, 0));
    typeAtEnd(0, QStringLiteral("bis"));
    panel->show(entity(0, 1)); // as a program does it: the edit keeps the focus
    EXPECT_EQ(edit(0).text(), QStringLiteral("P2"));
    EXPECT_EQ(pointName(window.document()), QStringLiteral("P1bis"));
    panel->commit();
    const auto& geometry = window.document().library().GetTheme(0)->geometry();
    EXPECT_EQ(geometry.linkedPointOf(1)->name, orv::String("P2"));
}

} // namespace
