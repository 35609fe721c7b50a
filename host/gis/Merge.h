// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <memory>
#include <vector>

namespace gis {

/// A field that both tables of a merge have, with different formats, and how the conflict is to be
/// resolved. Starts as: unify under the existing field's format, not resolved.
class TEMATICA_HOST_API CDiffTypeFieldInfo final {
public:
    class Impl;
    explicit CDiffTypeFieldInfo(Impl& impl)
        : m_impl(&impl)
    {
    }

    CField* GetField() const; // of the existing table
    CField* GetFieldTmp() const; // of the incoming table
    FieldFormat GetNewFormat() const;
    void SetNewFieldFormat(FieldFormat format);
    orv::String GetNewName() const;
    /// False for an empty name or one that another field has (ASCII case ignored).
    bool SetNewFieldName(const orv::String& name);
    bool IsFieldRename() const;
    bool IsListToCreate() const;
    void SetCreateList(bool create);
    bool GetDiffIsResolved() const;
    void SetDiffIsResolved(bool resolved);

private:
    Impl* m_impl;
};

/// Comparison and merge of an incoming table with the existing table of its name.
/// Owner, thread: the caller owns it, it owns its conflict records; libraries and tables must
/// outlive it.
class TEMATICA_HOST_API CMergeTable final {
public:
    CMergeTable(CLibGis* library, CDBTable* existing, CLibGis* incomingLibrary, CDBTable* incoming);
    CMergeTable(const CMergeTable&) = delete;
    CMergeTable& operator=(const CMergeTable&) = delete;
    ~CMergeTable();

    ResultCompare CompareTable();
    /// Appends the incoming rows to the existing table, with the fields chosen and the conflicts
    /// resolved as recorded. Shape: `mapping[i]` is the index in the existing table of incoming
    /// field i, -1 where it is not taken. Errors: nothing is merged, and the result stays
    /// undecided, when cells of either table cannot be read.
    void Merge(std::vector<int>& mapping);
    MergeResult GetMergeResult();
    orv::String GetTableName();
    /// Renames the incoming table; false for an empty or used name.
    bool RenameTable(const orv::String& name);
    int GetTableNoFields();
    /// Fields of the incoming table that the existing one lacks.
    int GetNoAddField();
    CField* GetAddField(int index);
    /// The fields to add; all of them unless this is called.
    void SetAddField(std::vector<CField*> fields);
    int GetNoDiffTypeField();
    /// By field position of the incoming table; null where there is no conflict.
    CDiffTypeFieldInfo* GetDiffTypeField(int position);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

/// What the library asks while it loads tables and themes. The order of the operations is the
/// binary contract.
class TEMATICA_HOST_API IGisMerger {
public:
    /// Where to load a table: `library` and an empty `loaded` table in it; `existing` is the table
    /// of that name, or null.
    virtual void OnBeforeLoadTable(
        const orv::String& name, CLibGis*& library, CDBTable*& existing, CDBTable*& loaded)
        = 0;
    /// After the records are in `loaded`: settles a clash. `mapping` as `CMergeTable::Merge` gives
    /// it; left empty: identity.
    virtual void OnAfterLoadTable(
        CLibGis* library, CDBTable* existing, CDBTable* loaded, std::vector<int>& mapping)
        = 0;
    /// The table that received the index-th loaded one and the number of rows it held before.
    virtual void GetTable(int index, CDBTable*& table, int& rowOffset) = 0;
    /// The theme that receives the entities; null stops the import.
    virtual CTheme* OnLoadTheme(const orv::String& name, CDBTable* table, EntType type,
        EntTypeCoords coords, std::int64_t targetDrawing)
        = 0;
    virtual ~IGisMerger();
};

} // namespace gis
