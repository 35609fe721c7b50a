// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace tables {

/// The editor of a date cell: dd/mm/yyyy typed, chosen from a calendar (F4 or the button), or
/// cleared for no date.
class CDateCellEdit final : public QLineEdit {
    Q_OBJECT

public:
    explicit CDateCellEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void chooseFromCalendar();
};

} // namespace tables
