// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/list/CtrlDlgTableList.h"

#include "kit/ToolBarDialog.h"

#include "host/gis/LibGis.h"

#include <memory>
#include <optional>

class QStandardItemModel;
namespace Ui {
class CDlgTableList;
}
namespace tables {
class CNameDelegate;
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

    /// Enter: the structure of the selected table. Never closes the window.
    void accept() override;
    void done(int result) override;

protected:
    void runCommand(int command) override;
    [[nodiscard]] bool isCommandEnabled(int command) const override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fill();
    [[nodiscard]] int selectedRow() const; // -1: none
    [[nodiscard]] gis::CDBTable* tableOf(int row) const;
    void onNew();
    void onDelete(gis::CDBTable* table);
    void onRename(gis::CDBTable* table);
    void onEdited(const QModelIndex& index, const QString& text);
    void endEditing();
    void finishEdit();

    std::unique_ptr<Ui::CDlgTableList> m_ui;
    tables::CCtrlDlgTableList m_list;
    QStandardItemModel* m_rows;
    tables::CNameDelegate* m_delegate;
    bool m_isEditEnding = false;
    std::optional<kit::Message> m_editRefusal;
};
