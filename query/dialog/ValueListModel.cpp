// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/ValueListModel.h"

namespace query {

CValueListModel::CValueListModel(QObject* parent)
    : QAbstractListModel(parent)
{
}

void CValueListModel::setTexts(std::vector<std::string> texts)
{
    beginResetModel();
    m_texts = std::move(texts);
    endResetModel();
}

int CValueListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_texts.size());
}

QVariant CValueListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || role != Qt::DisplayRole)
        return {};
    return QString::fromStdString(m_texts[static_cast<std::size_t>(index.row())]);
}

} // namespace query
