// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridModel.h"

#include <QPointer>
#include <QStyledItemDelegate>

namespace tables {

/// How cells look and which editor each has: a text edit, a choice for lists and yes/no, a date
/// that can be cleared; computed columns are green and have none.
class CGridDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit CGridDelegate(CGridModel& model, QObject* parent = nullptr);

    /// The row that is marked as the current one; -1 for none.
    void setCurrentRow(int viewRow) { m_currentRow = viewRow; }
    /// The editor that is open; null when none is.
    [[nodiscard]] QWidget* openEditor() const { return m_editor; }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(
        QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;

    void destroyEditor(QWidget* editor, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    QWidget* createChoice(QWidget* parent, const GridField& field) const;

    CGridModel& m_model;
    mutable QPointer<QWidget> m_editor;
    int m_currentRow = -1;
};

} // namespace tables
