// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QStyledItemDelegate>

namespace tables {

/// Editing of a name in a list: tells what was entered and leaves the list as it is, which is
/// filled anew when the name is taken.
class CNameDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    [[nodiscard]] bool isEditing() const { return !m_editor.isNull(); }
    /// Ends the open edit as if the user had gone elsewhere.
    void commitOpenEditor();

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;
    void setModelData(
        QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void edited(const QModelIndex& index, const QString& text) const;

private:
    mutable QPointer<QWidget> m_editor;
};

} // namespace tables
