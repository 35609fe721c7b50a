// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"

#include <memory>

namespace Ui {
class CSubDlgFieldList;
}

/// "Lista": the allowed values in their order, and the default among them.
class CSubDlgFieldList final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldList(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldList() override;

    void SaveFieldData() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void refill();
    void showSelected();
    void onAdd();
    void onDelete();
    void onRename();
    [[nodiscard]] int selectedRow() const;
    std::unique_ptr<Ui::CSubDlgFieldList> m_ui;
    std::vector<orv::String> m_values;
    orv::String m_standard;
};
