// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/OpenEditorDelegate.h"

namespace kit {

void COpenEditorDelegate::commitOpenEditor()
{
    if (!m_editor)
        return;
    const QPointer<QWidget> editor = m_editor;
    Q_EMIT commitData(editor);
    if (editor)
        Q_EMIT closeEditor(editor);
}

void COpenEditorDelegate::dropOpenEditor()
{
    if (m_editor)
        Q_EMIT closeEditor(m_editor, RevertModelCache);
}

void COpenEditorDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const
{
    if (editor == m_editor)
        m_editor.clear(); // it lives on until the events have run
    QStyledItemDelegate::destroyEditor(editor, index);
}

} // namespace kit
