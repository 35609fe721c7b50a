// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

namespace {

CONTRACT_SUITE(TablesContract);

TEST_P(TablesContract, TablesAreListedInTheOrderOfTheirMaking)
{
    gis::CLibGis& library = make("table Strade (a text); table Case (a text)");
    gis::CDBTable* made = library.CreateTable("Alberi");

    ASSERT_EQ(library.GetNumTables(), 3);
    EXPECT_EQ(library.GetTableName(library.GetTable(0)), orv::String("Strade"));
    EXPECT_EQ(library.GetTableName(library.GetTable(1)), orv::String("Case"));
    EXPECT_EQ(library.GetTable(2), made);
    EXPECT_EQ(library.GetTable(3), nullptr);
    EXPECT_EQ(library.GetTable(-1), nullptr);
}

TEST_P(TablesContract, NamesAreFoundWithoutRegardToAsciiCaseAndExactlyFirst)
{
    gis::CLibGis& library
        = make("table strade (); table Strade (); table \"Citt\xC3\xA0\" (); table STRADE ()");

    EXPECT_EQ(library.FindTable("Strade"), library.GetTable(1));
    EXPECT_EQ(library.FindTable("STRADE"), library.GetTable(3));
    EXPECT_EQ(library.FindTable("sTRADE"), library.GetTable(0));
    EXPECT_EQ(library.FindTable("CITT\xC3\xA0"), library.GetTable(2));
    EXPECT_EQ(library.FindTable("CITT\xC3\x80"), nullptr) << "only ASCII letters are folded";
    EXPECT_EQ(library.FindTable("Strad"), nullptr);
    EXPECT_EQ(library.FindTable(""), nullptr);
}

TEST_P(TablesContract, MakingATableNeverFails)
{
    gis::CLibGis& library = make("table Strade (a text)");

    gis::CDBTable* nameless = library.CreateTable("");
    gis::CDBTable* again = library.CreateTable("Strade");

    ASSERT_NE(nameless, nullptr);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(library.GetTableName(nameless), orv::String());
    EXPECT_EQ(library.GetTableName(again), orv::String("Strade"));
    EXPECT_EQ(library.GetNumFields(again), 0);
    EXPECT_EQ(library.GetNumRows(again), 0);
    EXPECT_NE(again, library.GetTable(0));
}

TEST_P(TablesContract, TablesMayBeRenamed)
{
    gis::CLibGis& library = make("table Strade (a text)");
    gis::CDBTable* table = library.GetTable(0);

    library.SetTableName(table, "100%s <b>&</b>");

    EXPECT_EQ(library.GetTableName(table), orv::String("100%s <b>&</b>"));
    EXPECT_EQ(library.FindTable("Strade"), nullptr);
}

TEST_P(TablesContract, ACopyHasStructureConstraintsAndRows)
{
    const char* notation = "table Strade (codice text required default 'S', tipo list ('A', 'B'),"
                           "larghezza decimal 3 min 0, lunghezza decimal 2 from perimeter2d);"
                           "rows Strade: ('S1', 'B', 3.5, 7), (-, -, -, -)";
    gis::CLibGis& library = make(notation);
    gis::CLibGis& other = make("");
    gis::CDBTable* table = library.GetTable(0);

    gis::CDBTable* copy = other.CreateTableAsCopyOf(table);

    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(other.GetTable(0), copy);
    EXPECT_EQ(other.GetTableName(copy), orv::String("Strade"));
    EXPECT_EQ(fields(other, copy), fields(library, table));
    EXPECT_EQ(rows(other, copy), rows(library, table));
    for (int i = 0; i < 4; ++i) {
        gis::CField* field = other.GetField(copy, i);
        gis::CField* original = library.GetField(table, i);
        EXPECT_NE(field, original);
        EXPECT_EQ(constraints(other, field), constraints(library, original));
        EXPECT_EQ(other.IsFieldRequested(field), library.IsFieldRequested(original));
        EXPECT_EQ(other.IsFieldPredefined(field), library.IsFieldPredefined(original));
    }
}

TEST_P(TablesContract, ACopyOfAUsedNameGetsANumber)
{
    gis::CLibGis& library = make("table Strade (a text); table \"STRADE (2)\" ()");

    gis::CDBTable* first = library.CreateTableAsCopyOf(library.GetTable(0));
    gis::CDBTable* second = library.CreateTableAsCopyOf(library.GetTable(0));

    EXPECT_EQ(library.GetTableName(first), orv::String("Strade (3)"));
    EXPECT_EQ(library.GetTableName(second), orv::String("Strade (4)"));
    EXPECT_EQ(library.CreateTableAsCopyOf(nullptr), nullptr);
}

TEST_P(TablesContract, ATableInUseIsNotDeleted)
{
    gis::CLibGis& library
        = make("table Strade (a text); table Case (a text); theme Vie: lines on Strade");
    gis::CDBTable* used = library.GetTable(0);
    gis::CDBTable* free = library.GetTable(1);

    EXPECT_TRUE(library.IsTableUsedByThemes(used));
    EXPECT_FALSE(library.IsTableUsedByThemes(free));
    library.DeleteTable(used);
    library.DeleteTable(free);
    library.DeleteTable(nullptr);

    ASSERT_EQ(library.GetNumTables(), 1);
    EXPECT_EQ(library.GetTable(0), used);
    EXPECT_EQ(library.FindTable("Case"), nullptr);
}

TEST_P(TablesContract, FieldsTellTheirNameFormatAndMarks)
{
    gis::CLibGis& library = make("table T (t text required, b boolean, i integer, d decimal 2 from"
                                 " area, l list ('x'), g date)");
    gis::CDBTable* table = library.GetTable(0);

    ASSERT_EQ(library.GetNumFields(table), 6);
    EXPECT_EQ(fields(library, table), "t text, b boolean, i integer, d decimal, l list, g date");
    EXPECT_TRUE(library.IsFieldRequested(library.GetField(table, 0)));
    EXPECT_FALSE(library.IsFieldRequested(library.GetField(table, 1)));
    EXPECT_TRUE(library.IsFieldPredefined(library.GetField(table, 3)));
    EXPECT_FALSE(library.IsFieldPredefined(library.GetField(table, 0)));
    EXPECT_EQ(library.GetField(table, 6), nullptr);
    EXPECT_EQ(library.GetField(table, -1), nullptr);
}

TEST_P(TablesContract, ConstraintsFollowTheFormat)
{
    gis::CLibGis& library = make(
        "table T (t text default 'x', b boolean default yes, i integer default 2 min -1 max 9,"
        "d decimal 3 default 0.5 min 0 max 1e9, l list ('a', 'b') default 'b',"
        "g date default 02/01/2020, h date default today)");
    gis::CDBTable* table = library.GetTable(0);
    const auto of = [&](int i) { return constraints(library, library.GetField(table, i)); };

    EXPECT_EQ(of(0), "'x'; -; -; 0");
    EXPECT_EQ(of(1), "1; -; -; -");
    EXPECT_EQ(of(2), "2; -1; 9; -");
    EXPECT_EQ(of(3), "0.5; 0; 1000000000; 3");
    EXPECT_EQ(of(4), "'b'; -; -; ['a', 'b']");
    EXPECT_EQ(of(5), "02/01/2020; -; -; 2");
    EXPECT_EQ(of(6), "0; -; -; 1");
}

TEST_P(TablesContract, UnsetConstraintsAreTheirMarks)
{
    gis::CLibGis& library
        = make("table T (t text, b boolean, i integer, d decimal 2, l list, g date)");
    gis::CDBTable* table = library.GetTable(0);
    const auto of = [&](int i) { return constraints(library, library.GetField(table, i)); };

    EXPECT_EQ(of(0), "''; -; -; 0");
    EXPECT_EQ(of(1), "2; -; -; -");
    EXPECT_EQ(of(2), "2147483647; 2147483647; 2147483647; -");
    EXPECT_EQ(of(3), "1.7e+200; 1.7e+200; 1.7e+200; 2");
    EXPECT_EQ(of(4), "''; -; -; []");
    EXPECT_EQ(of(5), "0; -; -; 0");
}

TEST_P(TablesContract, ListTextsAreReadByIndexAndOthersAreEmpty)
{
    gis::CLibGis& library = make("table T (l list ('a', 'b'), t text)");
    gis::CField* list = library.GetField(library.GetTable(0), 0);
    gis::CField* text = library.GetField(library.GetTable(0), 1);

    EXPECT_EQ(library.GetListElement(list, 0), orv::String("a"));
    EXPECT_EQ(library.GetListElement(list, 1), orv::String("b"));
    EXPECT_EQ(library.GetListElement(list, 2), orv::String());
    EXPECT_EQ(library.GetListElement(list, -1), orv::String());
    EXPECT_EQ(library.GetListElement(text, 0), orv::String());
    EXPECT_EQ(library.GetListElement(nullptr, 0), orv::String());
}

TEST_P(TablesContract, NullTablesAndFieldsAreHarmless)
{
    gis::CLibGis& library = make("");
    gis::CDBTable* const none = nullptr;
    gis::CField* const noField = nullptr;
    orv::CPolyValue constraintValues[gis::ConstraintCount];

    EXPECT_EQ(library.GetTableName(none), orv::String());
    library.SetTableName(none, "x");
    EXPECT_FALSE(library.IsTableUsedByThemes(none));
    EXPECT_EQ(library.GetNumFields(none), 0);
    EXPECT_EQ(library.GetField(none, 0), nullptr);
    EXPECT_EQ(library.GetNumRows(none), 0);
    EXPECT_EQ(library.GetRow(none, 0), nullptr);
    EXPECT_EQ(library.GetFieldName(noField), orv::String());
    EXPECT_EQ(library.GetFieldFormat(noField), gis::FieldFormat::Text);
    EXPECT_FALSE(library.IsFieldPredefined(noField));
    EXPECT_FALSE(library.IsFieldRequested(noField));
    library.GetFieldConstraints(noField, constraintValues);
    library.GetFieldConstraints(noField, nullptr);
    EXPECT_EQ(library.GetTable(static_cast<gis::CTheme*>(nullptr)), nullptr);
}

TEST_P(TablesContract, TheModifiedMarkIsKept)
{
    gis::CLibGis& library = make("");

    EXPECT_FALSE(library.GetModifiedFlag());
    library.SetModifiedFlag(true);
    EXPECT_TRUE(library.GetModifiedFlag());
    library.SetModifiedFlag(false);
    EXPECT_FALSE(library.GetModifiedFlag());
}

} // namespace
