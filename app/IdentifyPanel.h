// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QFormLayout;
class QLabel;
class QLineEdit;
class QTableWidget;

namespace gis {
class CEnt;
}

namespace app {

class Document;

/// What is known of one entity: theme, attributes, and, where a point of the drawing is linked to
/// it, the point's texts to be edited (predefined values follow them).
class IdentifyPanel final : public QWidget {
    Q_OBJECT

public:
    explicit IdentifyPanel(Document& document, QWidget* parent = nullptr);
    void show(gis::CEnt* entity);
    [[nodiscard]] gis::CEnt* entity() const { return m_entity; }
    /// Writes what is being typed, which otherwise waits until its edit is left.
    void commit();
    /// True while a text is being typed that has not been written yet.
    [[nodiscard]] bool hasPendingText() const;

Q_SIGNALS:
    void pendingChanged();

private:
    void refresh();
    void fillAttributes();
    void fillPoint();

    Document& m_document;
    gis::CEnt* m_entity = nullptr;
    QLabel* m_title;
    QTableWidget* m_attributes;
    QWidget* m_point;
    QList<QLineEdit*> m_pointEdits; // name, description, sketch, five photos
};

} // namespace app
