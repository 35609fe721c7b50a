// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QListWidget;
class QListWidgetItem;

namespace gis {
class CTheme;
}

namespace app {

class Document;

/// The themes with their symbols, in drawing order from the top; a check box shows or hides a
/// theme, a double click makes it the active one (bold).
class ThemePanel final : public QWidget {
    Q_OBJECT

public:
    explicit ThemePanel(Document& document, QWidget* parent = nullptr);
    void refresh();
    /// The theme of the current line; null without one.
    [[nodiscard]] gis::CTheme* currentTheme() const;

Q_SIGNALS:
    void currentChanged();

private:
    void onItemChanged(QListWidgetItem* item);

    Document& m_document;
    QListWidget* m_list;
};

} // namespace app
