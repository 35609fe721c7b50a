// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/ChoiceEdit.h"

#include <QKeyEvent>
#include <QWheelEvent>

namespace kit {

void CChoiceEdit::showPopup()
{
    m_isListChoice = true;
    QComboBox::showPopup();
}

void CChoiceEdit::keyPressEvent(QKeyEvent* event)
{
    m_isListChoice = false;
    QComboBox::keyPressEvent(event);
}

void CChoiceEdit::wheelEvent(QWheelEvent* event)
{
    m_isListChoice = false;
    QComboBox::wheelEvent(event);
}

} // namespace kit
