// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <QDialog>

#include <memory>

class CCtrlShowTable;
namespace Ui {
class CDlgShowTable;
}

/// "Tabella": all rows of a table in the attribute grid. OK saves and closes when saving succeeds.
class CDlgShowTable final : public QDialog {
    Q_OBJECT

public:
    CDlgShowTable(gis::CLibGis* library, gis::CDBTable* table, QWidget* parent = nullptr);
    ~CDlgShowTable() override;

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    std::unique_ptr<Ui::CDlgShowTable> m_ui;
    CCtrlShowTable* m_grid;
};
