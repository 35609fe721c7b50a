// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/CtrlShowTable.h"
#include "tables/grid/DlgShowTable.h"
#include "tables/grid/GridView.h"

#include "embedded/store/GeoPackage.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RealTables.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/base/Dates.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>

// The grid over the embedded library, with tables as offices have them.

namespace {

/// What a cell shows, from the library's own answer for it.
std::string expectedText(gis::CLibGis& library, gis::CDBTable* table, int row, int field)
{
    orv::CPolyValue value;
    library.GetRowValue(library.GetRow(table, row), field, value);
    switch (value.GetType()) {
    case orv::PolyEmpty:
        return {};
    case orv::PolyBool:
        return value.GetBoolValue() ? "Sì" : "No";
    case orv::PolyDouble: {
        std::array<orv::CPolyValue, gis::ConstraintCount> constraints;
        library.GetFieldConstraints(library.GetField(table, field), constraints.data());
        return orv::String::ValueOf(
            value.GetDoubleValue(), static_cast<unsigned>(constraints[3].GetInt32Value()))
            .Bytes();
    }
    case orv::PolyDate:
        return value.GetDateValue() == 0 ? std::string() : orv::DateText(value.GetDateValue());
    default:
        return value.GetStringValue().Bytes();
    }
}

/// A value by which cells of a column can be compared: numbers and days as such, else the text.
bool isBefore(const orv::CPolyValue& left, const orv::CPolyValue& right)
{
    switch (left.GetType()) {
    case orv::PolyBool:
        return !left.GetBoolValue() && right.GetBoolValue();
    case orv::PolyInt32:
    case orv::PolyDouble:
        return left.GetDoubleValue() < right.GetDoubleValue();
    case orv::PolyDate:
        return left.GetDateValue() < right.GetDateValue();
    default:
        return left.GetStringValue().Bytes() < right.GetStringValue().Bytes();
    }
}

class RealGrid final {
public:
    explicit RealGrid(gis::CLibGis& library)
        : m_library(library)
        , m_table(library.GetTable(0))
        , m_dialog(&library, m_table)
    {
        m_dialog.show();
        QApplication::processEvents();
    }
    CDlgShowTable& dialog() { return m_dialog; }
    CCtrlShowTable& grid() { return *m_dialog.findChild<CCtrlShowTable*>(); }
    std::string text(int row, int field)
    {
        return grid().model().index(row, field).data().toString().toStdString();
    }

    /// Rows at both ends and between them show what the library answers.
    void checkTexts()
    {
        const int rows = m_library.GetNumRows(m_table);
        ASSERT_EQ(grid().model().rowCount(), rows);
        ASSERT_EQ(grid().model().columnCount(), m_library.GetNumFields(m_table));
        const int step = std::max(1, rows / 40);
        for (int row = 0; row < rows; row += step)
            for (int field = 0; field < grid().model().columnCount(); ++field)
                ASSERT_EQ(text(row, field), expectedText(m_library, m_table, row, field))
                    << "row " << row << ", field " << field;
    }
    /// A click on each header orders the rows by what cells hold, those without a value last.
    void checkSorting()
    {
        const int rows = grid().model().rowCount();
        for (int field = 0; field < grid().model().columnCount(); ++field) {
            grid().model().sort(field, Qt::AscendingOrder);
            orv::CPolyValue before = valueAt(0, field);
            for (int row = 1; row < rows; ++row) {
                orv::CPolyValue value = valueAt(row, field);
                const bool isInOrder = before.IsEmpty()
                    ? value.IsEmpty()
                    : value.IsEmpty() || !isBefore(value, before);
                ASSERT_TRUE(isInOrder) << "field " << field << ", row " << row;
                before = std::move(value);
            }
        }
        grid().model().sort(-1, Qt::AscendingOrder);
    }

private:
    orv::CPolyValue valueAt(int viewRow, int field)
    {
        orv::CPolyValue value;
        m_library.GetRowValue(
            m_library.GetRow(m_table, grid().model().fillRow(viewRow)), field, value);
        return value;
    }

    gis::CLibGis& m_library;
    gis::CDBTable* m_table;
    CDlgShowTable m_dialog;
};

TEST(GridOfRealTablesTest, CellsShowWhatTheLibraryAnswersAndSavingUntouchedChangesNothing)
{
    TEMATICA_NEEDS_TEST_DATA();
    int tables = 0;
    for (const auto& file : support::realShapefiles()) {
        const auto library = support::realTable(file);
        if (!library)
            continue;
        SCOPED_TRACE(file.filename().string());
        ++tables;
        const std::string before = support::printTable(*library->GetTable(0));
        RealGrid real(*library);
        real.checkTexts();
        real.checkSorting();
        ui::press(real.dialog(), 1);
        EXPECT_EQ(real.dialog().result(), QDialog::Accepted);
        EXPECT_EQ(support::printTable(*library->GetTable(0)), before);
        if (testing::Test::HasFatalFailure())
            return;
    }
    EXPECT_GT(tables, 20);
}

/// Types into a cell with the keyboard, as a user does.
void type(CCtrlShowTable& grid, int row, int field, const QString& text)
{
    tables::CGridView& view = grid.view();
    view.makeCurrent(grid.model().index(row, field));
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_F2);
    auto* delegate = qobject_cast<tables::CGridDelegate*>(view.itemDelegate());
    auto* editor = qobject_cast<QLineEdit*>(delegate->openEditor());
    ASSERT_NE(editor, nullptr);
    editor->selectAll();
    ui::typeInto(*editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QApplication::processEvents();
}

/// From a file of the store, whose columns are read when they are needed, through an edit in sorted
/// order and back into the file.
TEST(GridOfRealTablesTest, AnEditedCellIsInTheFileAndNothingElseHasChanged)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("t.gpkg")).toStdString();
    {
        const auto made = support::makeLibrary(
            "table Lampioni (codice text, potenza integer min 0 max 400, altezza decimal 2,"
            "                posa date, acceso boolean, stato list ('nuovo', 'usato'));"
            "rows Lampioni: ('L3', 70, 4.5, 05/03/2016, yes, 'nuovo'),"
            "('L1', -, 6.125, -, no, -), ('L2', 250, -, 31/12/1969, -, 'usato');"
            "theme Luci: points 2d on Lampioni active; ents Luci: 0 [0 0], 1 [1 1], 2 [2 2]");
        ASSERT_TRUE(embedded::saveLibraryAs(*made, path).ok());
    }
    embedded::Report report;
    auto opened = embedded::openLibrary(path, embedded::OpenMode::Write, nullptr, report);
    ASSERT_TRUE(opened.ok());
    gis::CLibGis& library = *opened.value();
    {
        RealGrid real(library);
        real.checkTexts();
        EXPECT_EQ(real.text(1, 2), "6.12") << "shown with the digits of its field";
        real.grid().model().sort(0, Qt::AscendingOrder);
        ASSERT_EQ(real.text(0, 0), "L1");
        type(real.grid(), 0, 1, QStringLiteral("400"));
        type(real.grid(), 2, 0, QStringLiteral("L3 à"));
        ui::press(real.dialog(), 1);
        EXPECT_EQ(real.dialog().result(), QDialog::Accepted);
    }
    EXPECT_TRUE(library.GetModifiedFlag());
    ASSERT_TRUE(embedded::saveLibrary(library).ok());
    const auto again = embedded::openLibrary(path, embedded::OpenMode::Read, nullptr, report);
    ASSERT_TRUE(again.ok());

    EXPECT_EQ(support::printRows(*again.value()->GetTable(0)),
        "('L3 à', 70, 4.5, 05/03/2016, yes, 'nuovo')\n"
        "('L1', 400, 6.125, -, no, -)\n"
        "('L2', 250, -, 31/12/1969, -, 'usato')\n");
}

} // namespace
