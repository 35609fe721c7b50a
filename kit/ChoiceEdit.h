// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

namespace kit {

/// A list of choices that tells a choice from its open list from one made by going through it with
/// keys or the wheel.
class CChoiceEdit final : public QComboBox {
public:
    using QComboBox::QComboBox;
    [[nodiscard]] bool isListChoice() const { return m_isListChoice; }
    void showPopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    bool m_isListChoice = true; // also where a program chooses
};

} // namespace kit
