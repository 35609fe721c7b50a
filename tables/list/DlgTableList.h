// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/ToolBarDialog.h"

#include "host/gis/LibGis.h"

#include <memory>

class QStandardItemModel;
namespace Ui {
class CDlgTableList;
}

/// "Gestione tabelle": all tables of the library, to be created, deleted, renamed, structured and
/// shown. The library is the host's.
class CDlgTableList final : public kit::CToolBarDialog {
    Q_OBJECT

public:
    enum Command { New = 32771, Delete = 32772, Rename = 32773, Properties = 32780, Show = 32785 };

    explicit CDlgTableList(QWidget* parent = nullptr);
    ~CDlgTableList() override;

    /// Before the dialog is run.
    void SetLibGis(gis::CLibGis* library);
    bool GetToolTipText(int position, int command, orv::String& text) override;

protected:
    void runCommand(int command) override;
    [[nodiscard]] bool isCommandEnabled(int command) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill();
    [[nodiscard]] int selectedRow() const; // -1: none
    [[nodiscard]] gis::CDBTable* tableOf(int row) const;
    [[nodiscard]] orv::String nameOf(int row) const;
    void onNew();
    void onDelete();
    void onRename();
    void onProperties();
    void onShow();
    void onEdited(const QModelIndex& index, const QString& text);
    void rename(int row, const orv::String& name);

    std::unique_ptr<Ui::CDlgTableList> m_ui;
    gis::CLibGis* m_library = nullptr;
    QStandardItemModel* m_rows;
    bool m_isFilled = false;
};
