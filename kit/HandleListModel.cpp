// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/HandleListModel.h"

namespace kit {

CHandleListModel::CHandleListModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

void CHandleListModel::setItems(std::vector<ListItem> items)
{
    beginResetModel();
    m_items = std::move(items);
    endResetModel();
}

void CHandleListModel::setIcon(const QIcon& icon)
{
    m_icon = icon;
}

int CHandleListModel::rowOf(const void* handle) const
{
    for (std::size_t i = 0; i < m_items.size(); ++i)
        if (m_items[i].handle == handle)
            return static_cast<int>(i);
    return -1;
}

int CHandleListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant CHandleListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const ListItem& item = m_items[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return item.text;
    case Qt::DecorationRole:
        return m_icon.isNull() ? QVariant() : QVariant(m_icon);
    case Qt::UserRole:
        return QVariant::fromValue(item.handle);
    default:
        return {};
    }
}

} // namespace kit
