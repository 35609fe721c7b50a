// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/NameDelegate.h"

#include <QLineEdit>

#include <limits>

namespace tables {

QWidget* CNameDelegate::createEditor(
    QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    auto* edit = new QLineEdit(parent);
    edit->setMaxLength(std::numeric_limits<int>::max()); // a long name must come back whole
    edit->setAccessibleName(QStringLiteral("Nome"));
    m_editor = edit;
    return edit;
}

void CNameDelegate::setModelData(
    QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const
{
    if (const auto* edit = qobject_cast<QLineEdit*>(editor))
        Q_EMIT edited(index, edit->text());
}

void CNameDelegate::destroyEditor(QWidget* editor, const QModelIndex& index) const
{
    if (editor == m_editor)
        m_editor.clear(); // it lives on until the events have run
    QStyledItemDelegate::destroyEditor(editor, index);
}

void CNameDelegate::commitOpenEditor()
{
    if (!m_editor)
        return;
    const QPointer<QWidget> editor = m_editor;
    Q_EMIT commitData(editor);
    if (editor)
        Q_EMIT closeEditor(editor);
}

} // namespace tables
