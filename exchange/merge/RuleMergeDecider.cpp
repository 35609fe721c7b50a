// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "exchange/merge/RuleMergeDecider.h"

#include "host/gis/LibGis.h"

namespace exchange {
namespace {

orv::String numbered(const orv::String& name, int number)
{
    return name + " (" + orv::String::ValueOf(number) + ")";
}

void unifyUnderExistingFormats(gis::CLibGis& library, gis::CMergeTable& merge)
{
    for (int position = 0; position < merge.GetTableNoFields(); ++position) {
        gis::CDiffTypeFieldInfo* conflict = merge.GetDiffTypeField(position);
        if (!conflict)
            continue;
        conflict->SetNewFieldFormat(library.GetFieldFormat(conflict->GetField()));
        conflict->SetDiffIsResolved(true);
    }
}

void renameIncoming(gis::CLibGis& library, gis::CMergeTable& merge)
{
    const orv::String name = merge.GetTableName();
    // Ends: a library has fewer tables than names with a number. The host may refuse a name that
    // it does not list, so a free one is tried and not taken for granted.
    const int last = library.GetNumTables() + 2;
    for (int number = 2; number <= last; ++number) {
        const orv::String wanted = numbered(name, number);
        if (!library.FindTable(wanted) && merge.RenameTable(wanted))
            return;
    }
}

} // namespace

CRuleMergeDecider::CRuleMergeDecider(ConflictRule rule)
    : m_rule(rule)
{
}

void CRuleMergeDecider::decideTable(gis::CLibGis& library, gis::CMergeTable& merge,
    gis::ResultCompare /*compare*/, std::vector<int>& mapping)
{
    switch (m_rule) {
    case ConflictRule::Rename:
        renameIncoming(library, merge);
        break;
    case ConflictRule::Merge:
        unifyUnderExistingFormats(library, merge);
        merge.Merge(mapping);
        break;
    case ConflictRule::Fail:
        break;
    }
    if (merge.GetMergeResult() == gis::MergeResult::Undecided)
        m_undecided = UndecidedConflict { false, merge.GetTableName() };
}

gis::CTheme* CRuleMergeDecider::decideTheme(gis::CLibGis& library, const ThemeConflict& conflict)
{
    if (m_rule == ConflictRule::Fail) {
        m_undecided = UndecidedConflict { true, conflict.name };
        return nullptr;
    }
    int number = 2;
    while (library.FindTheme(numbered(conflict.name, number)))
        ++number;
    // In the library's own drawing, as a theme that the user names in answer to the same clash.
    return library.CreateTheme(conflict.table, numbered(conflict.name, number), conflict.type,
        conflict.coords, library.GetTargetDrawing());
}

} // namespace exchange
