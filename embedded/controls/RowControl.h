// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/controls/RowEntry.h"

#include <QScrollArea>

#include <vector>

namespace embedded {

/// The one-row control: an editor for each field, as it suits the field's format, one below the
/// other. Library, table and row are the host's and must outlive it.
class RowControl final : public QScrollArea {
    Q_OBJECT

public:
    RowControl(gis::CLibGis* library, gis::CDBTable* table, orv::CResultRow* row, bool isEditable,
        QWidget* parent);

    /// Checks all entries, then writes those that were changed, as one step. False where one is
    /// refused: nothing is written, and the entry has the focus.
    bool commit(bool showMessages);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Line {
        RowEntry entry;
        QWidget* editor;
    };
    [[nodiscard]] QWidget* makeEditor(const RowEntry& entry);
    void takeFocusByFirstEditor();
    [[nodiscard]] static QString textOf(const QWidget& editor);
    bool refuse(const Line& line, bool showMessages, int message);

    gis::CLibGis* m_library;
    orv::CResultRow* m_row;
    bool m_isEditable;
    std::vector<Line> m_lines;
};

} // namespace embedded
