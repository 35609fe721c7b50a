// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/controls/GisTableCtrl.h"

#include "tests/support/LibraryNotation.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/base/ChangeManager.h"
#include "host/gis/LibGis.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QTest>

namespace formtest {

/// What is told of a value that its field does not take.
inline const QString Refused = QStringLiteral("ll valore inseito non rispetta i vincoli inseriti");

/// The control of one row, in a window of its own.
class RowControl : public testing::Test {
protected:
    void open(const char* notation)
    {
        library = support::makeLibrary(notation, &changes);
        row = library->GetRow(library->GetTable(0), 0);
        control = GisTableCtrl_Create(
            library.get(), library->GetTable(0), row, QRect(0, 0, 400, 300), &window, 1000, true);
        ASSERT_NE(control, nullptr);
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        QApplication::processEvents();
    }
    ~RowControl() override { GisTableCtrl_Destroy(control); }

    QLineEdit& edit(int field)
    {
        return *control->findChild<QLineEdit*>(QStringLiteral("field%1").arg(field));
    }
    QComboBox& combo(int field)
    {
        return *control->findChild<QComboBox*>(QStringLiteral("field%1").arg(field));
    }
    orv::CPolyValue value(int field)
    {
        orv::CPolyValue stored;
        library->GetRowValue(row, field, stored);
        return stored;
    }
    QWidget& editor(int field)
    {
        return *control->findChild<QWidget*>(QStringLiteral("field%1").arg(field));
    }
    void expectRefused(const QString& message, int field)
    {
        ui::CModalDriver driver;
        driver.box(message, kit::Answer::Ok, [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Attenzione!"));
            EXPECT_EQ(box.icon(), QMessageBox::Warning);
        });
        EXPECT_FALSE(GisTableCtrl_Commit(control, true));
        EXPECT_EQ(driver.stepsTaken(), 1);
        EXPECT_EQ(window.focusWidget(), &editor(field));
        EXPECT_FALSE(changes.CanUndo()) << "nothing is written";
    }

    orv::CChangeTransactionManager changes;
    QWidget window;
    std::unique_ptr<gis::CLibGis> library;
    orv::CResultRow* row = nullptr;
    QWidget* control = nullptr;
};

} // namespace formtest
