// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Cells.h"
#include "cli/Commands.h"
#include "cli/Output.h"
#include "cli/Source.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using Json = nlohmann::ordered_json;

const char* formatWord(gis::FieldFormat format)
{
    switch (format) {
    case gis::FieldFormat::Text:
        return "text";
    case gis::FieldFormat::Boolean:
        return "boolean";
    case gis::FieldFormat::Integer:
        return "integer";
    case gis::FieldFormat::Decimal:
        return "decimal";
    case gis::FieldFormat::List:
        return "list";
    case gis::FieldFormat::Date:
        return "date";
    }
    return "text";
}

/// Where a field's values come from.
const char* typeWord(gis::FieldType type)
{
    static const char* const words[] = { "user", "point name", "point description", "area",
        "perimeter 2d", "perimeter 3d", "centroid x", "centroid y", "centroid z", "sketch",
        "photo 1", "photo 2", "photo 3", "photo 4", "photo 5" };
    const auto index = static_cast<std::size_t>(type);
    return index < std::size(words) ? words[index] : words[0];
}

const char* geometryWord(gis::EntType type)
{
    switch (type) {
    case gis::EntType::Points:
        return "points";
    case gis::EntType::Lines:
        return "lines";
    case gis::EntType::Polygons:
        return "polygons";
    }
    return "points";
}

const char* coordinatesWord(gis::EntTypeCoords coords)
{
    switch (coords) {
    case gis::EntTypeCoords::XY:
        return "2d";
    case gis::EntTypeCoords::XYM:
        return "m";
    case gis::EntTypeCoords::XYZ:
        return "3d";
    }
    return "2d";
}

Json tableJson(gis::CLibGis& library, gis::CDBTable* table)
{
    Json fields = Json::array();
    for (int i = 0; i < library.GetNumFields(table); ++i) {
        gis::CField* field = library.GetField(table, i);
        fields.push_back({ { "name", library.GetFieldName(field).Bytes() },
            { "format", formatWord(library.GetFieldFormat(field)) },
            { "type", typeWord(field->type) }, { "required", library.IsFieldRequested(field) } });
    }
    return { { "name", library.GetTableName(table).Bytes() }, { "rows", library.GetNumRows(table) },
        { "fields", std::move(fields) } };
}

Json themeJson(gis::CLibGis& library, gis::CTheme* theme)
{
    return { { "name", library.GetThemeName(theme).Bytes() },
        { "table", library.GetTableName(library.GetTable(theme)).Bytes() },
        { "entities", library.GetNoEnts(theme) },
        { "geometry", geometryWord(gis::CLibGis::GetEntType(theme)) },
        { "coordinates", coordinatesWord(library.GetEntCoords(theme)) } };
}

Json describe(gis::CLibGis& library)
{
    Json tables = Json::array();
    for (int i = 0; i < library.GetNumTables(); ++i)
        tables.push_back(tableJson(library, library.GetTable(i)));
    Json themes = Json::array();
    for (int i = 0; i < library.GetNumThemes(); ++i)
        themes.push_back(themeJson(library, library.GetTheme(i)));
    return { { "tables", std::move(tables) }, { "themes", std::move(themes) } };
}

std::string word(const Json& object, const char* key)
{
    return plainText(object.at(key).get<std::string>());
}

/// The same facts for people.
std::string asText(const Json& facts)
{
    std::string text;
    for (const Json& theme : facts.at("themes"))
        text += fmt::format("theme {}: {} {}, {}, table {}\n", word(theme, "name"),
            theme.at("entities").get<int>(), word(theme, "geometry"), word(theme, "coordinates"),
            word(theme, "table"));
    for (const Json& table : facts.at("tables")) {
        text
            += fmt::format("table {}: {} rows\n", word(table, "name"), table.at("rows").get<int>());
        for (const Json& field : table.at("fields")) {
            const std::string type = word(field, "type");
            text += fmt::format("  {}: {}{}{}\n", word(field, "name"), word(field, "format"),
                type == "user" ? "" : ", " + type,
                field.at("required").get<bool>() ? ", required" : "");
        }
    }
    return text;
}

} // namespace

int runInfo(const InfoArguments& arguments)
{
    auto library = openForReading(arguments.file);
    if (!library)
        return fail(library.error());
    const Json facts = describe(*library.value());
    Output output;
    // Names are bytes of the file: what is no UTF-8 is shown as such instead of ending the program.
    output.write(arguments.isJson ? facts.dump(2, ' ', false, Json::error_handler_t::replace) + "\n"
                                  : asText(facts));
    return output.finish();
}

} // namespace cli
