// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/LibGis.h"

#include "embedded/model/Library.h"
#include "host/base/Dates.h"

#include <gtest/gtest.h>

namespace {

using gis::CLibGis;
using gis::EntType;
using gis::EntTypeCoords;
using gis::FieldFormat;
using orv::CPolyValue;
using orv::String;

TEST(LibGisTest, NullHandlesAndIndexesOutOfRangeAreHarmless)
{
    CLibGis library;
    CPolyValue value(7);
    CPolyValue constraints[gis::ConstraintCount];
    gis::CTheme* noTheme = nullptr;
    gis::CDBTable* noTable = nullptr;
    gis::CEnt* noEnt = nullptr;
    orv::CResultRow* noRow = nullptr;

    library.DeleteTable(nullptr);
    library.SetTableName(nullptr, "x");
    library.SetRowValue(nullptr, 0, value);
    library.GetRowValue(nullptr, 0, value);
    library.InitializeWithDefVal(nullptr, nullptr);
    library.RecalcAllPredefValues(nullptr, nullptr);
    library.GetFieldConstraints(nullptr, constraints);
    library.GetFieldConstraints(nullptr, nullptr);
    library.SetThemeName(nullptr, "x");
    library.SetThemeActive(nullptr);
    library.SetThemeVisible(nullptr, true);
    library.SetThemeLocked(nullptr, true);
    library.SetThemeTargetDrawing(nullptr, 1);
    library.SetThemeOpzLabel(nullptr, {});
    library.ThemeIsChange(nullptr);
    CLibGis::SetColor(nullptr, 1);

    EXPECT_TRUE(value.IsEmpty());
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_EQ(library.GetTable(-1), nullptr);
    EXPECT_EQ(library.GetTable(noTheme), nullptr);
    EXPECT_EQ(library.GetTheme(0), nullptr);
    EXPECT_EQ(CLibGis::GetTheme(noEnt), nullptr);
    EXPECT_EQ(library.FindTable("x"), nullptr);
    EXPECT_EQ(library.CreateTableAsCopyOf(nullptr), nullptr);
    EXPECT_EQ(library.CreateTheme(nullptr, "x", EntType::Points, EntTypeCoords::XY, 0), nullptr);
    EXPECT_FALSE(library.DeleteTheme(nullptr));
    EXPECT_EQ(library.GetNumFields(nullptr), 0);
    EXPECT_EQ(library.GetField(nullptr, 0), nullptr);
    EXPECT_EQ(library.GetNumRows(nullptr), 0);
    EXPECT_EQ(library.GetRow(noTable, 0), nullptr);
    EXPECT_EQ(library.GetRow(noEnt), nullptr);
    EXPECT_EQ(library.GetNoEnts(nullptr), 0);
    EXPECT_EQ(library.GetEnt(noTheme, 0), nullptr);
    EXPECT_EQ(library.GetEnt(noRow), nullptr);
    EXPECT_EQ(library.GetEntPart(nullptr, 0), nullptr);
    EXPECT_EQ(library.GetEntVert(nullptr, 0), nullptr);
    EXPECT_EQ(CLibGis::GetController(nullptr), nullptr);
    EXPECT_EQ(library.GetListElement(nullptr, -1), String());
    EXPECT_EQ(library.Extension(nullptr), nullptr);
    EXPECT_EQ(library.Extension("unknown/1"), nullptr);
    EXPECT_EQ(gis::FCalcXCentPredef(nullptr), 0.0);
}

TEST(LibGisTest, AnExactNameIsFoundBeforeOneOfAnotherCase)
{
    CLibGis library;
    gis::CDBTable* upper = library.CreateTable("STRADE");
    gis::CDBTable* mixed = library.CreateTable("Strade");

    EXPECT_EQ(library.FindTable("Strade"), mixed);
    EXPECT_EQ(library.FindTable("strade"), upper);
    EXPECT_EQ(library.FindTable("strad"), nullptr);
}

TEST(LibGisTest, OnlyThemesThatAreNeitherActiveNorFilledAreDeleted)
{
    CLibGis library;
    gis::CDBTable* table = library.CreateTable("T");
    gis::CTheme* first = library.CreateTheme(table, "a", EntType::Points, EntTypeCoords::XY, 4);
    gis::CTheme* second = library.CreateTheme(table, "b", EntType::Lines, EntTypeCoords::XYZ, 5);
    first->table->addRows(1);
    second->entities().addEntity(table->row(0));

    EXPECT_TRUE(library.IsThemeActive(first));
    EXPECT_FALSE(library.DeleteTheme(first));
    EXPECT_FALSE(library.DeleteTheme(second));
    second->entities().truncate(0);
    EXPECT_TRUE(library.DeleteTheme(second));
    EXPECT_EQ(library.GetNumThemes(), 1);
    library.DeleteTable(table);
    EXPECT_EQ(library.GetNumTables(), 1);
}

TEST(LibGisTest, AThemeOfAnotherLibrarysTableOrADeletedOneIsRefused)
{
    CLibGis library;
    CLibGis other;
    gis::CDBTable* foreign = other.CreateTable("T");
    gis::CTheme* theme = other.CreateTheme(foreign, "a", EntType::Points, EntTypeCoords::XY, 0);

    EXPECT_EQ(library.CreateTheme(foreign, "b", EntType::Points, EntTypeCoords::XY, 0), nullptr);
    library.SetThemeActive(theme);
    EXPECT_EQ(library.GetThemeActive(), nullptr);
}

TEST(LibGisTest, ACopyHasStructureRowsAndAFreeName)
{
    CLibGis library;
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("n", FieldFormat::Integer);
    table->addRows(2);
    CPolyValue value(5);
    library.SetRowValue(table->row(1), 0, value);

    gis::CDBTable* copy = library.CreateTableAsCopyOf(table);
    CPolyValue changed(9);
    library.SetRowValue(table->row(1), 0, changed);

    EXPECT_EQ(library.GetTableName(copy), String("T (2)"));
    ASSERT_EQ(library.GetNumRows(copy), 2);
    library.GetRowValue(library.GetRow(copy, 0), 0, value);
    EXPECT_TRUE(value.IsEmpty());
    library.GetRowValue(library.GetRow(copy, 1), 0, value);
    EXPECT_EQ(value, CPolyValue(5));
}

TEST(LibGisTest, ACellTakesTheKindOfItsFieldAndAClearedTextIsNoValue)
{
    CLibGis library;
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("testo", FieldFormat::Text);
    table->addField("data", FieldFormat::Date);
    table->addField("largo", FieldFormat::Decimal);
    table->addRows(1);
    orv::CResultRow* row = table->row(0);
    const auto written = [&](int field, CPolyValue value) {
        library.SetRowValue(row, field, value);
        CPolyValue read(true);
        library.GetRowValue(row, field, read);
        return read;
    };
    std::int32_t day = 0;
    ASSERT_TRUE(orv::DayNumber({ 27, 3, 2016 }, day));
    const std::int64_t midnight = orv::LocalMidnightOfDay(day);
    CPolyValue afternoon;
    afternoon.SetDateValue(midnight + 15 * 3600);

    EXPECT_EQ(written(0, CPolyValue("a")), CPolyValue("a"));
    EXPECT_TRUE(written(0, CPolyValue("")).IsEmpty());
    EXPECT_EQ(written(0, CPolyValue(12)), CPolyValue("12"));
    EXPECT_EQ(written(1, afternoon).GetDateValue(), midnight);
    EXPECT_EQ(written(2, CPolyValue(3)).GetType(), orv::PolyDouble);
    EXPECT_TRUE(written(2, CPolyValue()).IsEmpty());
}

TEST(LibGisTest, DefaultsGoIntoEmptyCellsOfUserFieldsOnly)
{
    CLibGis library;
    gis::CDBTable* table = library.CreateTable("T");
    table->addField("n", FieldFormat::Integer)->constraints[0] = 4;
    table->addField("b", FieldFormat::Boolean)->constraints[0] = 0;
    table->addField("x", FieldFormat::Decimal);
    gis::CField* today = table->addField("d", FieldFormat::Date);
    today->constraints[3] = 1;
    gis::CField* area = table->addField("area", FieldFormat::Decimal);
    area->type = gis::FieldType::Area;
    area->constraints[0] = 1.5;
    table->addRows(1);
    orv::CResultRow* row = table->row(0);
    CPolyValue kept(9);
    library.SetRowValue(row, 0, kept);

    library.InitializeWithDefVal(table, row);

    CPolyValue value;
    library.GetRowValue(row, 0, value);
    EXPECT_EQ(value, CPolyValue(9));
    library.GetRowValue(row, 1, value);
    EXPECT_EQ(value, CPolyValue(false));
    library.GetRowValue(row, 2, value);
    EXPECT_TRUE(value.IsEmpty());
    library.GetRowValue(row, 3, value);
    std::int64_t midnight = 0;
    ASSERT_TRUE(orv::LocalMidnight(value.GetDateValue(), midnight));
    EXPECT_EQ(value.GetDateValue(), midnight);
    EXPECT_NE(midnight, 0);
    library.GetRowValue(row, 4, value);
    EXPECT_TRUE(value.IsEmpty());
}

} // namespace
