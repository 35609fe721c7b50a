// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/TableEdit.h"

#include <QAbstractTableModel>

namespace tables {

enum FieldColumn { NameColumn, TypeColumn, FormatColumn, FieldColumnCount };

/// The pending fields of a table, one a row in field order, and a blank row after them in which a
/// new field begins. Shape: the field's handle in `UserRole` of the first column, null in the blank
/// row. The controller must outlive it.
class CFieldModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    using Field = gis::CCtrlDlgTableEdit::CFieldChangeTracker;

    explicit CFieldModel(gis::CCtrlDlgTableEdit& controller, QObject* parent = nullptr);

    [[nodiscard]] int fieldCount() const;
    [[nodiscard]] bool isBlank(int row) const { return row == fieldCount(); }
    /// Null for the blank row.
    [[nodiscard]] Field* field(int row) const;
    /// A nameless text field in the blank row; a new blank row follows it.
    void appendField();
    void removeField(int row);
    void swapFields(int row, int other);
    void refreshRow(int row);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    /// Only tells that the cell was edited: what becomes of it is the dialog's to decide.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    [[nodiscard]] QVariant headerData(
        int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    void edited(int row, int column, const QString& text);

private:
    gis::CCtrlDlgTableEdit& m_controller;
};

} // namespace tables
