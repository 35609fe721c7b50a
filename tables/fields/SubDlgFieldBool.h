// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"

#include <memory>

namespace Ui {
class CSubDlgFieldBool;
}

/// "Sì/No": the default is none, yes or no.
class CSubDlgFieldBool final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldBool(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldBool() override;

    void SaveFieldData() override;

private:
    std::unique_ptr<Ui::CSubDlgFieldBool> m_ui;
};
