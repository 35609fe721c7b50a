// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/MessageBox.h"

#include "host/gis/TableEdit.h"

#include <QWidget>

#include <array>
#include <vector>

/// A field's property page in the structure editor. It reads the field's constraints from the
/// controller when it is made and writes them back when it is told to; the library itself is not
/// touched. Owner: the structure editor; controller and field must outlive it.
class CSubDlgBase : public QWidget {
    Q_OBJECT

public:
    using CFieldChangeTracker = gis::CCtrlDlgTableEdit::CFieldChangeTracker;

    CSubDlgBase(gis::CCtrlDlgTableEdit& controller, CFieldChangeTracker* field, QWidget* parent);

    /// Writes the page's values to the controller; what is wrong in them is left out, with a
    /// message.
    virtual void SaveFieldData() { }
    /// Follows the field's present state.
    virtual void RefreshFromField() { }
    /// Writes at once whether the field must have a value.
    void SetRequested(bool isRequested);

protected:
    using Constraints = std::array<orv::CPolyValue, gis::ConstraintCount>;

    [[nodiscard]] Constraints constraints() const;
    void setConstraints(const Constraints& constraints);
    [[nodiscard]] bool isPredefined() const;
    /// The user may have changed the format since the page was made; then nothing is to be saved.
    [[nodiscard]] bool isStill(gis::FieldFormat format) const;
    void tell(const std::vector<int>& messages);

private:
    gis::CCtrlDlgTableEdit& m_controller;
    CFieldChangeTracker* m_field;
};

/// The page for a format; null for a value outside the enumeration.
CSubDlgBase* makeFieldPage(gis::FieldFormat format, gis::CCtrlDlgTableEdit& controller,
    CSubDlgBase::CFieldChangeTracker* field, QWidget* parent);
