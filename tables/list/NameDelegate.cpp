// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/list/NameDelegate.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <limits>

namespace tables {

QWidget* CNameDelegate::createEditor(
    QWidget* parent, const QStyleOptionViewItem&, const QModelIndex&) const
{
    // The slow second click of a selected name may come when a double click has opened a window.
    const QWidget* modal = QApplication::activeModalWidget();
    if (modal && modal != parent->window())
        return nullptr;
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

// Tab ends the edit. It does not go on to the next name: the rows are others when this one is
// taken.
bool CNameDelegate::eventFilter(QObject* watched, QEvent* event)
{
    auto* editor = qobject_cast<QWidget*>(watched);
    if (editor && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
            commitOpenEditor();
            return true;
        }
    }
    return COpenEditorDelegate::eventFilter(watched, event);
}

} // namespace tables
