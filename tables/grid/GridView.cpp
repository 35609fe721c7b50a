// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridView.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalBlocker>

#include <algorithm>

namespace tables {

namespace {

constexpr int ColumnWidthPixels = 100;
constexpr int RowNumberWidthPixels = 20;

const QKeyEvent* keyEvent(const QEvent* event)
{
    return event && event->type() == QEvent::KeyPress ? static_cast<const QKeyEvent*>(event)
                                                      : nullptr;
}

/// The row numbers, as wide as CGridView::fitRowNumbers() says. Qt's own header would measure the
/// texts of two hundred rows each time the grid is laid out, which took a fifth of opening a grid.
class CRowHeader final : public QHeaderView {
public:
    explicit CRowHeader(QWidget* parent)
        : QHeaderView(Qt::Vertical, parent)
    {
        setSectionsClickable(true);
        setHighlightSections(true);
    }
    [[nodiscard]] QSize sizeHint() const override { return { minimumWidth(), 0 }; }
};

} // namespace

CGridView::CGridView(QWidget* parent)
    : QTableView(parent)
{
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setWordWrap(false);
    setTextElideMode(Qt::ElideRight);
    setTabKeyNavigation(false); // Tab leads on to the buttons
    setHorizontalScrollMode(ScrollPerPixel);
    setAlternatingRowColors(false);
    setCornerButtonEnabled(true);
    // Before the model comes: afterwards each of these walks over all rows.
    const int rowHeight = fontMetrics().height() + 6;
    setVerticalHeader(new CRowHeader(this));
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(rowHeight);
    verticalHeader()->setDefaultSectionSize(rowHeight);
    verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    horizontalHeader()->setDefaultSectionSize(ColumnWidthPixels);
    horizontalHeader()->setSectionsMovable(false);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    horizontalHeader()->setSortIndicatorClearable(true); // the third click: fill order again
}

void CGridView::setGridModel(CGridModel& model)
{
    m_gridModel = &model;
    m_delegate = new CGridDelegate(model, this);
    setItemDelegate(m_delegate);
    setModel(&model);
    setSortingEnabled(true);
    fitRowNumbers();
}

void CGridView::showOrder(const CGridModel& gridModel)
{
    const QSignalBlocker blocker(
        horizontalHeader()); // only the mark: nothing is to be sorted again
    horizontalHeader()->setSortIndicator(gridModel.sortedField(), gridModel.sortOrder());
    if (m_delegate)
        m_delegate->setCurrentRow(currentIndex().row());
    horizontalHeader()->viewport()->update();
    viewport()->update();
}

void CGridView::fitRowNumbers()
{
    const QString greatest = QString::number(m_gridModel ? m_gridModel->contents().rowCount() : 0);
    const int needed = verticalHeader()->fontMetrics().horizontalAdvance(greatest) + 8;
    verticalHeader()->setFixedWidth(std::max(RowNumberWidthPixels, needed));
}

void CGridView::makeCurrent(const QModelIndex& index)
{
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    scrollTo(index);
}

void CGridView::commitOpenEditor()
{
    if (QWidget* editor = m_delegate ? m_delegate->openEditor() : nullptr) {
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

QItemSelectionModel::SelectionFlags CGridView::selectionCommand(
    const QModelIndex& index, const QEvent* event) const
{
    if (const auto* key = keyEvent(event)) {
        if (!(key->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)))
            return QItemSelectionModel::Clear;
    } else if (event && event->type() == QEvent::MouseMove) {
        if (index.row() == m_pressedRow)
            return QItemSelectionModel::NoUpdate; // a trembling click is still a click
    } else if (event
        && (event->type() == QEvent::MouseButtonPress
            || event->type() == QEvent::MouseButtonRelease)) {
        const auto* mouse = static_cast<const QMouseEvent*>(event);
        if (mouse->button() == Qt::RightButton && selectionModel()->isRowSelected(index.row()))
            return QItemSelectionModel::NoUpdate; // the menu is for what is selected
        if (!(mouse->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier)))
            return event->type() == QEvent::MouseButtonPress ? QItemSelectionModel::Clear
                                                             : QItemSelectionModel::NoUpdate;
    }
    return QTableView::selectionCommand(index, event);
}

void CGridView::mousePressEvent(QMouseEvent* event)
{
    m_pressedRow = rowAt(qRound(event->position().y()));
    QTableView::mousePressEvent(event);
}

void CGridView::selectAll()
{
    if (m_gridModel)
        m_gridModel->showAllRows();
    QTableView::selectAll();
}

void CGridView::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (m_gridModel)
        m_gridModel->showMoreRows();
}

void CGridView::keyPressEvent(QKeyEvent* event)
{
    if (m_gridModel)
        m_gridModel->showAllRows(); // End goes to the last of them
    const bool isControl = event->modifiers() & Qt::ControlModifier;
    if (event->matches(QKeySequence::Copy)) {
        Q_EMIT copyRequested();
    } else if (event->matches(QKeySequence::Find)) {
        Q_EMIT findRequested();
    } else if (event->key() == Qt::Key_F3) {
        Q_EMIT findNextRequested(!(event->modifiers() & Qt::ShiftModifier));
    } else if (isControl && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)) {
        if (currentIndex().isValid() && (model()->flags(currentIndex()) & Qt::ItemIsEditable))
            edit(currentIndex());
    } else if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier) {
        // A click on the current cell, which changes nothing; as a letter it would replace the
        // text.
        makeCurrent(currentIndex());
    } else if (isControl && event->key() == Qt::Key_Space) {
        selectionModel()->select(
            currentIndex(), QItemSelectionModel::Toggle | QItemSelectionModel::Rows);
    } else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        // Down a row, as in any sheet. Left to the dialog it would press OK, and the Return that
        // ends an entry, pressed once too often, would close the table.
        if (state() != EditingState && currentIndex().isValid()
            && currentIndex().row() + 1 < model()->rowCount())
            makeCurrent(currentIndex().sibling(currentIndex().row() + 1, currentIndex().column()));
    } else {
        QTableView::keyPressEvent(event);
    }
}

void CGridView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool isKey = event->reason() == QContextMenuEvent::Keyboard;
    const QRect cell = visualRect(currentIndex());
    Q_EMIT menuRequested(isKey
            ? viewport()->mapToGlobal(cell.isValid() ? cell.bottomLeft() : QPoint())
            : event->globalPos());
}

void CGridView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    if (m_delegate)
        m_delegate->setCurrentRow(current.row());
    QTableView::currentChanged(current, previous);
    if (current.row() == previous.row())
        return;
    viewport()->update();
    Q_EMIT currentRowChanged(current.row());
}

void CGridView::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT selectedRowsChanged();
}

std::vector<RowRun> CGridView::selectedRuns() const
{
    std::vector<RowRun> runs;
    if (!selectionModel())
        return runs;
    for (const auto& range : selectionModel()->selection())
        runs.push_back({ range.top(), range.bottom() });
    std::sort(runs.begin(), runs.end(),
        [](const RowRun& left, const RowRun& right) { return left.first < right.first; });
    std::vector<RowRun> merged;
    for (const RowRun& run : runs)
        if (!merged.empty() && run.first <= merged.back().last + 1)
            merged.back().last = std::max(merged.back().last, run.last);
        else
            merged.push_back(run);
    return merged;
}

int CGridView::selectedCount() const
{
    int count = 0;
    for (const RowRun& run : selectedRuns())
        count += run.last - run.first + 1;
    return count;
}

void CGridView::selectRuns(const std::vector<RowRun>& runs)
{
    QItemSelection selection;
    const int lastColumn = model()->columnCount() - 1;
    for (const RowRun& run : runs)
        selection.append(QItemSelectionRange(
            model()->index(run.first, 0), model()->index(run.last, lastColumn)));
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

} // namespace tables
