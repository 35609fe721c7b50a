// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tables/grid/GridContents.h"

#include "kit/LongWork.h"

#include <QAbstractTableModel>

namespace tables {

/// The grid's contents as an item model: one row per shown row, one column per field, nothing made
/// per cell. Sorting changes which fill row is shown where, and nothing else. Shape: texts in
/// `DisplayRole` and `EditRole`; the row's handle in `UserRole` of column 0.
class CGridModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit CGridModel(CGridContents& contents, QObject* parent = nullptr);

    /// So many rows are shown at first; the rest when those are on the screen, because a view keeps
    /// some bytes for each row and prepares them all before it paints the first.
    static constexpr int FirstRows = 1 << 18;

    /// Shows the contents as they were filled now, in fill order, FirstRows of them at most.
    void refill();
    /// Shows more of them, again and again until all are shown; input is handled in between.
    void showMoreRows();
    /// Shows the rest at once. Whatever goes by row numbers beyond the first ones calls it before.
    void showAllRows();
    [[nodiscard]] bool areAllRowsShown() const { return m_rowCount == m_allRows; }
    void setEditable(bool isEditable);
    [[nodiscard]] bool isEditable() const { return m_isEditable; }
    /// True for a cell that the user may edit.
    [[nodiscard]] bool isEditable(int field) const;
    [[nodiscard]] CGridContents& contents() const { return m_contents; }

    /// The fill row shown at a view row, and the other way round (which looks through the order).
    [[nodiscard]] int fillRow(int viewRow) const;
    [[nodiscard]] int viewRow(int fillRow) const;
    [[nodiscard]] int sortedField() const { return m_sortedField; } // -1: fill order
    [[nodiscard]] Qt::SortOrder sortOrder() const { return m_sortOrder; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// By a field, or -1 for fill order. Long sorting shows progress and can be stopped.
    void sort(int column, Qt::SortOrder order) override;

Q_SIGNALS:
    /// A text that the user entered breaks the field's bounds; the cell is as it was.
    void entryRefused(const QModelIndex& index);
    void entryTaken(const QModelIndex& index);
    void aboutToSort();
    /// Also when sorting was stopped or failed and the order is as it was.
    void sorted();
    /// After that: what was wanted could not be done, for lack of memory.
    void sortFailed();

private:
    void showRows(int count);
    [[nodiscard]] bool isCell(const QModelIndex& index) const;
    kit::WorkEnd order(int field, Qt::SortOrder order, std::vector<int>& rows);

    CGridContents& m_contents;
    std::vector<int> m_order; // fill row by view row; empty for fill order
    int m_allRows = 0; // filled rows
    int m_rowCount = 0; // those of them that are shown
    bool m_isMoreComing = false;
    int m_sortedField = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    bool m_isEditable = true;
};

} // namespace tables
