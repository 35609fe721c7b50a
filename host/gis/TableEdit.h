// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <memory>

namespace gis {

/// A table's field list as it is being edited: a pending copy that `Commit` applies as a whole.
/// Errors: trackers of deleted fields stay valid until `Commit`, `Revert` or destruction, changes
/// to them have no effect; positions out of range give null or are ignored. Owner, thread: the
/// caller owns the controller, the controller its trackers; library and table must outlive it.
class TEMATICA_HOST_API CCtrlDlgTableEdit {
public:
    class CFieldChangeTracker;

    CCtrlDlgTableEdit(CLibGis* library, CDBTable* table);
    CCtrlDlgTableEdit(const CCtrlDlgTableEdit&) = delete;
    CCtrlDlgTableEdit& operator=(const CCtrlDlgTableEdit&) = delete;
    virtual ~CCtrlDlgTableEdit();

    int GetNoCurFields();
    CFieldChangeTracker* GetCurField(int index);
    CFieldChangeTracker* AppendField(const orv::String& name, FieldFormat format);
    void DeleteField(CFieldChangeTracker* field);
    void SwapOrder(int first, int second);
    orv::String GetFieldName(CFieldChangeTracker* field);
    void SetFieldName(CFieldChangeTracker* field, const orv::String& name);
    FieldFormat GetFieldFormat(CFieldChangeTracker* field);
    /// A change of format resets the constraints to those of a new field.
    void SetFieldFormat(CFieldChangeTracker* field, FieldFormat format);
    FieldType GetFieldType(CFieldChangeTracker* field);
    void SetFieldType(CFieldChangeTracker* field, FieldType type);
    bool IsFieldRequested(CFieldChangeTracker* field);
    void SetFieldRequested(CFieldChangeTracker* field, bool requested);
    bool IsFieldPredefined(CFieldChangeTracker* field);
    void GetFieldConstraints(CFieldChangeTracker* field, orv::CPolyValue* constraints);
    void SetFieldConstraints(CFieldChangeTracker* field, const orv::CPolyValue* constraints);

    /// Applies the pending list, cells following their field's identity; cells of a field whose
    /// format changed are converted. Errors: false, with nothing applied, when a name is empty, two
    /// names are equal ignoring ASCII case, the table no longer exists, cells that are kept cannot
    /// be read, or the user cancelled.
    bool Commit();
    bool Revert();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace gis
