// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/ThemeMapEdit.h"

#include "embedded/base/Palette.h"
#include "embedded/model/ThemeClasses.h"
#include "host/base/ChangeManager.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace {

using gis::CCtrlThemeMapEdit;
using gis::CLibGis;
using gis::MapType;
using support::describe;
using support::makeLibrary;

/// One class a line: `low..high colour 'label'`, the default class marked by `*`.
std::string printClasses(CLibGis& library, CCtrlThemeMapEdit& map)
{
    std::string out;
    for (int i = 0; i < map.GetNumFeatureClasses(); ++i) {
        gis::CFeatureClass* one = map.GetFeatureClass(i);
        orv::CPolyValue low;
        orv::CPolyValue high;
        CLibGis::GetLimitValue(one, low, high);
        out += library.IsDefaultFeatureClass(one) ? "* " : "";
        out += describe(low) + ".." + describe(high) + " " + describe(CLibGis::GetColor(one)) + " "
            + describe(CLibGis::GetLabel(one)) + "\n";
    }
    return out;
}

struct Mapped {
    explicit Mapped(const char* tables)
        : library(makeLibrary(std::string(tables) + "; theme T: polygons on T", &changes))
        , table(library->GetTable(0))
        , theme(library->GetTheme(0))
        , map(theme)
    {
    }
    gis::CField* field(int index) { return library->GetField(table, index); }
    std::string classes() { return printClasses(*library, map); }

    orv::CChangeTransactionManager changes;
    std::unique_ptr<CLibGis> library;
    gis::CDBTable* table;
    gis::CTheme* theme;
    CCtrlThemeMapEdit map;
};

constexpr const char* Numbers = "table T (n integer, d decimal 2, t text, b boolean, g date);"
                                "rows T: (10, 1.5, 'b', yes, 02/01/2020), (0, -2, 'a', no, -),"
                                "(10, 1.5, 'Z', yes, 01/01/1950), (-, 0.25, 'b', yes, 02/01/2020)";

TEST(ThemeMapEditTest, AThemeWithoutAMapHasOneClassForAll)
{
    Mapped mapped(Numbers);

    EXPECT_EQ(mapped.map.GetMapType(), MapType::None);
    EXPECT_EQ(mapped.map.GetField(), nullptr);
    EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\n-..- 200 'Tutti'\n");
}

TEST(ThemeMapEditTest, SingleValuesAscendAfterTheClassOfRowsWithoutAValue)
{
    Mapped mapped(Numbers);
    mapped.map.SetMapType(MapType::SingleValue);

    mapped.map.SetField(mapped.field(0));
    EXPECT_EQ(
        mapped.classes(), "* -..- 7 'Default'\n-..- 7 'Vuoto'\n0..0 200 '0'\n10..10 62 '10'\n");
    mapped.map.SetField(mapped.field(1));
    EXPECT_EQ(mapped.classes(),
        "* -..- 7 'Default'\n-2..-2 200 '-2'\n0.25..0.25 62 '0.25'\n1.5..1.5 27 '1.5'\n");
    mapped.map.SetField(mapped.field(2));
    EXPECT_EQ(mapped.classes(),
        "* -..- 7 'Default'\n'Z'..'Z' 200 'Z'\n'a'..'a' 62 'a'\n'b'..'b' 27 'b'\n");
    mapped.map.SetField(mapped.field(3));
    EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\nno..no 200 'No'\nyes..yes 62 'S\xC3\xAC'\n");
    mapped.map.SetField(mapped.field(4));
    EXPECT_EQ(mapped.classes(),
        "* -..- 7 'Default'\n-..- 7 'Vuoto'\n01/01/1950..01/01/1950 200 '01/01/1950'\n"
        "02/01/2020..02/01/2020 62 '02/01/2020'\n");
}

TEST(ThemeMapEditTest, WholeNumbersFallIntoEqualRangesOneAfterTheOther)
{
    Mapped mapped("table T (n integer); rows T: (0), (10)");
    mapped.map.SetMapType(MapType::Interval);
    mapped.map.SetField(mapped.field(0));

    mapped.map.SetNumClasses(3);

    EXPECT_EQ(mapped.map.GetNumClasses(), 3);
    EXPECT_EQ(mapped.classes(),
        "* -..- 7 'Default'\n0..2 200 '0 - 2'\n3..6 62 '3 - 6'\n7..10 27 '7 - 10'\n");
}

TEST(ThemeMapEditTest, DecimalRangesMeet)
{
    Mapped mapped("table T (d decimal 2); rows T: (0), (10), (-)");
    mapped.map.SetMapType(MapType::Interval);
    mapped.map.SetField(mapped.field(0));

    mapped.map.SetNumClasses(4);

    EXPECT_EQ(mapped.classes(),
        "* -..- 7 'Default'\n-..- 7 'Vuoto'\n0..2.5 200 '0 - 2.5'\n2.5..5 62 '2.5 - 5'\n"
        "5..7.5 27 '5 - 7.5'\n7.5..10 55 '7.5 - 10'\n");
}

TEST(ThemeMapEditTest, TheLastRangeEndsWithTheLargestValue)
{
    Mapped mapped(
        "table T (d decimal 2, n integer); rows T: (0.1, -2147483648), (0.7, 2147483647)");
    for (int field = 0; field < 2; ++field)
        for (const int count : { 1, 3, 7, 24 }) {
            mapped.map.SetMapType(MapType::Interval);
            mapped.map.SetField(mapped.field(field));
            mapped.map.SetNumClasses(count);

            ASSERT_EQ(mapped.map.GetNumFeatureClasses(), count + 1);
            orv::CPolyValue low;
            orv::CPolyValue high;
            CLibGis::GetLimitValue(mapped.map.GetFeatureClass(count), low, high);
            EXPECT_EQ(high, field == 0 ? orv::CPolyValue(0.7) : orv::CPolyValue(2147483647));
            CLibGis::GetLimitValue(mapped.map.GetFeatureClass(1), low, high);
            EXPECT_EQ(low, field == 0 ? orv::CPolyValue(0.1) : orv::CPolyValue(-2147483647 - 1));
        }
}

TEST(ThemeMapEditTest, OneNumberIsOneRangeShownOnce)
{
    Mapped mapped("table T (n integer); rows T: (7), (7)");
    mapped.map.SetMapType(MapType::Interval);
    mapped.map.SetField(mapped.field(0));
    mapped.map.SetNumClasses(5);

    EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\n7..7 200 '7'\n");
}

TEST(ThemeMapEditTest, IntervalsOfOtherFieldsAreTheDefaultClassOnly)
{
    Mapped mapped(Numbers);
    mapped.map.SetField(mapped.field(2));
    mapped.map.SetMapType(MapType::Interval);
    EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\n");

    mapped.map.SetField(nullptr);
    EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\n");
    EXPECT_EQ(mapped.map.GetField(), nullptr);
}

TEST(ThemeMapEditTest, ATableWithoutValuesHasNoValueClasses)
{
    Mapped mapped("table T (n integer, d decimal 2); rows T: (-, -)");
    for (const auto type : { MapType::SingleValue, MapType::Interval }) {
        mapped.map.SetMapType(type);
        mapped.map.SetField(mapped.field(0));
        EXPECT_EQ(mapped.classes(), "* -..- 7 'Default'\n-..- 7 'Vuoto'\n");
    }
    Mapped empty("table T (n integer)");
    empty.map.SetMapType(MapType::SingleValue);
    empty.map.SetField(empty.field(0));
    EXPECT_EQ(empty.classes(), "* -..- 7 'Default'\n");
}

TEST(ThemeMapEditTest, SettersRebuildAlsoWithTheSameValue)
{
    Mapped mapped(Numbers);
    mapped.map.SetMapType(MapType::SingleValue);
    mapped.map.SetField(mapped.field(0));
    const std::string built = mapped.classes();
    const auto edit = [&mapped] {
        CLibGis::SetLabel(mapped.map.GetFeatureClass(2), "mia");
        CLibGis::SetColor(mapped.map.GetFeatureClass(2), 3);
    };

    edit();
    mapped.map.SetMapType(MapType::SingleValue);
    EXPECT_EQ(mapped.classes(), built);
    edit();
    mapped.map.SetField(mapped.field(0));
    EXPECT_EQ(mapped.classes(), built);
    edit();
    mapped.map.SetNumClasses(1);
    EXPECT_EQ(mapped.classes(), built);
}

TEST(ThemeMapEditTest, NothingReachesTheThemeBeforeCommit)
{
    Mapped mapped(Numbers);
    mapped.map.SetMapType(MapType::SingleValue);
    mapped.map.SetField(mapped.field(0));

    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::None);
    EXPECT_FALSE(mapped.library->GetModifiedFlag());
    EXPECT_FALSE(mapped.changes.CanUndo());
}

TEST(ThemeMapEditTest, CommitIsOneStepWithTheUsersEdits)
{
    Mapped mapped(Numbers);
    mapped.map.SetMapType(MapType::Interval);
    mapped.map.SetField(mapped.field(0));
    mapped.map.SetNumClasses(2);
    CLibGis::SetLabel(mapped.map.GetFeatureClass(2), "bassa");
    CLibGis::SetRotate(mapped.map.GetFeatureClass(2), 1.5);
    CLibGis::SetLimitValue(mapped.map.GetFeatureClass(2), orv::CPolyValue(0), orv::CPolyValue(4));
    const std::string edited = mapped.classes();

    EXPECT_TRUE(mapped.map.Commit(nullptr));

    CCtrlThemeMapEdit committed(mapped.theme);
    EXPECT_EQ(committed.GetMapType(), MapType::Interval);
    EXPECT_EQ(committed.GetField(), mapped.field(0));
    EXPECT_EQ(committed.GetNumClasses(), 2);
    EXPECT_EQ(printClasses(*mapped.library, committed), edited);
    EXPECT_EQ(CLibGis::GetRotate(committed.GetFeatureClass(2)), 1.5);
    EXPECT_TRUE(mapped.library->GetModifiedFlag());
    EXPECT_TRUE(mapped.changes.Undo());
    EXPECT_EQ(CCtrlThemeMapEdit(mapped.theme).GetMapType(), MapType::None);
    EXPECT_FALSE(mapped.changes.CanUndo());
    EXPECT_TRUE(mapped.changes.Redo());
    CCtrlThemeMapEdit again(mapped.theme);
    EXPECT_EQ(printClasses(*mapped.library, again), edited);
}

TEST(ThemeMapEditTest, EditsAfterACommitStayPending)
{
    Mapped mapped(Numbers);
    mapped.map.SetMapType(MapType::SingleValue);
    mapped.map.SetField(mapped.field(0));
    ASSERT_TRUE(mapped.map.Commit(nullptr));

    CLibGis::SetLabel(mapped.map.GetFeatureClass(2), "dopo");

    CCtrlThemeMapEdit committed(mapped.theme);
    EXPECT_EQ(CLibGis::GetLabel(committed.GetFeatureClass(2)), orv::String("0"));
}

TEST(ThemeMapEditTest, ACommitThatChangesNothingLeavesNoStep)
{
    Mapped mapped(Numbers);

    EXPECT_TRUE(mapped.map.Commit(nullptr));

    EXPECT_FALSE(mapped.changes.CanUndo());
}

TEST(ThemeMapEditTest, SmallestAndLargestComeFromAllRowsOfTheTable)
{
    Mapped mapped(Numbers);
    const auto range = [&mapped](int field) {
        orv::CPolyValue low;
        orv::CPolyValue high;
        bool found = false;
        mapped.map.FindMinMaxValuesInTable(mapped.theme, mapped.field(field), low, high, found);
        return describe(low) + ".." + describe(high) + (found ? " empty" : "");
    };

    EXPECT_EQ(range(0), "0..10 empty");
    EXPECT_EQ(range(1), "-2..1.5");
    EXPECT_EQ(range(2), "'Z'..'b'");
    EXPECT_EQ(range(3), "no..yes");
    EXPECT_EQ(range(4), "01/01/1950..02/01/2020 empty");
}

TEST(ThemeMapEditTest, NullsAndForeignFieldsAreHarmless)
{
    Mapped mapped(Numbers);
    Mapped other(Numbers);
    orv::CPolyValue low(1);
    orv::CPolyValue high(1);
    bool found = true;

    mapped.map.FindMinMaxValuesInTable(nullptr, mapped.field(0), low, high, found);
    EXPECT_TRUE(low.IsEmpty());
    EXPECT_FALSE(found);
    mapped.map.SetField(other.field(0));
    EXPECT_EQ(mapped.map.GetField(), nullptr);
    EXPECT_EQ(mapped.map.GetFeatureClass(-1), nullptr);
    EXPECT_EQ(mapped.map.GetFeatureClass(99), nullptr);
    mapped.map.SetNumClasses(-4);
    EXPECT_EQ(mapped.map.GetNumClasses(), 1);
    mapped.map.SetMapType(static_cast<MapType>(3));
    EXPECT_EQ(mapped.map.GetMapType(), MapType::None);

    CCtrlThemeMapEdit nowhere(nullptr);
    EXPECT_EQ(nowhere.GetNumFeatureClasses(), 2);
    EXPECT_FALSE(nowhere.Commit(nullptr));
}

TEST(ThemeMapEditTest, AThemeThatIsGoneTakesNoMap)
{
    // Cleared, nobody can take the deletion back: the theme's memory is let go.
    for (const bool isCleared : { false, true }) {
        Mapped mapped("table T (n integer); theme Altro: lines on T");
        mapped.library->SetThemeActive(mapped.library->FindTheme("Altro"));
        gis::CTheme* theme = mapped.library->FindTheme("T");
        CCtrlThemeMapEdit map(theme);
        map.SetMapType(MapType::SingleValue);
        ASSERT_TRUE(mapped.library->DeleteTheme(theme));
        if (isCleared)
            mapped.changes.Clear();

        EXPECT_FALSE(map.Commit(nullptr));
        EXPECT_EQ(mapped.changes.CanUndo(), !isCleared);
    }
}

TEST(ThemeMapEditTest, AThemeDeletedWhereNothingIsRecordedIsNotTouched)
{
    const auto library
        = makeLibrary("table T (n integer); theme Altro: lines on T active; theme T: points on T");
    gis::CTheme* theme = library->FindTheme("T");
    CCtrlThemeMapEdit map(theme);
    map.SetMapType(MapType::SingleValue);
    ASSERT_TRUE(library->DeleteTheme(theme));

    EXPECT_FALSE(map.Commit(nullptr));
}

std::unique_ptr<CLibGis> libraryOfValues(int count)
{
    support::LibraryPlan plan
        = support::planFrom("table T (n integer, t text); theme T: points on T");
    for (int i = 0; i < count; ++i)
        plan.tables[0].rows.push_back(
            { orv::CPolyValue(count - i), orv::CPolyValue(orv::String::ValueOf(100000 + i)) });
    auto library = std::make_unique<CLibGis>();
    support::fillLibrary(*library, plan);
    return library;
}

TEST(ThemeMapEditTest, NoMoreSingleValuesThanTheLimitGetAClass)
{
    for (const int count : { embedded::MaxSingleValueClasses - 1, embedded::MaxSingleValueClasses,
             embedded::MaxSingleValueClasses + 1 }) {
        const auto library = libraryOfValues(count);
        CCtrlThemeMapEdit map(library->GetTheme(0));
        map.SetMapType(MapType::SingleValue);
        for (int field = 0; field < 2; ++field) {
            map.SetField(library->GetField(library->GetTable(0), field));

            const int expected = std::min(count, embedded::MaxSingleValueClasses);
            EXPECT_EQ(map.GetNumFeatureClasses(), expected + 1);
            EXPECT_EQ(CLibGis::GetLabel(map.GetFeatureClass(expected)),
                orv::String::ValueOf(field == 0 ? expected : 100000 + expected - 1));
        }
    }
}

TEST(ThemeMapEditTest, ColoursRepeatOnlyAfterTwentyFourClasses)
{
    const auto library = libraryOfValues(25);
    CCtrlThemeMapEdit map(library->GetTheme(0));
    map.SetMapType(MapType::SingleValue);
    map.SetField(library->GetField(library->GetTable(0), 0));

    std::set<int> colours;
    for (int i = 1; i <= 24; ++i)
        colours.insert(CLibGis::GetColor(map.GetFeatureClass(i)));

    EXPECT_EQ(colours.size(), 24u);
    EXPECT_EQ(colours.count(embedded::ForegroundColour), 0u);
    EXPECT_EQ(
        CLibGis::GetColor(map.GetFeatureClass(25)), CLibGis::GetColor(map.GetFeatureClass(1)));
}

TEST(ThemeMapEditTest, ManyRowsInSeveralChunksAreAllLookedAt)
{
    const auto library = libraryOfValues(200000);
    gis::CField* field = library->GetField(library->GetTable(0), 0);
    orv::CPolyValue low;
    orv::CPolyValue high;
    bool found = true;

    CCtrlThemeMapEdit map(library->GetTheme(0));
    map.FindMinMaxValuesInTable(library->GetTheme(0), field, low, high, found);

    EXPECT_EQ(low, orv::CPolyValue(1));
    EXPECT_EQ(high, orv::CPolyValue(200000));
    EXPECT_FALSE(found);
}

TEST(ThemeClassesTest, NotANumberIsInNoClass)
{
    constexpr double nothing = std::numeric_limits<double>::quiet_NaN();
    embedded::Column column(gis::ColumnKind::Decimal);
    for (const double value : { nothing, 3.0, nothing, 1.0, 2.0, nothing, 1.0 })
        column.appendDecimal(value);

    const auto values = embedded::distinctValues(column, 10);
    ASSERT_EQ(values.size(), 3U);
    EXPECT_EQ(values[0], orv::CPolyValue(1.0));
    EXPECT_EQ(values[2], orv::CPolyValue(3.0));
    const auto range = embedded::rangeOf(column);
    EXPECT_EQ(range.minimum, orv::CPolyValue(1.0));
    EXPECT_EQ(range.maximum, orv::CPolyValue(3.0));
}

} // namespace
