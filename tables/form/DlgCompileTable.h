// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <QDialog>

#include <memory>

namespace Ui {
class CDlgCompileTable;
}

/// "Attributi gis": the attributes of one entity, in the host's one-row control. The window's size
/// is kept between runs. Library, theme and row are the host's.
class CDlgCompileTable final : public QDialog {
    Q_OBJECT

public:
    CDlgCompileTable(
        gis::CLibGis* library, gis::CTheme* theme, orv::CResultRow* row, QWidget* parent = nullptr);
    ~CDlgCompileTable() override;

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void takeSavedSize();
    void saveSize() const;

    std::unique_ptr<Ui::CDlgCompileTable> m_ui;
    QWidget* m_control; // the host's; ended by its own function
    bool m_isPlaced = false;
};
