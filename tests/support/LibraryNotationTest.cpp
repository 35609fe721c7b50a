// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/LibraryNotation.h"

#include "host/base/ChangeManager.h"

#include <gtest/gtest.h>

namespace {

using support::makeLibrary;
using support::planFrom;
using support::printLibrary;

constexpr const char* Town
    = "table Strade (codice text required default 'S', larghezza decimal 3 min "
      "0.5 max 50, tipo list ('A', 'B''s') default 'A', rilievo date default "
      "today, corsie integer default 2 max 8, aperta boolean default no, "
      "\"lunghezza tratto\" decimal 2 from perimeter2d);\n"
      "rows Strade:\n"
      "('S1', 3.5, 'B''s', 01/02/2020, 2, yes, 10)\n"
      "('S2', -, -, -, -, no, -)\n"
      ";\n"
      "table Vuota ();\n"
      "theme Vie: lines 3d on Strade at 5 active locked;\n"
      "ents Vie:\n"
      "0 [0 0 1, 10 0 2 | 20.5 0 3, 30 0 4],\n"
      "1 [];\n"
      "theme Lampioni: points 2d on Strade hidden;\n"
      "ents Lampioni:\n"
      "0 [3 4] point 'P1' 'angolo';\n";

TEST(LibraryNotationTest, WhatIsPrintedReadsBackTheSame)
{
    const auto library = makeLibrary(Town);

    const std::string printed = printLibrary(*library);
    const auto again = makeLibrary(printed);

    EXPECT_EQ(printed, Town);
    EXPECT_EQ(printLibrary(*again), printed);
}

TEST(LibraryNotationTest, TheFacadeSeesWhatTheNotationSays)
{
    const auto library = makeLibrary("table Strade (codice text, larghezza decimal 2); "
                                     "theme Vie: lines on Strade; rows Strade: ('S1', 3.5)");

    ASSERT_EQ(library->GetNumTables(), 1);
    gis::CDBTable* table = library->GetTable(0);
    EXPECT_EQ(library->GetTableName(table), orv::String("Strade"));
    EXPECT_EQ(library->GetNumFields(table), 2);
    EXPECT_EQ(library->GetFieldFormat(library->GetField(table, 1)), gis::FieldFormat::Decimal);
    EXPECT_EQ(library->GetNumRows(table), 1);
    EXPECT_EQ(library->GetTable(library->FindTheme("Vie")), table);
    EXPECT_FALSE(library->GetModifiedFlag());
}

TEST(LibraryNotationTest, NothingOfTheFillingCanBeUndone)
{
    orv::CChangeTransactionManager manager;

    const auto library = makeLibrary(Town, &manager);

    EXPECT_FALSE(manager.CanUndo());
}

TEST(LibraryNotationTest, AWrongNotationSaysWhatWasExpectedWhere)
{
    const auto messageOf = [](const char* notation) -> std::string {
        try {
            planFrom(notation);
        } catch (const std::invalid_argument& error) {
            return error.what();
        }
        return "accepted";
    };

    EXPECT_EQ(messageOf("table Strade (codice testo)"),
        "library notation, byte 22: expected a format, found \"testo\"");
    EXPECT_EQ(messageOf("table Strade (codice text"),
        "library notation, byte 26: expected ')', found the end");
    EXPECT_EQ(messageOf("theme Vie: lines on Strade"),
        "library notation, byte 27: expected a table that was named before, found the end");
    EXPECT_EQ(messageOf("table T (a date); rows T: (31/02/2020)"),
        "library notation, byte 38: expected a day as dd/mm/yyyy or -, found \")\"");
    EXPECT_EQ(messageOf("table T (a text); rows T: ('x)"),
        "library notation, byte 28: expected a closing quote, found \"x)\"");
    EXPECT_EQ(messageOf("tavola T"),
        "library notation, byte 1: expected table, rows, theme or ents, found \"tavola\"");
}

TEST(LibraryNotationTest, AnEmptyNotationIsAnEmptyLibrary)
{
    EXPECT_EQ(printLibrary(*makeLibrary("  \n ")), "");
}

} // namespace
