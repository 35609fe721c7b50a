// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/list/DlgTableList.h"

#include "tests/support/RecordingLibrary.h"
#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QTest>

namespace listtest {

inline const QString NameUsed
    = QStringLiteral("Esiste già una tabella con questo nome!\nInserire un nome diverso!");

/// The list of the tables of a library, driven as a user would.
class TableList : public testing::Test {
protected:
    void open(
        const char* notation = "table Zeta (a text); table alfa (a text); table Beta (n integer)")
    {
        library = std::make_unique<support::CRecordingLibrary>(std::string_view(notation));
        dialog = std::make_unique<CDlgTableList>();
        dialog->SetLibGis(library.get());
        dialog->show();
        dialog->activateWindow();
        QApplication::processEvents();
        library->clearCalls();
    }
    /// Ends of edits are queued, and what they do to the rows again.
    static void settle()
    {
        for (int i = 0; i < 3; ++i)
            QApplication::processEvents();
    }
    QListView& list() { return ui::at<QListView>(*dialog, 2000); }
    QPoint centre(int row) { return list().visualRect(list().model()->index(row, 0)).center(); }
    void select(int row) { QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, centre(row)); }
    QLineEdit* editor()
    {
        QLineEdit* last = nullptr; // one that was closed lives on until the events have run
        for (auto* found : list().viewport()->findChildren<QLineEdit*>())
            if (found->isVisible())
                last = found;
        return last;
    }
    QLineEdit* edit(int row)
    {
        settle();
        if (!list().selectionModel()->isSelected(list().model()->index(row, 0)))
            select(row); // a second click would edit by itself, a while later
        QTest::keyClick(&list(), Qt::Key_F2);
        return editor();
    }
    QStringList names()
    {
        QStringList all;
        for (int row = 0; row < list().model()->rowCount(); ++row)
            all << list().model()->index(row, 0).data().toString();
        return all;
    }

    std::unique_ptr<support::CRecordingLibrary> library;
    std::unique_ptr<CDlgTableList> dialog;
};

} // namespace listtest
