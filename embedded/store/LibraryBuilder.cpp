// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/LibraryBuilder.h"

namespace embedded::store {

void addGuessedField(gis::CDBTable& table, StoredTable& stored, const GuessedField& guessed)
{
    gis::CField* field = table.addField(orv::String(guessed.column), guessed.format);
    if (guessed.format == gis::FieldFormat::Decimal)
        field->constraints[3] = orv::CPolyValue(guessed.digits);
    stored.columns.push_back({ field, guessed.column });
}

void addStoredEntities(gis::CTheme& theme, const StoredPart& part, StoredTheme& stored)
{
    gis::CDBTable& table = *theme.table;
    EntityStore& entities = theme.entities();
    const auto add = [&](int row) { entities.addEntity(table.row(row)); };
    if (stored.rowPlaces.empty()) {
        for (const FidRun& run : part.runs)
            for (int i = 0; i < run.count; ++i)
                add(run.firstRow + i);
    } else {
        std::vector<int> rows;
        for (const FidRun& run : part.runs)
            for (int i = 0; i < run.count; ++i)
                rows.push_back(run.firstRow + i);
        for (const int place : stored.rowPlaces)
            add(rows[static_cast<std::size_t>(place)]);
    }
    stored.entityCount = entities.entityCount();
    theme.storedEntityCount = stored.entityCount;
    theme.attributesChanged = false;
    theme.setGeometryPending();
}

} // namespace embedded::store
