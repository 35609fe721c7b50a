// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

namespace {

using embedded::Column;
using gis::ColumnKind;

TEST(ColumnTest, GapsKeepTheValuesBesideThem)
{
    Column column(ColumnKind::Integer);
    for (int row = 0; row < 200; ++row)
        column.appendInteger(row);
    EXPECT_EQ(column.view().chunks[0].validity, nullptr);

    column.setEmpty(63);
    column.setEmpty(64);
    column.truncate(100);
    column.appendEmpty(2);
    column.appendInteger(7);

    EXPECT_EQ(column.emptyCount(), 4);
    EXPECT_TRUE(column.hasValue(62));
    EXPECT_FALSE(column.hasValue(64));
    EXPECT_EQ(column.integerAt(65), 65);
    EXPECT_FALSE(column.hasValue(101));
    EXPECT_EQ(column.integerAt(102), 7);
}

TEST(ColumnTest, ACopyStaysAsItWasAcrossChunks)
{
    Column column(ColumnKind::Dictionary);
    const int rows = gis::ColumnChunkRows + 10;
    for (int row = 0; row < rows; ++row)
        column.appendText(std::to_string(row % 50));
    const Column copy = column;

    column.setText(gis::ColumnChunkRows + 1, "new");
    column.setEmpty(0);
    column.truncate(gis::ColumnChunkRows + 5);

    EXPECT_EQ(copy.rowCount(), rows);
    EXPECT_EQ(copy.textAt(0), "0");
    EXPECT_EQ(
        copy.textAt(gis::ColumnChunkRows + 1), std::to_string((gis::ColumnChunkRows + 1) % 50));
    EXPECT_EQ(copy.dictionary().find("new"), embedded::Dictionary::NoCode);
    EXPECT_EQ(column.textAt(gis::ColumnChunkRows + 1), "new");
}

TEST(ColumnTest, AViewStaysWhenAnotherReaderAsksForOne)
{
    gis::CLibGis facade;
    auto& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = facade.CreateTable("T");
    table->addField("n", gis::FieldFormat::Integer);
    table->addRows(10);
    gis::ColumnView first;
    gis::ColumnView second;

    ASSERT_TRUE(library.GetColumn(table, 0, first));
    std::atomic<bool> stop { false };
    std::thread reader([&] {
        while (!stop)
            library.GetColumn(table, 0, second);
    });
    int rows = 0;
    for (int i = 0; i < 10000; ++i)
        rows += first.chunks[0].rowCount; // a data race here is what the thread sanitizer finds
    stop = true;
    reader.join();

    EXPECT_EQ(rows, 100000);
    EXPECT_FALSE(library.GetColumn(table, 1, first));
    EXPECT_FALSE(library.GetColumn(nullptr, 0, first));
}

TEST(ColumnTest, ASnapshotIsReadWhileTheColumnIsWritten)
{
    Column column(ColumnKind::Decimal);
    for (int row = 0; row < 70000; ++row)
        column.appendDecimal(row);
    double sum = 0;
    std::thread reader([copy = column, &sum] {
        for (int row = 0; row < copy.rowCount(); ++row)
            sum += copy.decimalAt(row);
    });
    for (int row = 0; row < 70000; ++row)
        column.setDecimal(row, -1);
    for (int row = 0; row < 100; ++row)
        column.appendDecimal(1);
    reader.join();

    EXPECT_EQ(sum, 70000.0 * 69999.0 / 2);
}

TEST(ColumnTest, CellsAreCompact)
{
    Column booleans(ColumnKind::Boolean);
    Column texts(ColumnKind::Dictionary);
    for (int row = 0; row < 131072; ++row) {
        booleans.appendBoolean(row % 3 == 0);
        texts.appendText(row % 2 ? "Strada" : "Via");
    }

    EXPECT_LT(booleans.sizeBytes(), 131072u * 5 / 4);
    EXPECT_LT(texts.sizeBytes(), 131072u * 5);
}

} // namespace
