// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/ItemLists.h"

#include <QComboBox>
#include <QModelIndex>
#include <QSignalBlocker>

namespace kit {

void fillCombo(QComboBox& combo, const std::vector<ListItem>& items, int current)
{
    const QSignalBlocker blocker(combo);
    combo.clear();
    for (const auto& item : items)
        combo.addItem(item.text, QVariant::fromValue(item.handle));
    combo.setCurrentIndex(current);
}

void selectSilently(QComboBox& combo, int row)
{
    const QSignalBlocker blocker(combo);
    combo.setCurrentIndex(row);
}

void* handleAt(const QComboBox& combo, int row)
{
    return row < 0 ? nullptr : combo.itemData(row).value<void*>();
}

void* handleOf(const QModelIndex& index)
{
    return index.data(Qt::UserRole).value<void*>();
}

} // namespace kit
