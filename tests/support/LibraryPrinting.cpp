// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/LibraryNotation.h"

#include "tests/support/Describe.h"

#include "embedded/model/Library.h"

#include <algorithm>

namespace support {
namespace {

using embedded::Library;

bool isPlainWord(const orv::String& name)
{
    static constexpr std::string_view NoWord = " \t\r\n()[],;:|'\"";
    return name.Length() > 0 && name.View().find_first_of(NoWord) == std::string_view::npos;
}

std::string printName(const orv::String& name)
{
    if (isPlainWord(name))
        return name.Bytes();
    std::string out = "\"";
    for (const char c : name.View())
        out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

std::string printDefault(const gis::CField& field)
{
    const auto& values = field.constraints;
    const auto unset = unsetConstraints(field.format);
    if (field.format == gis::FieldFormat::Date) {
        if (values[3].GetInt32Value() == 1)
            return " default today";
        return values[3].GetInt32Value() == 2 ? " default " + describe(values[0]) : "";
    }
    if (values[0] == unset[0])
        return "";
    if (field.format == gis::FieldFormat::Boolean)
        return values[0].GetInt32Value() == 1 ? " default yes" : " default no";
    return " default " + describe(values[0]);
}

std::string printConstraints(const gis::CField& field)
{
    const auto& values = field.constraints;
    const auto unset = unsetConstraints(field.format);
    std::string out = printDefault(field);
    const bool hasBounds
        = field.format == gis::FieldFormat::Integer || field.format == gis::FieldFormat::Decimal;
    if (hasBounds && values[1] != unset[1])
        out += " min " + describe(values[1]);
    if (hasBounds && values[2] != unset[2])
        out += " max " + describe(values[2]);
    return out;
}

std::string printField(const gis::CField& field)
{
    std::string out = printName(field.name) + " " + describe(field.format);
    if (field.format == gis::FieldFormat::Decimal)
        out += " " + describe(field.constraints[3]);
    const auto& texts = field.constraints[3];
    if (field.format == gis::FieldFormat::List && texts.GetNoArrayElements() > 0) {
        out += " (";
        for (unsigned i = 0; i < texts.GetNoArrayElements(); ++i)
            out += (i ? ", " : "") + describe(texts.GetStringValue(i));
        out += ")";
    }
    if (field.requested)
        out += " required";
    if (field.isPredefined())
        out += " from " + describe(field.type);
    return out + printConstraints(field);
}

std::string printEnt(gis::CTheme& theme, int index)
{
    const auto& entities = theme.geometry();
    std::string out = std::to_string(gis::CDBTable::indexOf(
                          embedded::EntityStore::rowOf(entities.entity(index))))
        + " [";
    for (int p = 0; p < entities.partCount(index); ++p) {
        const embedded::PartView part = entities.part(index, p);
        out += p ? " | " : "";
        for (int i = 0; i < part.count * part.stride; ++i) {
            if (i)
                out += i % part.stride ? " " : ", ";
            out += describe(part.coordinates[i]);
        }
    }
    out += "]";
    if (const auto* point = entities.linkedPointOf(index))
        out += " point " + describe(point->name) + " " + describe(point->description);
    return out;
}

} // namespace

std::string printRows(gis::CDBTable& table)
{
    std::string out;
    for (int row = 0; row < table.rowCount(); ++row) {
        out += "(";
        for (int f = 0; f < table.fieldCount(); ++f) {
            orv::CPolyValue value;
            table.column(f).valueAt(row, value);
            out += (f ? ", " : "") + describe(value);
        }
        out += ")\n";
    }
    return out;
}

std::string printTable(gis::CDBTable& table)
{
    std::string out = "table " + printName(table.name()) + " (";
    for (int f = 0; f < table.fieldCount(); ++f)
        out += (f ? ", " : "") + printField(*table.field(f));
    out += ");\n";
    if (table.rowCount() > 0)
        out += "rows " + printName(table.name()) + ":\n" + printRows(table) + ";\n";
    return out;
}

std::string printTheme(gis::CTheme& theme)
{
    std::string out = "theme " + printName(theme.name) + ": " + describe(theme.type) + " "
        + describe(theme.coords) + " on " + printName(theme.table->name());
    if (theme.targetDrawing != 0)
        out += " at " + describe(theme.targetDrawing);
    if (theme.library().activeTheme() == &theme)
        out += " active";
    out += theme.visible ? "" : " hidden";
    out += theme.locked ? " locked" : "";
    out += ";\n";
    const int count = theme.entities().entityCount();
    if (count > 0)
        out += "ents " + printName(theme.name) + ":\n";
    for (int i = 0; i < count; ++i)
        out += printEnt(theme, i) + (i + 1 < count ? ",\n" : ";\n");
    return out;
}

std::string printLibrary(gis::CLibGis& library)
{
    std::string out;
    const Library* embedded = Library::of(&library);
    for (gis::CDBTable* table : embedded->tables())
        out += printTable(*table);
    for (gis::CTheme* theme : embedded->themes())
        out += printTheme(*theme);
    return out;
}

} // namespace support
