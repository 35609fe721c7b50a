// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/structure/FieldModel.h"

#include "host/gis/LibGis.h"

#include <QDialog>

#include <memory>

class CSubDlgBase;
class QGridLayout;
class QKeyEvent;
class QModelIndex;
class QTableView;
namespace Ui {
class CDlgTableEdit;
}
namespace tables {
class CFieldDelegate;
}

/// "Struttura tabella": the fields of a table, edited on a pending copy that OK applies as a whole
/// and Annulla drops. Below the grid the page of the chosen field's properties. Library and table
/// are the host's.
class CDlgTableEdit final : public QDialog {
    Q_OBJECT

public:
    CDlgTableEdit(gis::CLibGis* library, gis::CDBTable* table, QWidget* parent = nullptr);
    ~CDlgTableEdit() override;

    void accept() override;
    void reject() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Field = tables::CFieldModel::Field;

    void keepRoomForPage();
    void makeGrid();
    bool takeKey(const QKeyEvent& key);
    void returnTo(const QModelIndex& cell);
    void onEdited(int row, int column, const QString& text);
    void onTypingBegun(int row);
    void onSelectionChanged();
    void onDelete();
    void move(int step);
    [[nodiscard]] bool isValid(int row, int column, const QString& text);
    void apply(int row, int column, const QString& text);
    void applyPredefinedRule(Field* field);
    [[nodiscard]] int wholeRow() const;
    void updateMoveButtons();

    void switchPage(int row);
    void putPageIntoTabOrder();
    void destroyPage();
    void renderRequested(Field* field);
    [[nodiscard]] bool hasNamelessField();
    [[nodiscard]] bool applyAll();
    void updateRows();

    std::unique_ptr<Ui::CDlgTableEdit> m_ui;
    gis::CLibGis* m_library;
    gis::CDBTable* m_table;
    gis::CCtrlDlgTableEdit m_controller;
    tables::CFieldModel m_model;
    tables::CFieldDelegate* m_delegate;
    QTableView* m_grid;
    QGridLayout* m_pagePlace = nullptr; // one cell
    CSubDlgBase* m_page = nullptr; // owned as a child window
    int m_pageRow = -1;
    bool m_isApplying = false;
    gis::FieldFormat m_pageFormat = gis::FieldFormat::Text;
};
