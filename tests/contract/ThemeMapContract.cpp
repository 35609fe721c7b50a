// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/gis/ThemeMapEdit.h"

#include <set>

namespace {

using gis::CCtrlThemeMapEdit;
using gis::CLibGis;
using gis::MapType;

CONTRACT_SUITE(ThemeMapContract);

constexpr const char* Numbers
    = "table T (n integer, d decimal 2, t text);"
      "rows T: (10, 1, 'b'), (0, 5, 'a'), (-, 3, 'b'); theme T: lines on T";

/// Limits of the classes, the default class as `*`.
std::string limits(CLibGis& library, CCtrlThemeMapEdit& map)
{
    std::string out;
    for (int i = 0; i < map.GetNumFeatureClasses(); ++i) {
        orv::CPolyValue low;
        orv::CPolyValue high;
        CLibGis::GetLimitValue(map.GetFeatureClass(i), low, high);
        out += i ? " " : "";
        out += library.IsDefaultFeatureClass(map.GetFeatureClass(i))
            ? "*"
            : support::describe(low) + ".." + support::describe(high);
    }
    return out;
}

TEST_P(ThemeMapContract, TheDefaultClassIsAlwaysThereAndFirst)
{
    CLibGis& library = make(Numbers);
    CCtrlThemeMapEdit map(library.GetTheme(0));

    EXPECT_EQ(map.GetMapType(), MapType::None);
    EXPECT_EQ(limits(library, map), "* -..-");
    map.SetMapType(MapType::Interval);
    EXPECT_EQ(limits(library, map), "*") << "no field yet";
    EXPECT_FALSE(library.IsDefaultFeatureClass(nullptr));
}

TEST_P(ThemeMapContract, SingleValuesAscendAfterTheClassWithoutAValue)
{
    CLibGis& library = make(Numbers);
    gis::CDBTable* table = library.GetTable(0);
    CCtrlThemeMapEdit map(library.GetTheme(0));
    map.SetMapType(MapType::SingleValue);

    map.SetField(library.GetField(table, 0));
    EXPECT_EQ(limits(library, map), "* -..- 0..0 10..10");
    map.SetField(library.GetField(table, 1));
    EXPECT_EQ(limits(library, map), "* 1..1 3..3 5..5");
    map.SetField(library.GetField(table, 2));
    EXPECT_EQ(limits(library, map), "* 'a'..'a' 'b'..'b'");
    EXPECT_EQ(map.GetField(), library.GetField(table, 2));
}

TEST_P(ThemeMapContract, IntervalsCoverTheValues)
{
    CLibGis& library = make(Numbers);
    gis::CDBTable* table = library.GetTable(0);
    CCtrlThemeMapEdit map(library.GetTheme(0));
    map.SetMapType(MapType::Interval);
    map.SetNumClasses(2);

    map.SetField(library.GetField(table, 0));
    EXPECT_EQ(limits(library, map), "* -..- 0..4 5..10");
    map.SetField(library.GetField(table, 1));
    EXPECT_EQ(limits(library, map), "* 1..3 3..5");
    map.SetField(library.GetField(table, 2));
    EXPECT_EQ(limits(library, map), "*") << "texts have no intervals";
    EXPECT_EQ(map.GetNumClasses(), 2);
}

TEST_P(ThemeMapContract, TheFlagOfTheRangeTellsOfRowsWithoutAValue)
{
    CLibGis& library = make(Numbers);
    gis::CDBTable* table = library.GetTable(0);
    CCtrlThemeMapEdit map(library.GetTheme(0));
    orv::CPolyValue low;
    orv::CPolyValue high;
    bool found = false;

    map.FindMinMaxValuesInTable(library.GetTheme(0), library.GetField(table, 0), low, high, found);
    EXPECT_EQ(support::describe(low) + " " + support::describe(high), "0 10");
    EXPECT_TRUE(found);
    map.FindMinMaxValuesInTable(library.GetTheme(0), library.GetField(table, 1), low, high, found);
    EXPECT_EQ(support::describe(low) + " " + support::describe(high), "1 5");
    EXPECT_FALSE(found);
}

TEST_P(ThemeMapContract, SettingTheSameAgainDropsTheUsersEdits)
{
    CLibGis& library = make(Numbers);
    gis::CField* field = library.GetField(library.GetTable(0), 1);
    CCtrlThemeMapEdit map(library.GetTheme(0));
    map.SetMapType(MapType::SingleValue);
    map.SetField(field);
    const orv::String label = CLibGis::GetLabel(map.GetFeatureClass(1));

    CLibGis::SetLabel(map.GetFeatureClass(1), "mia");
    map.SetMapType(MapType::SingleValue);
    EXPECT_EQ(CLibGis::GetLabel(map.GetFeatureClass(1)), label);
    CLibGis::SetLimitValue(map.GetFeatureClass(1), orv::CPolyValue(8), orv::CPolyValue(9));
    map.SetField(field);
    EXPECT_EQ(limits(library, map), "* 1..1 3..3 5..5");
}

TEST_P(ThemeMapContract, ClassPropertiesReadBack)
{
    CLibGis& library = make(Numbers);
    CCtrlThemeMapEdit map(library.GetTheme(0));
    gis::CFeatureClass* one = map.GetFeatureClass(1);

    CLibGis::SetColor(one, 1);
    CLibGis::SetColorOutLine(one, 2);
    CLibGis::SetHatchType(one, -2);
    CLibGis::SetWidth(one, 30);
    CLibGis::SetSymbol(one, 4);
    CLibGis::SetScala(one, 2.5);
    CLibGis::SetRotate(one, -0.25);
    CLibGis::SetLtypeName(one, "DASHED");
    CLibGis::SetLabel(one, "%s & <b>");
    CLibGis::SetLimitValue(one, orv::CPolyValue(3), orv::CPolyValue());

    EXPECT_EQ(CLibGis::GetColor(one), 1);
    EXPECT_EQ(CLibGis::GetColorOutLine(one), 2);
    EXPECT_EQ(CLibGis::GetHatchType(one), -2);
    EXPECT_EQ(CLibGis::GetWidth(one), 30);
    EXPECT_EQ(CLibGis::GetSymbol(one), 4);
    EXPECT_EQ(CLibGis::GetScala(one), 2.5);
    EXPECT_EQ(CLibGis::GetRotate(one), -0.25);
    EXPECT_EQ(CLibGis::GetLtypeName(one), orv::String("DASHED"));
    EXPECT_EQ(CLibGis::GetLabel(one), orv::String("%s & <b>"));
    EXPECT_EQ(limits(library, map), "* 3..-");
}

TEST_P(ThemeMapContract, OnlyCommitReachesTheTheme)
{
    CLibGis& library = make(Numbers);
    gis::CTheme* theme = library.GetTheme(0);
    CCtrlThemeMapEdit map(theme);
    map.SetMapType(MapType::Interval);
    map.SetField(library.GetField(library.GetTable(0), 0));
    map.SetNumClasses(5);
    CLibGis::SetLabel(map.GetFeatureClass(2), "bassa");

    EXPECT_EQ(CCtrlThemeMapEdit(theme).GetMapType(), MapType::None);
    EXPECT_FALSE(library.GetModifiedFlag());
    EXPECT_TRUE(map.Commit(nullptr));

    CCtrlThemeMapEdit committed(theme);
    EXPECT_TRUE(library.GetModifiedFlag());
    EXPECT_EQ(committed.GetMapType(), MapType::Interval);
    EXPECT_EQ(committed.GetField(), library.GetField(library.GetTable(0), 0));
    EXPECT_EQ(committed.GetNumClasses(), 5);
    EXPECT_EQ(limits(library, committed), limits(library, map));
    EXPECT_EQ(CLibGis::GetLabel(committed.GetFeatureClass(2)), orv::String("bassa"));
}

TEST_P(ThemeMapContract, FirstClassesAreToldApartByTheirColours)
{
    CLibGis& library = make("table T (n integer); rows T: (1), (2), (3), (4), (5), (6), (7), (8);"
                            "theme T: lines on T");
    CCtrlThemeMapEdit map(library.GetTheme(0));
    map.SetMapType(MapType::SingleValue);
    map.SetField(library.GetField(library.GetTable(0), 0));

    std::set<int> colours;
    for (int i = 1; i < map.GetNumFeatureClasses(); ++i)
        colours.insert(CLibGis::GetColor(map.GetFeatureClass(i)));

    EXPECT_EQ(colours.size(), 8u);
}

TEST_P(ThemeMapContract, NullsAreHarmless)
{
    CCtrlThemeMapEdit map(nullptr);
    orv::CPolyValue low(1);
    orv::CPolyValue high(1);
    bool found = true;

    EXPECT_EQ(map.GetFeatureClass(-1), nullptr);
    EXPECT_EQ(map.GetFeatureClass(1000), nullptr);
    map.SetField(nullptr);
    map.FindMinMaxValuesInTable(nullptr, nullptr, low, high, found);
    EXPECT_TRUE(low.IsEmpty() && high.IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_FALSE(map.Commit(nullptr));
    EXPECT_EQ(CLibGis::GetLabel(nullptr), orv::String());
    static_cast<void>(CLibGis::GetColor(nullptr));
    CLibGis::SetColor(nullptr, 1);
    CLibGis::SetLabel(nullptr, "x");
    CLibGis::SetLimitValue(nullptr, low, high);
    CLibGis::GetLimitValue(nullptr, low, high);
}

} // namespace
