// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"

#include <memory>

namespace Ui {
class CSubDlgFieldString;
}

/// "Testo": the default text.
class CSubDlgFieldString final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldString(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldString() override;

    void SaveFieldData() override;
    void RefreshFromField() override;

private:
    std::unique_ptr<Ui::CSubDlgFieldString> m_ui;
    int m_kept = 0; // of the constraints, written back as it was read
};
