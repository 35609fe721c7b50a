// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/DlgTableEdit.h"

#include "tests/support/LibraryNotation.h"
#include "tests/support/RealTables.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QTableView>
#include <QTest>

#include <functional>

namespace {

/// One press of OK in the structure editor, as one undo step.
void edit(gis::CLibGis& library, orv::CChangeTransactionManager& changes,
    const std::function<void(CDlgTableEdit&, QTableView&)>& act)
{
    CDlgTableEdit dialog(&library, library.GetTable(0));
    dialog.show();
    act(dialog, ui::at<QTableView>(dialog, 1000));
    const orv::ChangeStep step(&changes, orv::String("Struttura"));
    ui::press(dialog, 1);
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
}

void set(QTableView& grid, int row, int column, const QString& text)
{
    grid.model()->setData(grid.model()->index(row, column), text, Qt::EditRole);
}

/// The last field whose format is this one; -1 where there is none.
int lastOf(gis::CDBTable& table, gis::FieldFormat format)
{
    for (int i = table.fieldCount() - 1; i >= 0; --i)
        if (table.field(i)->format == format)
            return i;
    return -1;
}

/// Renamed, reordered, a text made a number and a number a text, each converted by an OK of its own
/// and taken back by one undo.
void editAndUndo(gis::CLibGis& library, orv::CChangeTransactionManager& changes)
{
    gis::CDBTable& table = *library.GetTable(0);
    std::vector<std::string> states { support::printTable(table) };
    edit(library, changes, [](CDlgTableEdit& dialog, QTableView& grid) {
        set(grid, 0, 0, QStringLiteral("Nuovo nome"));
        if (grid.model()->rowCount() > 2) {
            grid.selectRow(0);
            ui::press(dialog, 2089);
        }
    });
    const int text = lastOf(table, gis::FieldFormat::Text);
    int number = lastOf(table, gis::FieldFormat::Decimal);
    if (number < 0)
        number = lastOf(table, gis::FieldFormat::Integer);
    for (const char* const format : { "Testo", "Decimale" }) {
        if (number < 0 && text < 0)
            break; // dates and the like only
        states.push_back(support::printTable(table));
        edit(library, changes, [&](CDlgTableEdit&, QTableView& grid) {
            const QString other = QString::fromLatin1(format);
            if (number >= 0)
                set(grid, number, 2, other);
            if (text >= 0)
                set(grid, text, 2,
                    other == QLatin1String("Testo") ? QStringLiteral("Decimale")
                                                    : QStringLiteral("Testo"));
        });
        EXPECT_NE(support::printTable(table), states.back()) << format;
    }
    for (; !states.empty(); states.pop_back()) {
        ASSERT_TRUE(changes.CanUndo());
        changes.Undo();
        EXPECT_EQ(support::printTable(table), states.back());
    }
}

TEST(StructureOfRealTablesTest, EachUndoBringsBackEveryCell)
{
    TEMATICA_NEEDS_TEST_DATA();
    int tables = 0;
    for (const auto& file : support::realShapefiles()) {
        orv::CChangeTransactionManager changes;
        const auto library = support::realTable(file, &changes);
        if (!library)
            continue;
        SCOPED_TRACE(file.filename().string());
        ++tables;
        editAndUndo(*library, changes);
    }
    EXPECT_GT(tables, 20);
}

} // namespace
