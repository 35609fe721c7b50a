// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"
#include "tables/fields/FieldBounds.h"

#include <memory>

namespace Ui {
class CSubDlgFieldDouble;
}

/// "Decimale": default, minimum, maximum and decimal digits.
class CSubDlgFieldDouble final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldDouble(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldDouble() override;

    void SaveFieldData() override;
    void RefreshFromField() override;

private:
    std::unique_ptr<Ui::CSubDlgFieldDouble> m_ui;
    tables::DecimalBounds m_bounds;
};
