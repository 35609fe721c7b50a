// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/app/AppTesting.h"

#include "app/ThemePanel.h"
#include "kit/texts/QtText.h"

#include <QListWidget>
#include <QTest>
#include <QTextDocument>

namespace {

using namespace apptest;

// Made in another order than that in which they are drawn.
constexpr std::string_view AllKinds
    = "table T (nome text); rows T: ('a'), ('b'), ('c'), ('d');"
      "theme Punti1: points 2d on T active; ents Punti1: 0 [10 10], 1 [20 20];"
      "theme Aree1: polygons 2d on T; ents Aree1: 2 [0 0, 0 40, 40 40, 40 0, 0 0];"
      "theme Linee1: lines 2d on T; ents Linee1: 3 [0 0, 90 90];"
      "theme Aree2: polygons 2d on T hidden;"
      "theme Punti2: points 2d on T";

class ThemePanelTest : public CTownWindow {
protected:
    ThemePanelTest()
        : CTownWindow(AllKinds)
    {
    }

    QListWidget& list() { return *window.findChild<QListWidget*>(QStringLiteral("themes")); }
    QListWidgetItem& line(const QString& theme)
    {
        for (int row = 0; row < list().count(); ++row)
            if (list().item(row)->text().startsWith(theme))
                return *list().item(row);
        qFatal("no line of %s", qPrintable(theme));
    }
    app::ThemePanel& panel() { return *window.findChild<app::ThemePanel*>(); }
    gis::CLibGis& library() { return window.document().library(); }
    gis::CTheme* theme(const char* name) { return library().FindTheme(name); }
    void choose(const QString& name) { list().setCurrentItem(&line(name)); }
    QPoint placeOf(const QString& name) { return list().visualItemRect(&line(name)).center(); }
    [[nodiscard]] QStringList drawn()
    {
        QStringList names;
        for (const auto& layer : window.canvas().content()->layers)
            names << layer.name;
        return names;
    }
};

TEST_F(ThemePanelTest, LinesStandInDrawingOrderFromTheTopWithTheirCounts)
{
    QStringList texts;
    for (int row = 0; row < list().count(); ++row)
        texts << list().item(row)->text();
    EXPECT_EQ(texts.join(QLatin1Char('|')).toStdString(),
        "Punti2  (0)|Punti1  (2)|Linee1  (1)|Aree2  (0)|Aree1  (1)");
    QStringList fromTop;
    const QStringList layers = drawn();
    for (auto layer = layers.rbegin(); layer != layers.rend(); ++layer)
        fromTop << *layer;
    EXPECT_EQ(fromTop.join(QLatin1Char('|')).toStdString(), "Punti2|Punti1|Linee1|Aree1")
        << "as the map draws them, but for the hidden one";
}

TEST_F(ThemePanelTest, TheCheckBoxHidesAThemeOnTheMapAsOneStep)
{
    ASSERT_EQ(line(QStringLiteral("Linee1")).checkState(), Qt::Checked);
    ASSERT_EQ(line(QStringLiteral("Aree2")).checkState(), Qt::Unchecked);
    choose(QStringLiteral("Linee1"));
    QTest::keyClick(&list(), Qt::Key_Space);
    ASSERT_TRUE(waitFor([&] { return !library().GetThemeVisible(theme("Linee1")); }));
    EXPECT_FALSE(drawn().contains(QStringLiteral("Linee1")));
    EXPECT_EQ(line(QStringLiteral("Linee1")).checkState(), Qt::Unchecked);
    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Nascondi tema"));
    EXPECT_FALSE(window.document().isSaved());

    QTest::keyClick(&list(), Qt::Key_Space);
    ASSERT_TRUE(waitFor([&] { return library().GetThemeVisible(theme("Linee1")); }));
    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Mostra tema"));
    window.document().undo();
    EXPECT_EQ(line(QStringLiteral("Linee1")).checkState(), Qt::Unchecked);
    window.document().undo();
    EXPECT_EQ(line(QStringLiteral("Linee1")).checkState(), Qt::Checked);
    EXPECT_TRUE(drawn().contains(QStringLiteral("Linee1")));
    EXPECT_FALSE(window.document().changes().CanUndo()) << "one step each";
    EXPECT_TRUE(window.document().isSaved());
}

TEST_F(ThemePanelTest, ADoubleClickMakesAThemeTheActiveOne)
{
    EXPECT_TRUE(line(QStringLiteral("Punti1")).font().bold());
    const QPoint place = placeOf(QStringLiteral("Aree1"));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, place);
    EXPECT_EQ(library().GetThemeActive(), theme("Aree1"));
    EXPECT_TRUE(line(QStringLiteral("Aree1")).font().bold());
    EXPECT_FALSE(line(QStringLiteral("Punti1")).font().bold());
    EXPECT_EQ(window.document().changes().UndoName(), orv::String("Tema attivo"));
    window.document().undo();
    EXPECT_EQ(library().GetThemeActive(), theme("Punti1"));
    EXPECT_TRUE(line(QStringLiteral("Punti1")).font().bold());
}

TEST_F(ThemePanelTest, TheCurrentLineStaysWithItsThemeWhateverChanges)
{
    choose(QStringLiteral("Linee1"));
    ASSERT_EQ(panel().currentTheme(), theme("Linee1"));
    window.document().act(QStringLiteral("Tema nuovo"), [&] {
        library().CreateTheme(
            library().GetTable(0), "Sopra", gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    });
    ASSERT_EQ(list().count(), 6);
    EXPECT_EQ(panel().currentTheme(), theme("Linee1")) << "one line further down now";
    window.document().undo();
    ASSERT_EQ(list().count(), 5);
    EXPECT_EQ(panel().currentTheme(), theme("Linee1"));
    renameTable(window.document(), "Altra");
    EXPECT_EQ(panel().currentTheme(), theme("Linee1"));

    window.document().startNew();
    EXPECT_EQ(panel().currentTheme(), nullptr);
    EXPECT_EQ(list().count(), 0);
}

TEST_F(ThemePanelTest, NamesAreShownAsTheyAre)
{
    window.document().act(QStringLiteral("Nomi"), [&] {
        library().SetThemeName(theme("Linee1"), "<b>Vie</b> & piazze");
        library().SetTableName(library().GetTable(0), "T <i>&</i> U");
    });
    const QListWidgetItem& shown = line(QStringLiteral("<b>Vie"));
    EXPECT_EQ(shown.text(), QStringLiteral("<b>Vie</b> & piazze  (1)"));
    QTextDocument tip; // as the tip's window reads it
    tip.setHtml(shown.toolTip());
    EXPECT_EQ(tip.toPlainText(), QStringLiteral("Tabella: T <i>&</i> U"));
    tip.setHtml(line(QStringLiteral("Punti1")).toolTip());
    EXPECT_EQ(tip.toPlainText(), QStringLiteral("Tabella: T <i>&</i> U — tema attivo"));
}

} // namespace
