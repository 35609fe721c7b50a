// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/LibraryData.h"
#include "embedded/model/TableData.h"

namespace embedded {
namespace {

/// The cells that a field is to have: those given, those that it has, or none.
ColumnSlot slotOf(FieldChange& change, const Structure& present, int rowCount)
{
    ColumnSlot slot(change.format);
    if (change.column) {
        slot.column = std::move(*change.column);
        return slot;
    }
    for (const FieldState& state : present)
        if (change.field && state.handle == change.field
            && state.slot.column.kind() == columnKindOf(change.format))
            return state.slot;
    slot.column.appendEmpty(rowCount);
    return slot;
}

} // namespace

void Library::replaceFields(gis::CDBTable* table, std::vector<FieldChange> fields)
{
    if (!table)
        return;
    const Structure present = table->structure();
    Structure wanted;
    wanted.reserve(fields.size());
    for (FieldChange& change : fields) {
        FieldState state;
        state.handle = change.field;
        state.name = change.name;
        state.format = change.format;
        state.type = change.type;
        state.requested = change.requested;
        state.constraints = change.constraints;
        state.slot = slotOf(change, present, table->rowCount());
        wanted.push_back(std::move(state));
    }
    replaceStructure(table, std::move(wanted));
}

Report& Library::report()
{
    return m_data->report;
}

} // namespace embedded
