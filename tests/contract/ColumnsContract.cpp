// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/base/Dates.h"
#include "host/gis/Columns.h"
#include "host/gis/Readings.h"

#include <random>

// What hosts offer beside the interface is theirs to leave out: only those that have it are asked.

namespace {

CONTRACT_SUITE_WITH(ColumnsContract, gis::ColumnsExtension);
CONTRACT_SUITE_WITH(ReadingsContract, gis::ReadingsExtension);

constexpr const char* AllFormats
    = "table T (t text, b boolean, i integer, d decimal 2, l list ('a'),"
      "g date)";

/// The value of a row in a column, read as whoever goes by columns reads it.
orv::CPolyValue valueOf(const gis::ColumnView& view, int row)
{
    const gis::ColumnChunk& chunk = view.chunks[row / gis::ColumnChunkRows];
    const int i = row % gis::ColumnChunkRows;
    orv::CPolyValue value;
    if (chunk.validity && !(chunk.validity[i / 64] >> (i % 64) & 1u))
        return value;
    switch (view.kind) {
    case gis::ColumnKind::Boolean:
        return orv::CPolyValue(static_cast<const std::uint8_t*>(chunk.values)[i] != 0);
    case gis::ColumnKind::Integer:
        return orv::CPolyValue(static_cast<const std::int32_t*>(chunk.values)[i]);
    case gis::ColumnKind::Decimal:
        return orv::CPolyValue(static_cast<const double*>(chunk.values)[i]);
    case gis::ColumnKind::Date:
        value.SetDateValue(
            orv::LocalMidnightOfDay(static_cast<const std::int32_t*>(chunk.values)[i]));
        return value;
    case gis::ColumnKind::Dictionary:
        break;
    }
    const std::uint32_t code = static_cast<const std::uint32_t*>(chunk.values)[i];
    EXPECT_LT(code, view.dictionarySize);
    return orv::CPolyValue(orv::String(view.dictionary[code].View()));
}

TEST_P(ColumnsContract, ColumnsHoldWhatCellsSay)
{
    gis::CLibGis& library = make(std::string(AllFormats)
        + "; rows T: ('x', yes, -3, 0.125, 'a', 05/03/2016), (-, -, -, -, -, -), ('y', no, 4,"
          " -1e9, 'a', 01/01/1950), ('x', -, 0, -, -, 31/12/9999)");
    auto* columns = static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension));
    gis::CDBTable* table = library.GetTable(0);

    for (int field = 0; field < 6; ++field) {
        gis::ColumnView view;
        ASSERT_TRUE(columns->GetColumn(table, field, view));
        ASSERT_EQ(view.rowCount, library.GetNumRows(table));
        for (int row = 0; row < view.rowCount; ++row)
            EXPECT_EQ(support::describe(valueOf(view, row)), cell(library, table, row, field));
    }
    gis::ColumnView view;
    EXPECT_FALSE(columns->GetColumn(table, 6, view));
    EXPECT_FALSE(columns->GetColumn(table, -1, view));
    EXPECT_FALSE(columns->GetColumn(nullptr, 0, view));
}

TEST_P(ColumnsContract, ColumnsFollowWrittenCells)
{
    gis::CLibGis& library = make("table T (t text, i integer); rows T: (-, -), (-, -), (-, -)");
    auto* columns = static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension));
    gis::CDBTable* table = library.GetTable(0);
    std::mt19937 random(7);

    for (int i = 0; i < 500; ++i) {
        const int row = static_cast<int>(random() % 3);
        const int field = static_cast<int>(random() % 2);
        const int number = static_cast<int>(random() % 5);
        orv::CPolyValue value;
        if (number > 0)
            value = field == 0 ? orv::CPolyValue(orv::String::ValueOf(number)) : orv::CPolyValue(i);
        library.SetRowValue(library.GetRow(table, row), field, value);
        gis::ColumnView view;
        ASSERT_TRUE(columns->GetColumn(table, field, view));
        ASSERT_EQ(support::describe(valueOf(view, row)), support::describe(value));
    }
}

TEST_P(ColumnsContract, EntityRunsGoThroughAllEntitiesWithTheirRows)
{
    gis::CLibGis& library
        = make("table T (i integer); rows T: (1), (2), (3), (4); theme P: points on T;"
               "ents P: 0 [0 0], 1 [1 1], 3 [2 2]");
    auto* columns = static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension));
    gis::CTheme* theme = library.GetTheme(0);
    gis::EntityRunsView view;

    ASSERT_TRUE(columns->GetEntityRuns(theme, view));
    ASSERT_EQ(view.entityCount, 3);
    int index = 0;
    for (int r = 0; r < view.runCount; ++r)
        for (int k = 0; k < view.runs[r].count; ++k, ++index) {
            EXPECT_EQ(view.runs[r].At(k), library.GetEnt(theme, index));
            EXPECT_EQ(library.GetRow(library.GetTable(0), view.runs[r].firstRow + k),
                library.GetRow(view.runs[r].At(k)));
        }
    EXPECT_EQ(index, 3);
    EXPECT_FALSE(columns->GetEntityRuns(nullptr, view));
}

TEST_P(ReadingsContract, WhatIsInMemoryIsReadable)
{
    gis::CLibGis& library = make("table T (t text, i integer); rows T: ('x', 1), (-, -)");
    auto* readings = static_cast<gis::IReadings*>(library.Extension(gis::ReadingsExtension));
    gis::CDBTable* table = library.GetTable(0);

    EXPECT_TRUE(readings->IsReadable(table, 0));
    EXPECT_TRUE(readings->IsReadable(table, 1));
    EXPECT_TRUE(readings->IsReadable(table, 2)) << "no field, so nothing of it is missing";
    EXPECT_TRUE(readings->IsReadable(nullptr, 0));
    EXPECT_TRUE(readings->Read(table, 0, nullptr));
    EXPECT_TRUE(readings->Read(table, 2, nullptr));
    EXPECT_TRUE(readings->Read(nullptr, 0, nullptr));
}

} // namespace
