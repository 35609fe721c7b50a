// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/fields/SubDlgBase.h"

#include <memory>

namespace Ui {
class CSubDlgFieldDate;
}

/// "Data": no default, today, or a date given by the user.
class CSubDlgFieldDate final : public CSubDlgBase {
    Q_OBJECT

public:
    CSubDlgFieldDate(
        gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent = nullptr);
    ~CSubDlgFieldDate() override;

    void SaveFieldData() override;

private:
    void onModeChanged(int row);
    void showDate();
    [[nodiscard]] std::int64_t pickedDate() const;
    std::unique_ptr<Ui::CSubDlgFieldDate> m_ui;
    std::int64_t m_date = 0; // seconds since 1970
};
