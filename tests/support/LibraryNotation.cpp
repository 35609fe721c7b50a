// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/LibraryNotation.h"

#include "tests/support/Describe.h"
#include "tests/support/NotationReader.h"

namespace support {
namespace {

constexpr int DefaultDigits = 2;
enum DateMode { NoDate = 0, Today = 1, GivenDate = 2 };

gis::FieldFormat formatFrom(NotationReader& reader)
{
    for (int i = 0; i <= static_cast<int>(gis::FieldFormat::Date); ++i)
        if (reader.takeWord(describe(static_cast<gis::FieldFormat>(i))))
            return static_cast<gis::FieldFormat>(i);
    reader.fail("a format");
}

gis::FieldType typeFrom(NotationReader& reader)
{
    for (int i = 1; i <= static_cast<int>(gis::FieldType::Photo5); ++i)
        if (reader.takeWord(describe(static_cast<gis::FieldType>(i))))
            return static_cast<gis::FieldType>(i);
    reader.fail("a predefined value");
}

orv::CPolyValue listTexts(NotationReader& reader)
{
    std::vector<orv::String> texts;
    reader.expectMark('(');
    while (!reader.isMark(')')) {
        texts.push_back(reader.text("a text of the list"));
        if (!reader.takeMark(','))
            break;
    }
    reader.expectMark(')');
    orv::CPolyValue list;
    list.CreateArray(static_cast<unsigned>(texts.size()), orv::PolyString);
    for (unsigned i = 0; i < texts.size(); ++i)
        list.SetStringValue(i, texts[i]);
    return list;
}

void readDefault(NotationReader& reader, FieldPlan& field)
{
    auto& constraints = field.constraints;
    if (field.format == gis::FieldFormat::Date) {
        const bool isToday = reader.takeWord("today");
        if (!isToday)
            constraints[0] = reader.value(field.format);
        constraints[3] = isToday ? Today : GivenDate;
    } else if (field.format == gis::FieldFormat::Boolean) {
        constraints[0] = reader.value(field.format).GetBoolValue() ? 1 : 0;
    } else {
        constraints[0] = reader.value(field.format);
    }
}

FieldPlan fieldFrom(NotationReader& reader)
{
    FieldPlan field;
    field.name = reader.name("a field's name");
    field.format = formatFrom(reader);
    field.constraints = unsetConstraints(field.format);
    if (field.format == gis::FieldFormat::Decimal && reader.kind() == NotationReader::Kind::Word
        && !reader.isWord("required") && !reader.isWord("default") && !reader.isWord("min")
        && !reader.isWord("max") && !reader.isWord("from"))
        field.constraints[3] = reader.integer("the digits after the point");
    if (field.format == gis::FieldFormat::List && reader.isMark('('))
        field.constraints[3] = listTexts(reader);
    for (;;) {
        if (reader.takeWord("required"))
            field.required = true;
        else if (reader.takeWord("from"))
            field.type = typeFrom(reader);
        else if (reader.takeWord("default"))
            readDefault(reader, field);
        else if (reader.takeWord("min"))
            field.constraints[1] = reader.value(field.format);
        else if (reader.takeWord("max"))
            field.constraints[2] = reader.value(field.format);
        else
            return field;
    }
}

void readTable(NotationReader& reader, LibraryPlan& plan)
{
    TablePlan table;
    table.name = reader.name("a table's name");
    reader.expectMark('(');
    while (!reader.isMark(')')) {
        table.fields.push_back(fieldFrom(reader));
        if (!reader.takeMark(','))
            break;
    }
    reader.expectMark(')');
    plan.tables.push_back(std::move(table));
}

template <typename T> T& named(NotationReader& reader, std::vector<T>& all, const char* what)
{
    const orv::String name = reader.name(what);
    for (auto& one : all)
        if (one.name == name)
            return one;
    reader.fail(std::string(what) + " that was named before");
}

void readRows(NotationReader& reader, LibraryPlan& plan)
{
    TablePlan& table = named(reader, plan.tables, "a table");
    reader.expectMark(':');
    while (reader.takeMark('(')) {
        auto& row = table.rows.emplace_back();
        for (const auto& field : table.fields) {
            if (!row.empty())
                reader.expectMark(',');
            row.push_back(reader.value(field.format));
        }
        reader.expectMark(')');
        reader.takeMark(',');
    }
}

void readTheme(NotationReader& reader, LibraryPlan& plan)
{
    ThemePlan theme;
    theme.name = reader.name("a theme's name");
    reader.expectMark(':');
    for (const auto type : { gis::EntType::Points, gis::EntType::Lines, gis::EntType::Polygons })
        if (reader.takeWord(describe(type)))
            theme.type = type;
    for (const auto coords :
        { gis::EntTypeCoords::XY, gis::EntTypeCoords::XYM, gis::EntTypeCoords::XYZ })
        if (reader.takeWord(describe(coords)))
            theme.coords = coords;
    reader.expectWord("on");
    theme.tableName = named(reader, plan.tables, "a table").name;
    for (;;) {
        if (reader.takeWord("active"))
            theme.active = true;
        else if (reader.takeWord("hidden"))
            theme.hidden = true;
        else if (reader.takeWord("locked"))
            theme.locked = true;
        else if (reader.takeWord("at"))
            theme.drawing = reader.integer("a drawing's number");
        else
            break;
    }
    plan.themes.push_back(std::move(theme));
}

std::vector<double> partFrom(NotationReader& reader, int stride)
{
    std::vector<double> coordinates;
    do {
        for (int i = 0; i < stride; ++i)
            coordinates.push_back(reader.number("a coordinate"));
    } while (reader.takeMark(','));
    return coordinates;
}

void readEnts(NotationReader& reader, LibraryPlan& plan)
{
    ThemePlan& theme = named(reader, plan.themes, "a theme");
    reader.expectMark(':');
    while (!reader.atEnd() && !reader.isMark(';')) {
        EntPlan ent;
        ent.row = reader.integer("the entity's row");
        reader.expectMark('[');
        while (!reader.isMark(']')) {
            ent.parts.push_back(partFrom(reader, theme.stride()));
            if (!reader.takeMark('|'))
                break;
        }
        reader.expectMark(']');
        if (reader.takeWord("point")) {
            const orv::String name = reader.text("the point's name");
            ent.point = PointPlan { name, reader.text("the point's description") };
        }
        theme.ents.push_back(std::move(ent));
        if (!reader.takeMark(','))
            break;
    }
}

} // namespace

std::array<orv::CPolyValue, gis::ConstraintCount> unsetConstraints(gis::FieldFormat format)
{
    using orv::CPolyValue;
    std::array<CPolyValue, gis::ConstraintCount> values;
    switch (format) {
    case gis::FieldFormat::Text:
        values[0] = orv::String();
        values[3] = 0;
        break;
    case gis::FieldFormat::Boolean:
        values[0] = 2;
        break;
    case gis::FieldFormat::Integer:
        values[0] = values[1] = values[2] = CPolyValue(orv::UnsetInteger);
        break;
    case gis::FieldFormat::Decimal:
        values[0] = values[1] = values[2] = CPolyValue(orv::UnsetDecimal);
        values[3] = DefaultDigits;
        break;
    case gis::FieldFormat::List:
        values[0] = orv::String();
        values[3].CreateArray(0, orv::PolyString);
        break;
    case gis::FieldFormat::Date:
        values[0] = 0;
        values[3] = NoDate;
        break;
    }
    return values;
}

LibraryPlan planFrom(std::string_view notation)
{
    LibraryPlan plan;
    NotationReader reader(notation);
    while (!reader.atEnd()) {
        if (reader.takeWord("table"))
            readTable(reader, plan);
        else if (reader.takeWord("rows"))
            readRows(reader, plan);
        else if (reader.takeWord("theme"))
            readTheme(reader, plan);
        else if (reader.takeWord("ents"))
            readEnts(reader, plan);
        else
            reader.fail("table, rows, theme or ents");
        if (!reader.takeMark(';') && !reader.atEnd())
            reader.fail("';'");
    }
    return plan;
}

} // namespace support
