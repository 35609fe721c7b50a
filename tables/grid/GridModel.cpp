// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridModel.h"

#include "tables/grid/GridOrder.h"

#include "kit/Progress.h"
#include "kit/texts/QtText.h"

#include <QTimer>

#include <algorithm>
#include <new>

namespace tables {

namespace {

/// A view takes some 40 ms for them where it has ten million rows.
constexpr int MoreRows = 1 << 21;

} // namespace

CGridModel::CGridModel(CGridContents& contents, QObject* parent)
    : QAbstractTableModel(parent)
    , m_contents(contents)
    , m_allRows(contents.rowCount())
    , m_rowCount(std::min(m_allRows, FirstRows))
{
}

void CGridModel::refill()
{
    beginResetModel();
    m_order.clear();
    m_order.shrink_to_fit();
    m_sortedField = -1;
    m_allRows = m_contents.rowCount();
    m_rowCount = std::min(m_allRows, FirstRows);
    endResetModel();
}

void CGridModel::showMoreRows()
{
    if (m_isMoreComing || areAllRowsShown())
        return;
    m_isMoreComing = true;
    QTimer::singleShot(0, this, [this] {
        m_isMoreComing = false;
        showRows(m_rowCount + std::min(m_allRows - m_rowCount, MoreRows));
        showMoreRows();
    });
}

void CGridModel::showAllRows()
{
    showRows(m_allRows);
}

void CGridModel::showRows(int count)
{
    if (count <= m_rowCount)
        return;
    beginInsertRows({}, m_rowCount, count - 1);
    m_rowCount = count;
    endInsertRows();
}

void CGridModel::setEditable(bool isEditable)
{
    m_isEditable = isEditable;
}

bool CGridModel::isEditable(int field) const
{
    return m_isEditable && !m_contents.field(field).isPredefined;
}

int CGridModel::fillRow(int viewRow) const
{
    return m_order.empty() || viewRow < 0 ? viewRow : m_order[static_cast<std::size_t>(viewRow)];
}

int CGridModel::viewRow(int fillRow) const
{
    if (m_order.empty())
        return fillRow;
    const auto found = std::find(m_order.begin(), m_order.end(), fillRow);
    return found == m_order.end() ? -1 : static_cast<int>(found - m_order.begin());
}

bool CGridModel::isCell(const QModelIndex& index) const
{
    return index.isValid() && index.row() < m_rowCount && index.column() < m_contents.fieldCount();
}

int CGridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rowCount;
}

int CGridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_contents.fieldCount();
}

QVariant CGridModel::data(const QModelIndex& index, int role) const
{
    if (!isCell(index))
        return {};
    const int row = fillRow(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return kit::toQt(m_contents.text(row, index.column()));
    case Qt::TextAlignmentRole: {
        const auto format = m_contents.field(index.column()).format;
        const bool isNumber
            = format == gis::FieldFormat::Integer || format == gis::FieldFormat::Decimal;
        return QVariant(int(Qt::AlignVCenter | (isNumber ? Qt::AlignRight : Qt::AlignLeft)));
    }
    case Qt::UserRole:
        if (index.column() == 0)
            return QVariant::fromValue(static_cast<void*>(m_contents.row(row)));
        return {};
    default:
        return {};
    }
}

bool CGridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != Qt::EditRole || !isCell(index) || !isEditable(index.column()))
        return false;
    const QString text = value.toString();
    // Compared as shown: bytes that are no valid text would not survive the way through the editor.
    if (text == data(index, Qt::EditRole).toString())
        return true;
    switch (m_contents.enter(fillRow(index.row()), index.column(), kit::fromQt(text))) {
    case CGridContents::Entry::Refused:
        Q_EMIT entryRefused(index);
        return false;
    case CGridContents::Entry::Taken:
        Q_EMIT dataChanged(index, index, { Qt::DisplayRole, Qt::EditRole });
        Q_EMIT entryTaken(index);
        return true;
    case CGridContents::Entry::Unchanged:
        break;
    }
    return true;
}

QVariant CGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section >= 0 && section < m_contents.fieldCount()) {
        if (role == Qt::DisplayRole)
            return kit::toQt(m_contents.field(section).name);
    } else if (orientation == Qt::Vertical) {
        if (role == Qt::DisplayRole)
            return section + 1;
        if (role == Qt::TextAlignmentRole)
            return QVariant(int(Qt::AlignCenter));
    }
    return {};
}

Qt::ItemFlags CGridModel::flags(const QModelIndex& index) const
{
    if (!isCell(index))
        return Qt::NoItemFlags;
    const Qt::ItemFlags shown = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return isEditable(index.column()) ? shown | Qt::ItemIsEditable : shown;
}

kit::WorkEnd CGridModel::order(int field, Qt::SortOrder order, std::vector<int>& rows)
{
    if (field < 0)
        return kit::WorkEnd::Done;
    const auto direction
        = order == Qt::AscendingOrder ? SortDirection::Ascending : SortDirection::Descending;
    const QString label = QStringLiteral("Ordinamento in corso…");
    if (readsColumn(m_contents, field))
        return kit::runLongWork(nullptr, label, [&](kit::WorkToken& token) {
            orderRows(
                m_contents, field, direction,
                [&](double fraction) {
                    token.report(fraction);
                    return !token.isCancelled();
                },
                rows);
        });
    kit::Progress progress(nullptr, label);
    try {
        return orderRows(
                   m_contents, field, direction,
                   [&](double done) { return progress.advance(done); }, rows)
            ? kit::WorkEnd::Done
            : kit::WorkEnd::Stopped;
    } catch (const std::bad_alloc&) {
        return kit::WorkEnd::Failed;
    }
}

void CGridModel::sort(int column, Qt::SortOrder order)
{
    showAllRows();
    std::vector<int> rows;
    const bool isField = column >= 0 && column < m_contents.fieldCount();
    Q_EMIT aboutToSort(); // what is being typed belongs to the order
    const kit::WorkEnd end = this->order(isField ? column : -1, order, rows);
    if (end != kit::WorkEnd::Done) {
        Q_EMIT sorted(); // everything as it was, the header's mark included
        if (end == kit::WorkEnd::Failed)
            Q_EMIT sortFailed();
        return;
    }
    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    const QModelIndexList before = persistentIndexList();
    std::vector<int> fillRows;
    for (const auto& index : before)
        fillRows.push_back(fillRow(index.row()));
    m_order = std::move(rows);
    m_sortedField = isField ? column : -1;
    m_sortOrder = order;
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(viewRow(fillRows[static_cast<std::size_t>(i)]), before[i].column()));
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    Q_EMIT sorted();
}

} // namespace tables
