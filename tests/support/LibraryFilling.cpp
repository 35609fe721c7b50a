// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/LibraryNotation.h"

#include "embedded/model/Library.h"

#include <algorithm>
#include <stdexcept>

namespace support {
namespace {

using embedded::Library;

void fillEnt(Library& library, gis::CTheme& theme, const EntPlan& plan, int stride)
{
    orv::CResultRow* row = theme.table->row(plan.row);
    if (!row)
        throw std::invalid_argument("library notation: an entity of a row that is not there");
    auto& entities = theme.entities();
    gis::CDBTable::setEntity(row, entities.addEntity(row));
    for (const auto& part : plan.parts) {
        double* out = entities.addPart(static_cast<int>(part.size()) / stride);
        std::copy(part.begin(), part.end(), out);
    }
    if (plan.point && !plan.parts.empty()) {
        embedded::LinkedPoint* point = library.addLinkedPoint();
        point->name = plan.point->name;
        point->description = plan.point->description;
        entities.linkPoint(entities.entityCount() - 1, 0, 0, point);
    }
}

void fillTheme(Library& library, const ThemePlan& plan)
{
    gis::CTheme* theme = library.createTheme(
        library.findTable(plan.tableName), plan.name, plan.type, plan.coords, plan.drawing);
    theme->visible = !plan.hidden;
    theme->locked = plan.locked;
    if (plan.active)
        library.setActiveTheme(theme);
    for (const auto& ent : plan.ents)
        fillEnt(library, *theme, ent, plan.stride());
}

} // namespace

void fillTable(gis::CDBTable& table, const TablePlan& plan)
{
    for (const auto& wanted : plan.fields) {
        gis::CField* field = table.addField(wanted.name, wanted.format);
        field->type = wanted.type;
        field->requested = wanted.required;
        field->constraints = wanted.constraints;
    }
    table.addRows(static_cast<int>(plan.rows.size()));
    for (int f = 0; f < table.fieldCount(); ++f) {
        embedded::Column& column = table.columnForWriting(f);
        for (int row = 0; row < table.rowCount(); ++row)
            column.setValue(
                row, plan.rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(f)]);
    }
}

void fillLibrary(gis::CLibGis& library, const LibraryPlan& plan)
{
    Library* embedded = Library::of(&library);
    for (const auto& table : plan.tables)
        fillTable(*embedded->createTable(table.name), table);
    for (const auto& theme : plan.themes)
        fillTheme(*embedded, theme);
    if (embedded->changes())
        embedded->changes()->Clear();
    library.CLibGen::SetModifiedFlag(false); // not the virtual call: a double would record it
}

void fillLibrary(gis::CLibGis& library, std::string_view notation)
{
    fillLibrary(library, planFrom(notation));
}

std::unique_ptr<gis::CLibGis> makeLibrary(
    std::string_view notation, orv::CChangeTransactionManager* manager)
{
    auto library = std::make_unique<gis::CLibGis>(manager);
    fillLibrary(*library, notation);
    return library;
}

} // namespace support
