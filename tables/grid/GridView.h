// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridDelegate.h"

#include <QTableView>

#include <vector>

namespace tables {

/// Runs of rows, from first to last, ascending and apart from one another.
struct RowRun {
    int first = 0;
    int last = 0;
};

/// The grid on the screen. A click or an arrow key makes a cell the current one; rows are selected
/// with Shift, Ctrl, the row numbers or Ctrl+A. The current row, not the selection, is what the map
/// follows.
class CGridView final : public QTableView {
    Q_OBJECT

public:
    explicit CGridView(QWidget* parent = nullptr);

    void setGridModel(CGridModel& model);
    /// The cell becomes the current one and is scrolled into sight; which rows are selected stays.
    void makeCurrent(const QModelIndex& index);
    /// Puts what was typed into an open editor into the grid and closes the editor.
    void commitOpenEditor();
    /// The selected rows of the view; none where rows are not selected.
    [[nodiscard]] std::vector<RowRun> selectedRuns() const;
    [[nodiscard]] int selectedCount() const;
    void selectRuns(const std::vector<RowRun>& runs);
    /// Marks the column that the rows are sorted by, and the current row where it is now.
    void showOrder(const CGridModel& gridModel);
    /// As wide as the greatest row number, and 20 at least.
    void fitRowNumbers();

    void selectAll() override;

Q_SIGNALS:
    void copyRequested();
    void findRequested();
    void menuRequested(const QPoint& place); // on the screen
    void findNextRequested(bool isForward);
    void currentRowChanged(int viewRow); // -1: none
    void selectedRowsChanged();

protected:
    QItemSelectionModel::SelectionFlags selectionCommand(
        const QModelIndex& index, const QEvent* event) const override;
    void keyPressEvent(QKeyEvent* event) override;
    /// Once the first rows are on the screen, the rest is shown too.
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(
        const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    CGridModel* m_gridModel = nullptr;
    CGridDelegate* m_delegate = nullptr;
    int m_pressedRow = -1;
};

} // namespace tables
