// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/CtrlDlgShowTable.h"
#include "tables/grid/GridModel.h"

#include "kit/LongWork.h"

#include <QPersistentModelIndex>
#include <QWidget>

class QLabel;

namespace tables {
class CFindBar;
class CGridView;
} // namespace tables

/// The attribute grid as other windows host it: the rows of a table, one column per field, editors
/// by format, sorting, finding (Ctrl+F), copying (Ctrl+C), and a line with counts and hints.
/// Nothing is written before `Save`. The library, table and engine are the host's and must outlive
/// it.
class CCtrlShowTable final : public QWidget {
    Q_OBJECT

public:
    /// The engine may be null; then the drawing is not centred on the current row.
    CCtrlShowTable(CDravoEng* engine, std::int64_t drawing, gis::CLibGis* library,
        gis::CDBTable* table, QWidget* parent = nullptr);
    ~CCtrlShowTable() override;

    /// All rows of the table; those of entities selected in the drawing are selected.
    void Fill();
    /// These rows, in this order.
    void Fill(const std::vector<orv::CResultRow*>& rows);
    /// The rows of these entities, in this order; the entities are lent until the next fill.
    /// `areColumnsRead`: what of the table is still in a file has been read already.
    void FillEntities(const std::vector<gis::CEnt*>& entities, bool areColumnsRead);
    void SetEditable(bool isEditable);
    /// Writes what was edited; false, with a message shown, when an entry is refused or a required
    /// value is missing.
    bool Save();

    /// How reading the columns ended in the last fill; where it did not get to the end, cells are
    /// read when they come into sight.
    [[nodiscard]] kit::WorkEnd reading() const { return m_reading; }
    /// Widths that the user gave the columns, in pixels.
    [[nodiscard]] std::vector<int> columnWidths() const;
    void setColumnWidths(const std::vector<int>& widths);
    /// Tab leads to this widget from the last of the grid's own, those that find texts included.
    void putBefore(QWidget& next);

    [[nodiscard]] tables::CGridView& view() const { return *m_view; }
    [[nodiscard]] tables::CGridModel& model() { return m_model; }

private:
    void connectView();
    kit::WorkEnd readColumns();
    void afterFill();
    void selectFillRows(const std::vector<int>& fillRows);
    void beforeSort();
    void afterSort();
    void onSortFailed();
    void onEntryRefused(const QModelIndex& index);
    void showRefusal();
    void copy();
    void showMenu(const QPoint& place);
    void findNext(bool isForward);
    void closeFind();
    void renderStatus();

    tables::CCtrlDlgShowTable m_grid;
    tables::CGridModel m_model;
    tables::CGridView* m_view;
    tables::CFindBar* m_findBar;
    QLabel* m_counts;
    QLabel* m_hint;
    QPersistentModelIndex m_refused; // its message is still to be shown
    std::vector<int> m_selectedFillRows; // while the rows change places
    kit::WorkEnd m_reading = kit::WorkEnd::Done;
    QString m_notFound;
    int m_lostSelection = 0; // rows that were too many pieces to stay selected
};
