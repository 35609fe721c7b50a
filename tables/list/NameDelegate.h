// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/OpenEditorDelegate.h"

namespace tables {

/// Editing of a name in a list: tells what was entered and leaves the list as it is, which is
/// filled anew when the name is taken.
class CNameDelegate final : public kit::COpenEditorDelegate {
    Q_OBJECT

public:
    using COpenEditorDelegate::COpenEditorDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
        const QModelIndex& index) const override;
    void setModelData(
        QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void edited(const QModelIndex& index, const QString& text) const;
};

} // namespace tables
