// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"

#include "embedded/model/Library.h"
#include "embedded/store/CellText.h"

#include <bit>
#include <cmath>

namespace storetest {
namespace {

using embedded::Library;

std::string number(double value)
{
    // Every NaN is the same "no number"; zero has no sign in the file.
    if (std::isnan(value))
        return "nan";
    return std::to_string(std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value));
}

std::string text(const orv::String& value)
{
    return "'" + value.Bytes() + "'";
}

std::string cell(const embedded::Column& column, int row)
{
    if (!column.hasValue(row))
        return "-";
    switch (column.kind()) {
    case gis::ColumnKind::Boolean:
        return column.booleanAt(row) ? "yes" : "no";
    case gis::ColumnKind::Integer:
    case gis::ColumnKind::Date:
        return std::to_string(column.integerAt(row));
    case gis::ColumnKind::Decimal:
        return number(column.decimalAt(row));
    case gis::ColumnKind::Dictionary:
        return "'" + std::string(column.textAt(row)) + "'";
    }
    return {};
}

void addTable(std::string& out, Library& library, gis::CDBTable& table)
{
    out += "table " + text(table.name()) + "\n";
    for (int i = 0; i < table.fieldCount(); ++i) {
        const gis::CField& field = *table.field(i);
        out += " field " + text(field.name) + " " + std::to_string(int(field.format)) + " "
            + std::to_string(int(field.type)) + (field.requested ? " required" : "");
        for (const auto& constraint : field.constraints)
            out += " [" + embedded::store::encodedValue(constraint) + "]";
        out += "\n";
    }
    for (int row = 0; row < table.rowCount(); ++row) {
        out += " row";
        for (int i = 0; i < table.fieldCount(); ++i)
            out += " " + cell(table.column(i), row);
        if (const gis::CEnt* ent = gis::CDBTable::entityOf(table.row(row)))
            out += " of " + text(embedded::EntityStore::themeOf(ent)->name) + " "
                + std::to_string(embedded::EntityStore::indexOf(ent));
        out += "\n";
    }
    static_cast<void>(library);
}

std::string pointName(const Library& library, const embedded::LinkedPoint* point)
{
    for (std::size_t i = 0; i < library.linkedPointCount(); ++i)
        if (&library.linkedPoints()[i] == point)
            return "@" + std::to_string(i);
    return "@?";
}

void addEntities(std::string& out, Library& library, gis::CTheme& theme)
{
    const embedded::EntityStore& entities = theme.geometry();
    for (int i = 0; i < entities.entityCount(); ++i) {
        out += " ent "
            + std::to_string(
                gis::CDBTable::indexOf(embedded::EntityStore::rowOf(entities.entity(i))));
        for (int p = 0; p < entities.partCount(i); ++p) {
            const embedded::PartView part = entities.part(i, p);
            out += " (";
            for (int v = 0; v < part.count; ++v) {
                for (int c = 0; c < part.stride; ++c)
                    out += number(part.coordinates[v * part.stride + c]) + " ";
                if (const auto* point = entities.linkedPoint(i, p, v))
                    out += pointName(library, point) + " ";
            }
            out += ")";
        }
        out += "\n";
    }
}

void addMap(std::string& out, const gis::CTheme& theme)
{
    out += " map " + std::to_string(int(theme.map.type)) + " "
        + std::to_string(theme.table->indexOf(theme.map.field)) + " "
        + std::to_string(theme.map.classCount) + "\n";
    for (const auto& entry : theme.map.classes)
        out += "  class " + std::to_string(entry->colour) + " "
            + std::to_string(entry->colourOutLine) + " " + std::to_string(entry->hatchType) + " "
            + std::to_string(entry->width) + " " + std::to_string(entry->symbol) + " "
            + number(entry->scale) + " " + number(entry->rotationRadians) + " "
            + text(entry->ltypeName) + text(entry->label) + " ["
            + embedded::store::encodedValue(entry->low) + "] ["
            + embedded::store::encodedValue(entry->high) + "]"
            + (entry->isDefault ? " default" : "") + "\n";
}

void addTheme(std::string& out, Library& library, gis::CTheme& theme)
{
    out += "theme " + text(theme.name) + " on " + text(theme.table->name()) + " "
        + std::to_string(int(theme.type)) + " " + std::to_string(int(theme.coords)) + " "
        + std::to_string(theme.entities().stride()) + " at " + std::to_string(theme.targetDrawing)
        + (theme.visible ? " visible" : "") + (theme.locked ? " locked" : "")
        + (library.activeTheme() == &theme ? " active" : "") + "\n";
    const auto& system = theme.referenceSystem;
    out += " system " + system.authority + ":" + std::to_string(system.code) + " "
        + system.definition + "\n";
    const auto& label = theme.label;
    out += " label " + std::to_string(theme.table->indexOf(label.field)) + " "
        + text(label.styleName) + " " + std::to_string(label.colour) + " "
        + number(label.heightDrawingUnits) + " " + number(label.rotationRadians) + " "
        + number(label.horizontalOffset) + " " + number(label.verticalOffset)
        + (label.aligned ? " aligned" : "") + "\n";
    addMap(out, theme);
    addEntities(out, library, theme);
}

} // namespace

std::string imageOf(gis::CLibGis& facade)
{
    Library& library = *Library::of(&facade);
    std::string out = "drawing " + std::to_string(library.targetDrawing()) + "\n";
    for (const auto& layer : library.layers())
        out += "layer " + std::to_string(layer.id) + " " + text(layer.name) + "\n";
    for (std::size_t i = 0; i < library.linkedPointCount(); ++i) {
        const auto& point = library.linkedPoints()[i];
        out += "point " + text(point.name) + text(point.description) + text(point.sketch);
        for (const auto& photo : point.photos)
            out += text(photo);
        out += "\n";
    }
    // Themes first: a layer's shapes must be readable before any column was read.
    for (gis::CTheme* theme : library.themes())
        addTheme(out, library, *theme);
    for (gis::CDBTable* table : library.tables())
        addTable(out, library, *table);
    return out;
}

} // namespace storetest
