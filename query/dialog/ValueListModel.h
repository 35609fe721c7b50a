// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>

#include <string>
#include <vector>

namespace query {

/// The rows of "Valori:": one UTF-8 text each, turned into the screen's text when it is shown.
class CValueListModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit CValueListModel(QObject* parent = nullptr);
    void setTexts(std::vector<std::string> texts);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<std::string> m_texts;
};

} // namespace query
