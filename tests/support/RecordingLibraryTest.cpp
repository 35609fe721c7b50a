// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/RecordingLibrary.h"

#include "host/gis/Columns.h"

#include <gtest/gtest.h>

namespace {

using support::CRecordingLibrary;
using Calls = std::vector<std::string>;

constexpr const char* Roads = "table Strade (codice text, larghezza decimal 2);"
                              "rows Strade: ('S1', 3.5), ('S2', -);"
                              "theme Vie: lines on Strade; ents Vie: 1 [0 0, 1 1]";

TEST(RecordingLibraryTest, CallsAreWrittenDownInOrderAndDone)
{
    CRecordingLibrary library(Roads);

    gis::CDBTable* table = library.FindTable("strade");
    library.SetTableName(table, "Vie d'acqua");

    EXPECT_EQ(
        library.calls(), (Calls { "FindTable('strade')", "SetTableName(Strade, 'Vie d''acqua')" }));
    EXPECT_EQ(library.GetTableName(table), orv::String("Vie d'acqua"));
}

TEST(RecordingLibraryTest, FillingFromANotationIsNotRecorded)
{
    CRecordingLibrary library(Roads);

    EXPECT_EQ(library.calls(), Calls {});
}

TEST(RecordingLibraryTest, OnlyChangesAreListedAsChanges)
{
    CRecordingLibrary library(Roads);
    orv::CPolyValue value(4.25);

    gis::CDBTable* table = library.GetTable(0);
    orv::CResultRow* row = library.GetRow(table, 1);
    library.SetRowValue(row, 1, value);
    library.SetModifiedFlag(true);

    EXPECT_EQ(
        library.changes(), (Calls { "SetRowValue(Strade[1], 1, 4.25)", "SetModifiedFlag(yes)" }));
}

TEST(RecordingLibraryTest, HandlesAreShownByTheNamesOfWhatTheyStandFor)
{
    CRecordingLibrary library(Roads);
    gis::CTheme* theme = library.GetTheme(0);
    gis::CEnt* ent = library.GetEnt(theme, 0);
    library.clearCalls();

    library.RecalcAllPredefValues(theme, ent);
    library.GetFieldName(library.GetField(library.GetTable(theme), 1));
    library.GetEnt(library.GetRow(ent));
    library.DeleteTable(nullptr);

    EXPECT_EQ(library.calls(),
        (Calls { "RecalcAllPredefValues(Vie, Vie#0)", "GetTable(Vie)", "GetField(Strade, 1)",
            "GetFieldName(Strade.larghezza)", "GetRow(Vie#0)", "GetEnt(Strade[1])",
            "DeleteTable(null)" }));
}

TEST(RecordingLibraryTest, ARefusedOperationDoesNothing)
{
    CRecordingLibrary library(Roads);
    gis::CTheme* theme = library.GetTheme(0);
    library.refuse("SetThemeName");
    library.refuse("CreateTable");
    library.refuse("GetNumTables");

    library.SetThemeName(theme, "Altro");

    EXPECT_EQ(library.CreateTable("Nuova"), nullptr);
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_EQ(library.GetThemeName(theme), orv::String("Vie"));
    EXPECT_TRUE(library.wasCalled("SetThemeName(Vie, 'Altro')"));
}

TEST(RecordingLibraryTest, ARefusalMayLastForSoManyCalls)
{
    CRecordingLibrary library(Roads);
    library.refuse("FindTable", 1);

    EXPECT_EQ(library.FindTable("Strade"), nullptr);
    EXPECT_NE(library.FindTable("Strade"), nullptr);
}

TEST(RecordingLibraryTest, AnAnswerReplacesTheBaseOperation)
{
    CRecordingLibrary library(Roads);
    library.answer("GetNoEnts", 12);
    library.answer("GetTableName", orv::String("Altra"));

    EXPECT_EQ(library.GetNoEnts(library.GetTheme(0)), 12);
    EXPECT_EQ(library.GetTableName(library.GetTable(0)), orv::String("Altra"));

    library.restore("GetNoEnts");
    EXPECT_EQ(library.GetNoEnts(library.GetTheme(0)), 1);
}

TEST(RecordingLibraryTest, CellsMayComeFromTheTest)
{
    CRecordingLibrary library(Roads);
    orv::CResultRow* row = library.GetRow(library.GetTable(0), 0);
    orv::CPolyValue value;
    library.answerCells([](orv::CResultRow*, int fieldIndex, orv::CPolyValue& cell) {
        cell = fieldIndex;
        return fieldIndex == 1;
    });

    library.GetRowValue(row, 1, value);
    EXPECT_EQ(value, orv::CPolyValue(1));
    library.GetRowValue(row, 0, value);
    EXPECT_EQ(value, orv::CPolyValue("S1"));
}

TEST(RecordingLibraryTest, ColumnsAreOfferedOnlyWhenAskedForAndCellsAreTheLibrarys)
{
    CRecordingLibrary library(Roads);

    EXPECT_EQ(library.Extension(gis::ColumnsExtension), nullptr);
    library.offerColumns();
    EXPECT_NE(library.Extension(gis::ColumnsExtension), nullptr);
    library.refuse("GetEnt");
    EXPECT_EQ(library.Extension(gis::ColumnsExtension), nullptr);
}

TEST(RecordingLibraryTest, ExtensionsMayBeTheTestsOwn)
{
    CRecordingLibrary library;
    int mine = 0;
    library.offer("feedback/1", &mine);

    EXPECT_EQ(library.Extension("feedback/1"), &mine);
    EXPECT_EQ(library.Extension("unknown/9"), nullptr);
    EXPECT_EQ(library.Extension(nullptr), nullptr);
}

TEST(RecordingLibraryTest, APauseIsNotRecorded)
{
    CRecordingLibrary library(Roads);

    {
        const support::RecordingPause pause(library);
        library.GetNumTables();
    }
    library.GetNumThemes();

    EXPECT_EQ(library.calls(), Calls { "GetNumThemes()" });
    EXPECT_EQ(library.countOf("GetNumThemes"), 1);
    EXPECT_EQ(library.callsOf("GetNumTables"), Calls {});
}

} // namespace
