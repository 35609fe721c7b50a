// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

namespace kit {

/// A delegate that knows which editor is open, so that a dialog can end the edit before a command
/// of its own. Whoever creates an editor gives it to `m_editor`.
class COpenEditorDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] bool isEditing() const { return !m_editor.isNull(); }
    /// Takes what an open editor holds and closes it.
    void commitOpenEditor();
    /// Closes an open editor and forgets what it holds.
    void dropOpenEditor();
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;

protected:
    mutable QPointer<QWidget> m_editor;
};

} // namespace kit
