// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

namespace {

using gis::CLibGis;
using gis::EntType;
using gis::EntTypeCoords;

CONTRACT_SUITE(ThemesContract);

TEST_P(ThemesContract, ThemesTellWhatTheyWereMadeOf)
{
    CLibGis& library = make("table T (a text)", 5);
    gis::CDBTable* table = library.GetTable(0);

    gis::CTheme* theme
        = library.CreateTheme(table, "Aree", EntType::Polygons, EntTypeCoords::XYZ, 42);

    ASSERT_NE(theme, nullptr);
    EXPECT_EQ(library.GetNumThemes(), 1);
    EXPECT_EQ(library.GetTheme(0), theme);
    EXPECT_EQ(library.GetThemeName(theme), orv::String("Aree"));
    EXPECT_EQ(library.GetTable(theme), table);
    EXPECT_EQ(CLibGis::GetEntType(theme), EntType::Polygons);
    EXPECT_EQ(library.GetEntCoords(theme), EntTypeCoords::XYZ);
    EXPECT_EQ(library.GetThemeTargetDrawing(theme), 42);
    EXPECT_EQ(library.GetTargetDrawing(), 5);
    EXPECT_TRUE(library.GetThemeVisible(theme));
    EXPECT_FALSE(library.GetThemeLocked(theme));
    EXPECT_EQ(library.GetNoEnts(theme), 0);
}

TEST_P(ThemesContract, EveryGeometryAndCoordinateTypeIsKept)
{
    CLibGis& library = make("table T (a text)");
    for (const auto type : { EntType::Points, EntType::Lines, EntType::Polygons })
        for (const auto coords : { EntTypeCoords::XY, EntTypeCoords::XYM, EntTypeCoords::XYZ }) {
            gis::CTheme* theme = library.CreateTheme(library.GetTable(0), "x", type, coords, 0);
            EXPECT_EQ(CLibGis::GetEntType(theme), type);
            EXPECT_EQ(library.GetEntCoords(theme), coords);
        }
}

TEST_P(ThemesContract, WithoutATableThereIsNoTheme)
{
    CLibGis& library = make("");

    EXPECT_EQ(library.CreateTheme(nullptr, "Vie", EntType::Lines, EntTypeCoords::XY, 0), nullptr);
    EXPECT_EQ(library.GetNumThemes(), 0);
}

TEST_P(ThemesContract, TwoThemesMayHaveOneName)
{
    CLibGis& library = make("table T (a text); theme Vie: lines on T");

    EXPECT_NE(library.CreateTheme(library.GetTable(0), "Vie", EntType::Lines, EntTypeCoords::XY, 0),
        nullptr);
    EXPECT_NE(library.CreateTheme(library.GetTable(0), "", EntType::Lines, EntTypeCoords::XY, 0),
        nullptr);
    EXPECT_EQ(library.GetNumThemes(), 3);
    EXPECT_EQ(library.FindTheme("Vie"), library.GetTheme(0));
}

TEST_P(ThemesContract, NamesAreFoundWithoutRegardToAsciiCaseAndExactlyFirst)
{
    CLibGis& library = make("table T (a text); theme vie: lines on T; theme VIE: lines on T");

    EXPECT_EQ(library.FindTheme("VIE"), library.GetTheme(1));
    EXPECT_EQ(library.FindTheme("Vie"), library.GetTheme(0));
    EXPECT_EQ(library.FindTheme("via"), nullptr);
    EXPECT_EQ(library.GetTheme(2), nullptr);
    EXPECT_EQ(library.GetTheme(-1), nullptr);
}

TEST_P(ThemesContract, TheFirstThemeBecomesActiveAndLaterOnesDoNot)
{
    CLibGis& library = make("table T (a text)");
    EXPECT_EQ(library.GetThemeActive(), nullptr);

    gis::CTheme* first
        = library.CreateTheme(library.GetTable(0), "a", EntType::Lines, EntTypeCoords::XY, 0);
    gis::CTheme* second
        = library.CreateTheme(library.GetTable(0), "b", EntType::Lines, EntTypeCoords::XY, 0);

    EXPECT_EQ(library.GetThemeActive(), first);
    EXPECT_TRUE(library.IsThemeActive(first));
    EXPECT_FALSE(library.IsThemeActive(second));
    library.SetThemeActive(second);
    EXPECT_EQ(library.GetThemeActive(), second);
    EXPECT_FALSE(library.IsThemeActive(first));
    EXPECT_FALSE(library.IsThemeActive(nullptr));
}

TEST_P(ThemesContract, OnlyAnInactiveThemeWithoutEntitiesIsDeleted)
{
    CLibGis& library
        = make("table T (a text); rows T: ('x'); theme attivo: lines on T;"
               "theme pieno: points on T; ents pieno: 0 [1 2]; theme vuoto: lines on T");

    EXPECT_FALSE(library.DeleteTheme(library.FindTheme("attivo")));
    EXPECT_FALSE(library.DeleteTheme(library.FindTheme("pieno")));
    EXPECT_FALSE(library.DeleteTheme(nullptr));
    EXPECT_TRUE(library.DeleteTheme(library.FindTheme("vuoto")));
    EXPECT_EQ(library.GetNumThemes(), 2);
    EXPECT_EQ(library.FindTheme("vuoto"), nullptr);
    EXPECT_EQ(library.GetNumTables(), 1) << "the table stays";
}

TEST_P(ThemesContract, SettingsReadBack)
{
    CLibGis& library = make("table T (a text); theme Vie: lines on T");
    gis::CTheme* theme = library.GetTheme(0);

    library.SetThemeName(theme, "%1");
    library.SetThemeVisible(theme, false);
    library.SetThemeLocked(theme, true);
    library.SetThemeTargetDrawing(theme, 0x7FFFFFFFFFFF);

    EXPECT_EQ(library.GetThemeName(theme), orv::String("%1"));
    EXPECT_FALSE(library.GetThemeVisible(theme));
    EXPECT_TRUE(library.GetThemeLocked(theme));
    EXPECT_EQ(library.GetThemeTargetDrawing(theme), 0x7FFFFFFFFFFF);
    library.ThemeIsChange(theme);
    library.ThemeIsChange(nullptr);
}

TEST_P(ThemesContract, LabelOptionsAreKeptAsAWhole)
{
    CLibGis& library = make("table T (a text); theme Vie: lines on T");
    gis::CTheme* theme = library.GetTheme(0);
    EXPECT_EQ(library.GetThemeOpzLabel(theme).field, nullptr);
    gis::TOpzLabel options;
    options.field = library.GetField(library.GetTable(0), 0);
    options.styleName = "Standard";
    options.colour = 3;
    options.heightDrawingUnits = orv::UnsetDecimal; // an entry that was no number is kept too
    options.rotationRadians = -1.5;
    options.horizontalOffset = 0.25;
    options.verticalOffset = 1e-9;
    options.aligned = true;

    library.SetThemeOpzLabel(theme, options);
    const gis::TOpzLabel read = library.GetThemeOpzLabel(theme);

    EXPECT_EQ(read.field, options.field);
    EXPECT_EQ(read.styleName, options.styleName);
    EXPECT_EQ(read.colour, 3);
    EXPECT_EQ(read.heightDrawingUnits, orv::UnsetDecimal);
    EXPECT_EQ(read.rotationRadians, -1.5);
    EXPECT_EQ(read.horizontalOffset, 0.25);
    EXPECT_EQ(read.verticalOffset, 1e-9);
    EXPECT_TRUE(read.aligned);
}

TEST_P(ThemesContract, ChangedLabelOptionsMarkTheLibraryModified)
{
    CLibGis& library = make("table T (a text); theme Vie: lines on T");
    gis::TOpzLabel options;
    options.colour = 3;

    library.SetThemeOpzLabel(library.GetTheme(0), options);

    EXPECT_TRUE(library.GetModifiedFlag());
}

TEST_P(ThemesContract, NullThemesAreHarmless)
{
    CLibGis& library = make("table T (a text); theme Vie: lines on T");
    gis::CTheme* const none = nullptr;

    EXPECT_EQ(library.GetThemeName(none), orv::String());
    library.SetThemeName(none, "x");
    static_cast<void>(CLibGis::GetEntType(none));
    static_cast<void>(library.GetEntCoords(none));
    EXPECT_FALSE(library.GetThemeVisible(none));
    library.SetThemeVisible(none, true);
    EXPECT_FALSE(library.GetThemeLocked(none));
    library.SetThemeLocked(none, true);
    EXPECT_EQ(library.GetThemeTargetDrawing(none), 0);
    library.SetThemeTargetDrawing(none, 3);
    EXPECT_EQ(library.GetThemeOpzLabel(none).field, nullptr);
    library.SetThemeOpzLabel(none, gis::TOpzLabel());
    EXPECT_EQ(library.GetNoEnts(none), 0);
    EXPECT_EQ(library.GetEnt(none, 0), nullptr);
    EXPECT_EQ(CLibGis::GetTheme(static_cast<gis::CEnt*>(nullptr)), nullptr);
    EXPECT_FALSE(library.GetModifiedFlag());
}

} // namespace
