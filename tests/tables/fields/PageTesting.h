// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"

#include "kit/texts/QtText.h"
#include "kit/texts/TextLoader.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/ui/ModalDriver.h"

#include "host/base/Dates.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace fieldstest {

/// A field page by itself, over the controller of the default host.
class FieldPages : public testing::Test {
protected:
    /// The page of the first field of a table in the tests' notation.
    void open(const char* notation, gis::FieldFormat format)
    {
        library = support::makeLibrary("table T (" + std::string(notation) + ")");
        controller = std::make_unique<gis::CCtrlDlgTableEdit>(library.get(), library->GetTable(0));
        field = controller->GetCurField(0);
        page.reset(makeFieldPage(format, *controller, field, nullptr));
        ASSERT_NE(page, nullptr);
        page->show();
        QApplication::processEvents();
    }
    void reopen(gis::FieldFormat format)
    {
        page.reset(makeFieldPage(format, *controller, field, nullptr));
        page->show();
    }
    orv::CPolyValue constraint(int index)
    {
        orv::CPolyValue values[gis::ConstraintCount];
        controller->GetFieldConstraints(field, values);
        return values[index];
    }
    void setConstraint(int index, const orv::CPolyValue& value)
    {
        orv::CPolyValue values[gis::ConstraintCount];
        controller->GetFieldConstraints(field, values);
        values[index] = value;
        controller->SetFieldConstraints(field, values);
    }
    template <typename Widget> Widget& at(int id) { return ui::at<Widget>(*page, id); }
    QString textOf(int id) { return at<QLineEdit>(id).text(); }
    void save(const std::vector<int>& messages = {})
    {
        ui::CModalDriver driver;
        for (const int message : messages)
            driver.box(kit::text(message).replace(QStringLiteral("\r\n"), QStringLiteral("\n")),
                kit::Answer::Ok, [](QMessageBox& box) {
                    EXPECT_EQ(box.windowTitle(), kit::text(texts::Attention));
                    EXPECT_EQ(box.icon(), QMessageBox::Warning);
                });
        page->SaveFieldData();
        EXPECT_EQ(driver.stepsTaken(), static_cast<int>(messages.size()));
    }
    static QStringList items(const QComboBox& combo)
    {
        QStringList texts;
        for (int i = 0; i < combo.count(); ++i)
            texts << combo.itemText(i);
        return texts;
    }
    QStringList listed()
    {
        QStringList texts;
        auto& list = at<QListWidget>(2016);
        for (int i = 0; i < list.count(); ++i)
            texts << list.item(i)->text();
        return texts;
    }

    std::unique_ptr<gis::CLibGis> library;
    std::unique_ptr<gis::CCtrlDlgTableEdit> controller;
    gis::CCtrlDlgTableEdit::CFieldChangeTracker* field = nullptr;
    std::unique_ptr<CSubDlgBase> page;
};

} // namespace fieldstest
