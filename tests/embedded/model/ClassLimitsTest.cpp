// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

// What becomes of a map's classes when the field that they are made of gets another format.
#include "host/gis/TableEdit.h"
#include "host/gis/ThemeMapEdit.h"

#include "host/base/ChangeManager.h"
#include "tests/support/Describe.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using gis::CCtrlDlgTableEdit;
using gis::CCtrlThemeMapEdit;
using gis::FieldFormat;
using gis::MapType;
using support::describe;

/// A theme with a map over the first field of a table.
struct Classified {
    Classified(const std::string& notation, MapType type, int count)
        : library(support::makeLibrary(notation + "; theme T: points on T", &changes))
    {
        CCtrlThemeMapEdit map(library->GetTheme(0));
        map.SetMapType(type);
        map.SetField(library->GetField(library->GetTable(0), 0));
        map.SetNumClasses(count);
        EXPECT_TRUE(map.Commit(nullptr));
        changes.Clear();
    }
    void change(FieldFormat format)
    {
        CCtrlDlgTableEdit edit(library.get(), library->GetTable(0));
        edit.SetFieldFormat(edit.GetCurField(0), format);
        EXPECT_TRUE(edit.Commit());
    }
    /// Changes the map as its page does.
    void edit(const std::function<void(CCtrlThemeMapEdit&)>& change)
    {
        CCtrlThemeMapEdit map(library->GetTheme(0));
        change(map);
        EXPECT_TRUE(map.Commit(nullptr));
        changes.Clear();
    }
    /// `'Default' -..-, '1' 1..1`
    std::string classes()
    {
        CCtrlThemeMapEdit map(library->GetTheme(0));
        std::string text;
        for (int i = 0; i < map.GetNumFeatureClasses(); ++i) {
            orv::CPolyValue low;
            orv::CPolyValue high;
            gis::CLibGis::GetLimitValue(map.GetFeatureClass(i), low, high);
            text += (i == 0 ? "" : ", ") + describe(gis::CLibGis::GetLabel(map.GetFeatureClass(i)))
                + " " + describe(low) + ".." + describe(high);
        }
        return text;
    }
    orv::CChangeTransactionManager changes;
    std::unique_ptr<gis::CLibGis> library;
};

TEST(ClassLimitsTest, ValuesThatNoRowHasAnyMoreLoseTheirClass)
{
    Classified map(
        "table T (a text); rows T: ('12'), ('due'), ('x'), (-), ('7')", MapType::SingleValue, 5);
    const std::string before = map.classes();
    ASSERT_EQ(before,
        "'Default' -..-, 'Vuoto' -..-, '12' '12'..'12', '7' '7'..'7', 'due' 'due'..'due', "
        "'x' 'x'..'x'");

    map.change(FieldFormat::Integer);

    EXPECT_EQ(map.classes(), "'Default' -..-, 'Vuoto' -..-, '7' 7..7, '12' 12..12")
        << "a class without limits would be taken for that of empty rows; numbers are in the order "
           "of numbers";
    ASSERT_TRUE(map.changes.Undo());
    EXPECT_EQ(map.classes(), before);
    ASSERT_TRUE(map.changes.Redo());
    EXPECT_EQ(map.classes(), "'Default' -..-, 'Vuoto' -..-, '7' 7..7, '12' 12..12");
}

TEST(ClassLimitsTest, ValuesThatBecomeOneAreOneClass)
{
    Classified map(
        "table T (a decimal 1); rows T: (2.6), (2.5), (7), (3)", MapType::SingleValue, 5);

    map.change(FieldFormat::Integer);

    EXPECT_EQ(map.classes(), "'Default' -..-, '3' 3..3, '7' 7..7");
    ASSERT_TRUE(map.changes.Undo());
    EXPECT_EQ(map.classes(), "'Default' -..-, '2.5' 2.5..2.5, '2.6' 2.6..2.6, '3' 3..3, '7' 7..7");
}

TEST(ClassLimitsTest, LabelsThatTheUserWroteStay)
{
    Classified map("table T (a decimal 1); rows T: (2.5), (7)", MapType::SingleValue, 5);
    map.edit([](CCtrlThemeMapEdit& edit) {
        gis::CLibGis::SetLabel(edit.GetFeatureClass(1), "bassa");
        gis::CLibGis::SetColor(edit.GetFeatureClass(1), 3);
    });

    map.change(FieldFormat::Integer);

    EXPECT_EQ(map.classes(), "'Default' -..-, 'bassa' 3..3, '7' 7..7");
    EXPECT_EQ(
        gis::CLibGis::GetColor(CCtrlThemeMapEdit(map.library->GetTheme(0)).GetFeatureClass(1)), 3);
}

TEST(ClassLimitsTest, RowsThatLoseTheirValueGetTheirClass)
{
    Classified map("table T (a text); rows T: ('12'), ('due')", MapType::SingleValue, 5);
    ASSERT_EQ(map.classes(), "'Default' -..-, '12' '12'..'12', 'due' 'due'..'due'");

    map.change(FieldFormat::Integer);

    EXPECT_EQ(map.classes(), "'Default' -..-, 'Vuoto' -..-, '12' 12..12");
}

TEST(ClassLimitsTest, LimitsThatTheUserTookAwayOrTurnedAroundStay)
{
    Classified map("table T (a decimal 1); rows T: (0), (8)", MapType::Interval, 4);
    map.edit([](CCtrlThemeMapEdit& edit) {
        const orv::CPolyValue none;
        gis::CLibGis::SetLimitValue(
            edit.GetFeatureClass(2), orv::CPolyValue(2.5), orv::CPolyValue(1.5));
        gis::CLibGis::SetLimitValue(edit.GetFeatureClass(3), orv::CPolyValue(1.5), none);
        gis::CLibGis::SetLimitValue(edit.GetFeatureClass(4), none, orv::CPolyValue(8.5));
    });

    map.change(FieldFormat::Integer);

    EXPECT_EQ(
        map.classes(), "'Default' -..-, '0 - 2' 0..2, '2 - 4' 3..1, '4 - 6' 2..-, '6 - 8' -..9");
}

TEST(ClassLimitsTest, AnIntervalWithoutAnyLimitIsNoClassOfEmptyRows)
{
    Classified map("table T (a decimal 1); rows T: (0), (8), (99999999999)", MapType::Interval, 3);
    map.edit([](CCtrlThemeMapEdit& edit) {
        const orv::CPolyValue none;
        gis::CLibGis::SetLimitValue(edit.GetFeatureClass(1), orv::CPolyValue(0.0), none);
        gis::CLibGis::SetLimitValue(edit.GetFeatureClass(2), none, none);
        gis::CLibGis::SetLimitValue(edit.GetFeatureClass(3), none, orv::CPolyValue(8.0));
    });

    map.change(FieldFormat::Integer); // the largest fits no integer

    CCtrlThemeMapEdit edit(map.library->GetTheme(0));
    EXPECT_EQ(edit.GetNumFeatureClasses(), 5);
    EXPECT_EQ(edit.GetNumClasses(), 3);
    EXPECT_EQ(gis::CLibGis::GetLabel(edit.GetFeatureClass(1)), orv::String("Vuoto"));
}

TEST(ClassLimitsTest, AMapTellsHowManyClassesItHas)
{
    Classified map("table T (a decimal 2); rows T: (0), (1)", MapType::Interval, 4);

    map.change(FieldFormat::Integer);

    CCtrlThemeMapEdit edit(map.library->GetTheme(0));
    EXPECT_EQ(edit.GetNumFeatureClasses(), 3);
    EXPECT_EQ(edit.GetNumClasses(), 2) << "a page that shows another number makes them anew";
}

TEST(ClassLimitsTest, WholeNumbersBecomeDecimalsAndBackAsTheyWere)
{
    Classified map("table T (a integer); rows T: (0), (10)", MapType::Interval, 3);
    const std::string before = map.classes();

    map.change(FieldFormat::Decimal);
    map.change(FieldFormat::Integer);

    EXPECT_EQ(map.classes(), before);
}

TEST(ClassLimitsTest, WhenNoValueIsLeftNoClassOfValuesIs)
{
    Classified map("table T (a decimal 1); rows T: (0.5), (2)", MapType::SingleValue, 5);

    map.change(FieldFormat::Date);

    EXPECT_EQ(map.classes(), "'Default' -..-, 'Vuoto' -..-");
}

struct IntervalCase {
    const char* notation;
    int count;
    FieldFormat to;
    const char* before;
    const char* after;
};

class IntervalLimitsTest : public testing::TestWithParam<IntervalCase> { };

TEST_P(IntervalLimitsTest, IntervalsFollowEachOtherAsTheNewFormatHasThem)
{
    Classified map(GetParam().notation, MapType::Interval, GetParam().count);
    ASSERT_EQ(map.classes(), GetParam().before);

    map.change(GetParam().to);

    EXPECT_EQ(map.classes(), GetParam().after);
    ASSERT_TRUE(map.changes.Undo());
    EXPECT_EQ(map.classes(), GetParam().before);
    EXPECT_FALSE(map.changes.CanUndo()) << "the table and its maps are one step";
}

INSTANTIATE_TEST_SUITE_P(Intervals, IntervalLimitsTest,
    testing::Values(
        IntervalCase { "table T (a decimal 1); rows T: (0), (9.5), (-)", 2, FieldFormat::Integer,
            "'Default' -..-, 'Vuoto' -..-, '0 - 4.75' 0..4.75, '4.75 - 9.5' 4.75..9.5",
            "'Default' -..-, 'Vuoto' -..-, '0 - 4' 0..4, '5 - 10' 5..10" },
        // A value on the border belongs to the later class; between one quarter and three quarters
        // there is no whole number.
        IntervalCase { "table T (a decimal 2); rows T: (0), (1)", 4, FieldFormat::Integer,
            "'Default' -..-, '0 - 0.25' 0..0.25, '0.25 - 0.5' 0.25..0.5, '0.5 - 0.75' 0.5..0.75, "
            "'0.75 - 1' 0.75..1",
            "'Default' -..-, '0' 0..0, '1' 1..1" },
        IntervalCase { "table T (a decimal 0); rows T: (-4294967296), (4294967296)", 2,
            FieldFormat::Integer,
            "'Default' -..-, '-4294967296 - 0' -4294967296..0, '0 - 4294967296' 0..4294967296",
            "'Default' -..-, 'Vuoto' -..-, '-2147483648 - -1' -2147483648..-1, "
            "'0 - 2147483647' 0..2147483647" },
        IntervalCase { "table T (a decimal 0); rows T: (0), (8589934592)", 2, FieldFormat::Integer,
            "'Default' -..-, '0 - 4294967296' 0..4294967296, "
            "'4294967296 - 8589934592' 4294967296..8589934592",
            "'Default' -..-, 'Vuoto' -..-, '0 - 2147483647' 0..2147483647" },
        IntervalCase { "table T (a integer); rows T: (0), (10), (-)", 3, FieldFormat::Decimal,
            "'Default' -..-, 'Vuoto' -..-, '0 - 2' 0..2, '3 - 6' 3..6, '7 - 10' 7..10",
            "'Default' -..-, 'Vuoto' -..-, '0 - 3' 0..3, '3 - 7' 3..7, '7 - 10' 7..10" }));

} // namespace
