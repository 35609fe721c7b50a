// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/structure/DlgTableEdit.h"

#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace structuretest {

inline constexpr const char* Streets
    = "table Strade (Nome text required, Corsie integer min 1 max 8, Area decimal 2 from area, "
      "Note text); rows Strade: ('Via Roma', 2, -, 'x'), ('Via Po', -, -, -);"
      "theme P: points 2d on Strade active; ents P: 0 [10 20]";

/// The structure editor of the first table of a library, driven as a user would.
class Editor : public testing::Test {
protected:
    void open(const char* notation = Streets)
    {
        library = std::make_unique<support::CRecordingLibrary>(notation);
        dialog = std::make_unique<CDlgTableEdit>(library.get(), library->GetTable(0));
        dialog->show();
        dialog->activateWindow();
        QApplication::processEvents();
        library->clearCalls();
    }
    QTableView& grid() { return ui::at<QTableView>(*dialog, 1000); }
    QPushButton& up() { return ui::at<QPushButton>(*dialog, 2088); }
    QPushButton& down() { return ui::at<QPushButton>(*dialog, 2089); }
    QCheckBox& required() { return ui::at<QCheckBox>(*dialog, 2004); }
    QModelIndex cell(int row, int column) { return grid().model()->index(row, column); }
    QString text(int row, int column) { return cell(row, column).data().toString(); }
    QString names()
    {
        QStringList all;
        for (int row = 0; row + 1 < grid().model()->rowCount(); ++row)
            all << text(row, 0);
        return all.join(QLatin1Char(' '));
    }
    void click(int row, int column)
    {
        grid().scrollTo(cell(row, column));
        QTest::mouseClick(
            grid().viewport(), Qt::LeftButton, {}, grid().visualRect(cell(row, column)).center());
    }
    /// The whole row, by its number.
    void choose(int row)
    {
        QHeaderView& header = *grid().verticalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
            QPoint(5, header.sectionViewportPosition(row) + header.sectionSize(row) / 2));
    }
    /// The open editor; one that was closed lives on until the events have run.
    template <typename Editor> Editor* editor()
    {
        for (auto* found : grid().viewport()->findChildren<Editor*>())
            if (found->isVisible())
                return found;
        return nullptr;
    }
    void typeName(int row, const QString& name)
    {
        click(row, 0);
        QTest::keyClick(&grid(), Qt::Key_F2);
        auto* edit = editor<QLineEdit>();
        ASSERT_NE(edit, nullptr);
        edit->selectAll();
        edit->insert(name); // as if pasted: no key gives every letter
        QTest::keyClick(edit, Qt::Key_Return);
        QApplication::processEvents();
    }
    void chooseFrom(int row, int column, const QString& choice)
    {
        if (grid().currentIndex() != cell(row, column)) // a second click would edit by itself
            click(row, column);
        QTest::keyClick(&grid(), Qt::Key_F2);
        auto* combo = editor<QComboBox>();
        ASSERT_NE(combo, nullptr);
        ASSERT_FALSE(combo->isEditable());
        combo->setCurrentIndex(combo->findText(choice));
        QTest::keyClick(combo, Qt::Key_Return);
        QApplication::processEvents();
    }
    QWidget* page(const char* className)
    {
        return dialog->findChild<QWidget*>(QString::fromLatin1(className));
    }
    bool hasAnyPage()
    {
        for (const char* name : { "CSubDlgFieldBool", "CSubDlgFieldString", "CSubDlgFieldInt",
                 "CSubDlgFieldDouble", "CSubDlgFieldList", "CSubDlgFieldDate" })
            if (page(name))
                return true;
        return false;
    }
    std::string table() { return support::printTable(*library->GetTable(0)); }

    std::unique_ptr<support::CRecordingLibrary> library;
    std::unique_ptr<CDlgTableEdit> dialog;
};

} // namespace structuretest
