// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLineEdit;

namespace tables {

/// The line under a grid in which a text to be found is typed: Return and F3 go on, with Shift
/// back, Escape puts it away.
class CFindBar final : public QWidget {
    Q_OBJECT

public:
    explicit CFindBar(QWidget* parent = nullptr);

    void open();
    [[nodiscard]] QString sought() const;

Q_SIGNALS:
    void findRequested(bool isForward);
    void closed();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QLineEdit* m_edit;
};

} // namespace tables
