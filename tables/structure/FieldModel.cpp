// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/FieldModel.h"

#include "tables/structure/FieldNames.h"

#include "kit/Colours.h"
#include "kit/texts/QtText.h"
#include "kit/texts/TextIds.h"
#include "kit/texts/TextLoader.h"

#include <QColor>

namespace tables {

CFieldModel::CFieldModel(gis::CCtrlDlgTableEdit& controller, QObject* parent)
    : QAbstractTableModel(parent)
    , m_controller(controller)
{
}

int CFieldModel::fieldCount() const
{
    return m_controller.GetNoCurFields();
}

CFieldModel::Field* CFieldModel::field(int row) const
{
    return row >= 0 && row < fieldCount() ? m_controller.GetCurField(row) : nullptr;
}

void CFieldModel::appendField()
{
    const int row = fieldCount();
    beginInsertRows({}, row + 1, row + 1);
    m_controller.AppendField(orv::String(), gis::FieldFormat::Text);
    endInsertRows();
    refreshRow(row);
}

void CFieldModel::removeField(int row)
{
    beginRemoveRows({}, row, row);
    m_controller.DeleteField(field(row));
    endRemoveRows();
    if (row < rowCount())
        Q_EMIT headerDataChanged(Qt::Vertical, row, rowCount() - 1);
}

void CFieldModel::swapFields(int row, int other)
{
    m_controller.SwapOrder(row, other);
    refreshRow(row);
    refreshRow(other);
}

void CFieldModel::refreshRow(int row)
{
    Q_EMIT dataChanged(index(row, 0), index(row, FieldColumnCount - 1));
}

int CFieldModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : fieldCount() + 1;
}

int CFieldModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : FieldColumnCount;
}

QVariant CFieldModel::data(const QModelIndex& index, int role) const
{
    Field* const shown = field(index.row());
    if (role == Qt::UserRole && index.column() == NameColumn)
        return QVariant::fromValue(static_cast<void*>(shown));
    if (!shown)
        return {};
    if (role == Qt::BackgroundRole && index.column() == FormatColumn
        && m_controller.IsFieldPredefined(shown))
        return QColor(kit::PredefinedBackground);
    if (role == Qt::ForegroundRole && index.column() == FormatColumn
        && m_controller.IsFieldPredefined(shown))
        return QColor(Qt::black); // readable on it in dark themes too
    if (role != Qt::DisplayRole && role != Qt::EditRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case NameColumn: {
        const QString name = kit::toQt(m_controller.GetFieldName(shown));
        // A tool tip guesses rich text.
        return role == Qt::ToolTipRole ? QStringLiteral("<span>%1</span>").arg(name.toHtmlEscaped())
                                       : name;
    }
    case TypeColumn:
        return typeName(m_controller.GetFieldType(shown));
    default:
        return formatName(m_controller.GetFieldFormat(shown));
    }
}

bool CFieldModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    Q_EMIT edited(index.row(), index.column(), value.toString());
    return true;
}

QVariant CFieldModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignCenter);
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Vertical)
        return isBlank(section) ? QStringLiteral("*") : QString();
    switch (section) {
    case NameColumn:
        return kit::text(texts::ColumnName);
    case TypeColumn:
        return kit::text(texts::ColumnType);
    default:
        return kit::text(texts::ColumnFormat);
    }
}

Qt::ItemFlags CFieldModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    Field* const shown = field(index.row());
    const bool isComputed
        = shown && index.column() == FormatColumn && m_controller.IsFieldPredefined(shown);
    return isComputed ? flags : flags | Qt::ItemIsEditable;
}

} // namespace tables
