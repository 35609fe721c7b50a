// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ItemLists.h"

#include <QAbstractListModel>
#include <QIcon>

namespace kit {

/// The rows of a list view: one text and one handle each, nothing made per row beyond these.
/// Shape: the handle is the row's `Qt::UserRole`.
class CHandleListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit CHandleListModel(QObject* parent = nullptr);

    void setItems(std::vector<ListItem> items);
    /// One icon for all rows.
    void setIcon(const QIcon& icon);
    [[nodiscard]] int rowOf(const void* handle) const; // -1 when it is not there

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<ListItem> m_items;
    QIcon m_icon;
};

} // namespace kit
