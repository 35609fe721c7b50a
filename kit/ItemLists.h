// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

class QAbstractItemModel;
class QComboBox;
class QModelIndex;

namespace kit {

/// A row of a list or combo box: its text, and the handle that it stands for. The handle is the
/// identity, since texts may repeat.
struct ListItem {
    QString text;
    void* handle = nullptr;
};

/// Fills a combo box without telling anybody and then selects a row: -1 for none (Qt would select
/// the first one by itself).
void fillCombo(QComboBox& combo, const std::vector<ListItem>& items, int current);
/// Selects a row without telling anybody.
void selectSilently(QComboBox& combo, int row);
/// The handle of a row; null for -1.
[[nodiscard]] void* handleAt(const QComboBox& combo, int row);
[[nodiscard]] void* handleOf(const QModelIndex& index);

} // namespace kit
