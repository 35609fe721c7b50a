// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/structure/FieldModel.h"

#include "kit/OpenEditorDelegate.h"

namespace tables {

/// The editors of the structure editor's cells: a free text for the name, lists for source and
/// format.
class CFieldDelegate final : public kit::COpenEditorDelegate {
    Q_OBJECT

public:
    explicit CFieldDelegate(QObject* parent = nullptr);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(
        QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;

Q_SIGNALS:
    void editBegun(int row) const;
    /// The first keystroke in a name's editor, or the first choice in a list's.
    void typingBegun(int row) const;

private:
    [[nodiscard]] QWidget* createChoice(QWidget* parent, const QStringList& choices, int row) const;
};

} // namespace tables
