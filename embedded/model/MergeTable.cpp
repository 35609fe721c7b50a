// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/Merge.h"

#include "embedded/model/FieldUses.h"
#include "embedded/model/MergePlan.h"

#include <algorithm>

using embedded::Library;
using embedded::MergePlan;

namespace gis {

IGisMerger::~IGisMerger() = default;

class CDiffTypeFieldInfo::Impl {
public:
    Impl(MergePlan& owner, int index)
        : plan(owner)
        , position(index)
    {
    }
    [[nodiscard]] embedded::IncomingField& field() const
    {
        return plan.incomingFields[static_cast<std::size_t>(position)];
    }
    MergePlan& plan;
    int position; // in the incoming table
};

CField* CDiffTypeFieldInfo::GetField() const
{
    return m_impl->field().existing;
}

CField* CDiffTypeFieldInfo::GetFieldTmp() const
{
    return m_impl->field().incoming;
}

FieldFormat CDiffTypeFieldInfo::GetNewFormat() const
{
    return m_impl->field().newFormat;
}

void CDiffTypeFieldInfo::SetNewFieldFormat(FieldFormat format)
{
    if (format < FieldFormat::Text || format > FieldFormat::Date)
        return;
    m_impl->field().newFormat = format;
    m_impl->field().isRename = false;
}

orv::String CDiffTypeFieldInfo::GetNewName() const
{
    return m_impl->field().newName;
}

bool CDiffTypeFieldInfo::SetNewFieldName(const orv::String& name)
{
    if (name.Length() == 0 || m_impl->plan.isFieldNameUsed(name, m_impl->position))
        return false;
    m_impl->field().newName = name;
    m_impl->field().isRename = true;
    return true;
}

bool CDiffTypeFieldInfo::IsFieldRename() const
{
    return m_impl->field().isRename;
}

bool CDiffTypeFieldInfo::IsListToCreate() const
{
    return m_impl->field().createsList;
}

void CDiffTypeFieldInfo::SetCreateList(bool create)
{
    m_impl->field().createsList = create;
}

bool CDiffTypeFieldInfo::GetDiffIsResolved() const
{
    return m_impl->field().isResolved;
}

void CDiffTypeFieldInfo::SetDiffIsResolved(bool resolved)
{
    m_impl->field().isResolved = resolved;
}

class CMergeTable::Impl {
public:
    Impl(Library* ownLibrary, CDBTable* ownTable, Library* otherLibrary, CDBTable* otherTable)
        : library(ownLibrary)
        , incomingLibrary(otherLibrary)
        , plan(ownTable, otherTable)
    {
        for (int i = 0; i < static_cast<int>(plan.incomingFields.size()); ++i) {
            conflicts.emplace_back(plan, i);
            infos.push_back(std::make_unique<CDiffTypeFieldInfo>(conflicts.back()));
        }
    }

    Library* library;
    Library* incomingLibrary;
    MergePlan plan;
    MergeResult result = MergeResult::Undecided;
    std::deque<CDiffTypeFieldInfo::Impl> conflicts; // one an incoming field, used where it is one
    std::vector<std::unique_ptr<CDiffTypeFieldInfo>> infos;
};

CMergeTable::CMergeTable(
    CLibGis* library, CDBTable* existing, CLibGis* incomingLibrary, CDBTable* incoming)
    : m_impl(std::make_unique<Impl>(
        Library::of(library), existing, Library::of(incomingLibrary), incoming))
{
}

CMergeTable::~CMergeTable() = default;

ResultCompare CMergeTable::CompareTable()
{
    return m_impl->plan.compare();
}

void CMergeTable::Merge(std::vector<int>& mapping)
{
    if (m_impl->result != MergeResult::Undecided || !m_impl->library || !m_impl->plan.isComplete()
        || !m_impl->plan.existing->readAllColumns() || !m_impl->plan.incoming->readAllColumns())
        return;
    mapping = embedded::mergeTables(*m_impl->library, m_impl->plan);
    m_impl->result = MergeResult::Merged;
}

MergeResult CMergeTable::GetMergeResult()
{
    return m_impl->result;
}

orv::String CMergeTable::GetTableName()
{
    return m_impl->plan.incoming ? m_impl->plan.incoming->name() : orv::String();
}

bool CMergeTable::RenameTable(const orv::String& name)
{
    Impl& impl = *m_impl;
    if (impl.result == MergeResult::Merged || !impl.library || !impl.incomingLibrary
        || !impl.plan.incoming || name.Length() == 0 || impl.library->findTable(name))
        return false;
    impl.incomingLibrary->renameTable(impl.plan.incoming, name);
    impl.result = MergeResult::Renamed;
    return true;
}

int CMergeTable::GetTableNoFields()
{
    return static_cast<int>(m_impl->plan.incomingFields.size());
}

int CMergeTable::GetNoAddField()
{
    return static_cast<int>(m_impl->plan.newFields().size());
}

CField* CMergeTable::GetAddField(int index)
{
    const std::vector<CField*> fields = m_impl->plan.newFields();
    if (index < 0 || index >= static_cast<int>(fields.size()))
        return nullptr;
    return fields[static_cast<std::size_t>(index)];
}

void CMergeTable::SetAddField(std::vector<CField*> fields)
{
    for (auto& field : m_impl->plan.incomingFields)
        field.isTaken = field.existing
            || std::find(fields.begin(), fields.end(), field.incoming) != fields.end();
}

int CMergeTable::GetNoDiffTypeField()
{
    const auto& fields = m_impl->plan.incomingFields;
    return static_cast<int>(std::count_if(
        fields.begin(), fields.end(), [](const auto& field) { return field.isConflict(); }));
}

CDiffTypeFieldInfo* CMergeTable::GetDiffTypeField(int position)
{
    if (position < 0 || position >= GetTableNoFields())
        return nullptr;
    const auto index = static_cast<std::size_t>(position);
    return m_impl->plan.incomingFields[index].isConflict() ? m_impl->infos[index].get() : nullptr;
}

} // namespace gis
