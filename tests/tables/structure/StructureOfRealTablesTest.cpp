// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/DlgTableEdit.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QTableView>
#include <QTest>

#include <cstdlib>
#include <filesystem>

namespace {

/// Real tables: renamed, reordered, formats changed to text and back by the dialog; undone, they
/// are what they were.
TEST(StructureOfRealTablesTest, WhatIsUndoneIsAsItWas)
{
    const char* given = std::getenv("TEMATICA_TEST_DATA");
    const std::filesystem::path data(given ? given : TEMATICA_DEFAULT_TEST_DATA);
    if (!std::filesystem::exists(data))
        GTEST_SKIP() << "no test data at TEMATICA_TEST_DATA";
    int tables = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(data)) {
        if (file.path().extension() != ".shp" || file.file_size() > 3'000'000)
            continue;
        orv::CChangeTransactionManager changes;
        gis::CLibGis library(&changes);
        embedded::Report report;
        if (!embedded::importShapefile(library, file.path().string(), {}, nullptr, nullptr, report))
            continue;
        SCOPED_TRACE(file.path().filename().string());
        gis::CDBTable* table = library.GetTable(0);
        if (table->fieldCount() == 0)
            continue;
        ++tables;
        const std::string before = support::printTable(*table);
        CDlgTableEdit dialog(&library, table);
        dialog.show();
        auto& grid = ui::at<QTableView>(dialog, 1000);
        const int last = grid.model()->rowCount() - 2;
        const QString format = grid.model()->index(last, 2).data().toString();
        grid.model()->setData(
            grid.model()->index(0, 0), QStringLiteral("Nuovo nome"), Qt::EditRole);
        grid.model()->setData(grid.model()->index(last, 2), QStringLiteral("Testo"), Qt::EditRole);
        grid.model()->setData(grid.model()->index(last, 2), format, Qt::EditRole);
        if (last > 0) {
            grid.selectRow(0);
            ui::press(dialog, 2089);
        }
        ui::press(dialog, 1);
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        EXPECT_TRUE(changes.CanUndo());

        while (changes.CanUndo() && support::printTable(*table) != before)
            changes.Undo();
        EXPECT_EQ(support::printTable(*table), before);
    }
    EXPECT_GT(tables, 20);
}

} // namespace
