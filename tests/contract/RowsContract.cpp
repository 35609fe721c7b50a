// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/base/Dates.h"

#include <ctime>

namespace {

CONTRACT_SUITE(RowsContract);

constexpr const char* AllFormats
    = "table T (t text, b boolean, i integer, d decimal 2, l list ('a'),"
      "g date)";

TEST_P(RowsContract, RowsAreFoundByPosition)
{
    gis::CLibGis& library = make("table T (i integer); rows T: (1), (2)");
    gis::CDBTable* table = library.GetTable(0);

    ASSERT_EQ(library.GetNumRows(table), 2);
    EXPECT_NE(library.GetRow(table, 0), nullptr);
    EXPECT_NE(library.GetRow(table, 0), library.GetRow(table, 1));
    EXPECT_EQ(library.GetRow(table, 1), library.GetRow(table, 1));
    EXPECT_EQ(library.GetRow(table, 2), nullptr);
    EXPECT_EQ(library.GetRow(table, -1), nullptr);
}

TEST_P(RowsContract, CellsGiveTheKindOfTheirFormat)
{
    gis::CLibGis& library
        = make(std::string(AllFormats) + "; rows T: ('x', yes, -3, 0.125, 'a', 05/03/2016)");
    orv::CResultRow* row = library.GetRow(library.GetTable(0), 0);
    const int kinds[] = { orv::PolyString, orv::PolyBool, orv::PolyInt32, orv::PolyDouble,
        orv::PolyString, orv::PolyDate };

    for (int i = 0; i < 6; ++i) {
        orv::CPolyValue value;
        library.GetRowValue(row, i, value);
        EXPECT_EQ(value.GetType(), kinds[i]) << "field " << i;
    }
    EXPECT_EQ(rows(library, library.GetTable(0)), "('x', yes, -3, 0.125, 'a', 05/03/2016)");
}

TEST_P(RowsContract, CellsWithoutAValueAreEmptyForEveryFormat)
{
    gis::CLibGis& library = make(std::string(AllFormats) + "; rows T: (-, -, -, -, -, -)");

    EXPECT_EQ(rows(library, library.GetTable(0)), "(-, -, -, -, -, -)");
}

TEST_P(RowsContract, WrittenCellsReadBack)
{
    gis::CLibGis& library = make(std::string(AllFormats) + "; rows T: (-, -, -, -, -, -)");
    gis::CDBTable* table = library.GetTable(0);
    orv::CResultRow* row = library.GetRow(table, 0);
    orv::CPolyValue date;
    date.SetDateValue(orv::LocalMidnightOfDay(-7305));
    orv::CPolyValue values[] = { orv::CPolyValue("citt\xC3\xA0 \xF0\x9F\x8C\xB3"),
        orv::CPolyValue(false), orv::CPolyValue(2147483647), orv::CPolyValue(0.1 + 0.2),
        orv::CPolyValue("non in lista"), date };

    for (int i = 0; i < 6; ++i)
        library.SetRowValue(row, i, values[i]);
    for (int i = 0; i < 6; ++i) {
        orv::CPolyValue read;
        library.GetRowValue(row, i, read);
        EXPECT_EQ(read, values[i]) << "field " << i;
    }

    orv::CPolyValue empty;
    for (int i = 0; i < 6; ++i)
        library.SetRowValue(row, i, empty);
    EXPECT_EQ(rows(library, table), "(-, -, -, -, -, -)");
}

TEST_P(RowsContract, AnEmptyTextIsNoValue)
{
    gis::CLibGis& library = make("table T (t text); rows T: ('x')");
    orv::CPolyValue emptyText { orv::String() };

    library.SetRowValue(library.GetRow(library.GetTable(0), 0), 0, emptyText);

    EXPECT_EQ(cell(library, library.GetTable(0), 0, 0), "-");
}

TEST_P(RowsContract, NullRowsAndFieldsOutOfRangeAreHarmless)
{
    gis::CLibGis& library = make("table T (i integer); rows T: (5)");
    gis::CDBTable* table = library.GetTable(0);
    orv::CResultRow* row = library.GetRow(table, 0);
    orv::CPolyValue value(7);

    library.SetRowValue(nullptr, 0, value);
    library.SetRowValue(row, 1, value);
    library.SetRowValue(row, -1, value);
    library.InitializeWithDefVal(table, nullptr);
    library.InitializeWithDefVal(nullptr, row);
    library.RecalcAllPredefValues(nullptr, nullptr);
    EXPECT_EQ(rows(library, table), "(5)");

    library.GetRowValue(row, 1, value);
    EXPECT_TRUE(value.IsEmpty());
    value = 7;
    library.GetRowValue(nullptr, 0, value);
    EXPECT_TRUE(value.IsEmpty());
}

TEST_P(RowsContract, DefaultsFillEmptyCells)
{
    gis::CLibGis& library = make(
        "table T (t text default 'x', b boolean default no, i integer default 0,"
        "d decimal 2 default 1.25, l list ('a', 'b') default 'b', g date default 01/01/1950);"
        "rows T: (-, -, -, -, -, -)");
    gis::CDBTable* table = library.GetTable(0);

    library.InitializeWithDefVal(table, library.GetRow(table, 0));

    EXPECT_EQ(rows(library, table), "('x', no, 0, 1.25, 'b', 01/01/1950)");
}

TEST_P(RowsContract, DefaultsNeverReplaceValues)
{
    gis::CLibGis& library
        = make("table T (t text default 'x', i integer default 4); rows T: ('mio', -), (-, 0)");
    gis::CDBTable* table = library.GetTable(0);

    for (int row = 0; row < 2; ++row)
        library.InitializeWithDefVal(table, library.GetRow(table, row));

    EXPECT_EQ(rows(library, table), "('mio', 4)('x', 0)");
}

TEST_P(RowsContract, WithoutDefaultsCellsStayEmpty)
{
    gis::CLibGis& library = make(std::string(AllFormats) + "; rows T: (-, -, -, -, -, -)");
    gis::CDBTable* table = library.GetTable(0);

    library.InitializeWithDefVal(table, library.GetRow(table, 0));

    EXPECT_EQ(rows(library, table), "(-, -, -, -, -, -)");
}

TEST_P(RowsContract, TodayIsTheDayOnWhichTheRowIsFilled)
{
    gis::CLibGis& library = make("table T (g date default today); rows T: (-)");
    gis::CDBTable* table = library.GetTable(0);
    std::int64_t before = 0;
    std::int64_t after = 0;

    ASSERT_TRUE(orv::LocalMidnight(std::time(nullptr), before));
    library.InitializeWithDefVal(table, library.GetRow(table, 0));
    ASSERT_TRUE(orv::LocalMidnight(std::time(nullptr), after));

    orv::CPolyValue value;
    library.GetRowValue(library.GetRow(table, 0), 0, value);
    EXPECT_TRUE(value.GetDateValue() == before || value.GetDateValue() == after);
}

TEST_P(RowsContract, UnknownExtensionsAreNull)
{
    gis::CLibGis& library = make("");

    EXPECT_EQ(library.Extension("nothing/1"), nullptr);
    EXPECT_EQ(library.Extension(""), nullptr);
    EXPECT_EQ(library.Extension(nullptr), nullptr);
}

} // namespace
