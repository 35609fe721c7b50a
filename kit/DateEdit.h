// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace kit {

/// The editor of a date: dd/mm/yyyy typed, chosen from a calendar (F4 or the button), or
/// cleared for no date.
class CDateEdit final : public QLineEdit {
    Q_OBJECT

public:
    explicit CDateEdit(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void chooseFromCalendar();
};

} // namespace kit
