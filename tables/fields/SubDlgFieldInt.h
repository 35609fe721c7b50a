// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"
#include "tables/fields/FieldBounds.h"

#include <memory>

namespace Ui {
class CSubDlgFieldInt;
}

/// "Numerico": default, minimum and maximum.
class CSubDlgFieldInt final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldInt(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldInt() override;

    void SaveFieldData() override;

private:
    std::unique_ptr<Ui::CSubDlgFieldInt> m_ui;
    tables::IntegerBounds m_bounds;
};
