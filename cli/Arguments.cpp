// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Arguments.h"

#include "cli/Output.h"

#include "host/base/Numbers.h"
#include "host/base/String.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iostream>
#include <map>

namespace cli {

namespace {

const std::map<std::string, Format> RowFormats { { "table", Format::Table }, { "csv", Format::Csv },
    { "json", Format::Json }, { "geojson", Format::GeoJson } };
const std::map<std::string, Format> ValueFormats { { "table", Format::Table },
    { "csv", Format::Csv }, { "json", Format::Json } };
const std::map<std::string, OnConflict> Conflicts { { "fail", OnConflict::Fail },
    { "rename", OnConflict::Rename }, { "merge", OnConflict::Merge } };
const std::map<std::string, embedded::ExportCoordinates> Coordinates {
    { "theme", embedded::ExportCoordinates::AsTheme },
    { "2d", embedded::ExportCoordinates::XY },
    { "3d", embedded::ExportCoordinates::XYZ },
};

/// One of these names and nothing else: not the number that a name stands for.
template <typename Value> CLI::Validator byName(const std::map<std::string, Value>& values)
{
    return CLI::Validator(
        [&values](std::string& text) {
            const auto found = values.find(text);
            if (found == values.end()) {
                std::string names;
                for (const auto& [name, value] : values)
                    names += (names.empty() ? "" : ", ") + name;
                return "'" + text + "' is none of " + names;
            }
            text = orv::String::ValueOf(static_cast<int>(found->second)).Bytes();
            return std::string();
        },
        "");
}

/// A path that names something.
CLI::Validator namedPath()
{
    return CLI::Validator(
        [](std::string& text) { return text.empty() ? "an empty path" : std::string(); }, "");
}

CLI::Validator pngPath()
{
    return CLI::Validator(
        [](std::string& text) {
            const bool isPng = text.size() > 4
                && orv::CompareIgnoreAsciiCase(
                       std::string_view(text).substr(text.size() - 4), ".png")
                    == 0;
            return isPng ? std::string()
                         : "'" + text + "' is no name of a picture: only .png is written";
        },
        "");
}

/// A whole number from 0.
CLI::Validator wholeFromZero()
{
    return CLI::Validator(
        [](std::string& text) {
            const bool isNumber
                = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
            if (!isNumber)
                return "'" + text + "' is no number of rows: give 0 or more";
            constexpr std::size_t DigitsOfAllRows = 9;
            const std::size_t zeros = std::min(text.find_first_not_of('0'), text.size() - 1);
            if (text.size() - zeros > DigitsOfAllRows)
                text = "2147483647"; // more than there can be: all
            return std::string();
        },
        "");
}

/// Takes the filter out of the words of a query, since it may begin with "-" as options do
/// (-5 < Corsie); a stand-in keeps its place. Empty when there is none.
std::optional<std::string> takeFilter(std::vector<std::string>& words)
{
    static const char* const withValue[] = { "--theme", "--fields", "--limit", "--format" };
    static const char* const known[] = { "--count", "--help", "-h" };
    int plainWords = 0;
    bool isOptionsEnd = false;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        const auto is = [&](const char* option) { return word == option; };
        if (!isOptionsEnd && is("--")) {
            isOptionsEnd = true;
        } else if (!isOptionsEnd && std::any_of(std::begin(withValue), std::end(withValue), is)) {
            ++i;
        } else if (!isOptionsEnd
            && (word.rfind("--", 0) == 0 || std::any_of(std::begin(known), std::end(known), is))) {
            continue;
        } else if (!isOptionsEnd && plainWords == 0 && word.size() > 1 && word[0] == '-') {
            continue; // no file's name: an option that does not exist
        } else if (++plainWords == 2) {
            return std::exchange(words[i], "FILTER");
        }
    }
    return std::nullopt;
}

void describeInfo(CLI::App& app, InfoArguments& arguments)
{
    app.add_option("FILE", arguments.file, "library (.gpkg) or shapefile (.shp)")
        ->required()
        ->check(namedPath());
    app.add_flag("--json", arguments.isJson, "as JSON");
}

void describeQuery(CLI::App& app, QueryArguments& arguments)
{
    app.add_option("FILE", arguments.file, "library (.gpkg) or shapefile (.shp)")
        ->required()
        ->check(namedPath());
    app.add_option("FILTER", arguments.filter, "condition, e.g. \"Tipo = 'Strada' AND Corsie > 1\"")
        ->required();
    app.add_option("--theme", arguments.theme, "theme to ask; not needed where there is one");
    app.add_flag("--count", arguments.isCountOnly, "only the number of entities found");
    app.add_option("--fields", arguments.fields, "only these fields, e.g. Nome,Tipo");
    app.add_option("--limit", arguments.limit, "only the first so many")
        ->transform(wholeFromZero());
    app.add_option("--format", arguments.format, "table, csv, json or geojson")
        ->transform(byName(RowFormats))
        ->default_str("table");
}

void describeValues(CLI::App& app, ValuesArguments& arguments)
{
    app.add_option("FILE", arguments.file, "library (.gpkg) or shapefile (.shp)")
        ->required()
        ->check(namedPath());
    app.add_option("FIELD", arguments.field, "field whose distinct values are listed")->required();
    app.add_option("--theme", arguments.theme, "theme to ask; not needed where there is one");
    app.add_option("--format", arguments.format, "table, csv or json")
        ->transform(byName(ValueFormats))
        ->default_str("table");
}

void describeImport(CLI::App& app, ImportArguments& arguments)
{
    app.add_option("FILE", arguments.file, "shapefile (.shp)")->required()->check(namedPath());
    app.add_option("--into", arguments.into, "library (.gpkg); made when it is not there")
        ->required()
        ->check(namedPath());
    app.add_option(
           "--encoding", arguments.encoding, "encoding of the texts, whatever the files say")
        ->check(CLI::Validator(
            [](std::string& text) { return text.empty() ? "an empty encoding" : std::string(); },
            ""));
    app.add_option("--point-name", arguments.pointName, "make points, named by this field");
    app.add_option(
        "--point-description", arguments.pointDescription, "make points, described by this field");
    app.add_option("--on-conflict", arguments.onConflict,
           "what to do when the library has such a table: fail, rename or merge")
        ->transform(byName(Conflicts))
        ->default_str("fail");
    app.add_flag("--strict", arguments.isStrict, "refuse files that give a warning");
    app.add_option("--report", arguments.report,
        "JSON file for all that was found: encoding, formats taken, warnings");
}

void describeExport(CLI::App& app, ExportArguments& arguments)
{
    app.add_option("FILE", arguments.file, "library (.gpkg)")->required()->check(namedPath());
    app.add_option("--to", arguments.folder, "folder for the shapefiles")
        ->required()
        ->check(namedPath());
    app.add_option("--theme", arguments.themes, "theme to export, any number of times; else all")
        ->expected(1)
        ->take_all();
    app.add_option("--coords", arguments.options.coordinates, "theme, 2d or 3d")
        ->transform(byName(Coordinates))
        ->default_str("theme");
    app.add_option("--max-chars", arguments.options.maxTextBytes, "widest text column, in bytes")
        ->check(CLI::Range(1, 254))
        ->capture_default_str();
    app.add_flag("--overwrite", arguments.isOverwriting, "replace shapefiles that are there");
    app.add_option("--report", arguments.report, "JSON file for all that could not be kept");
}

/// Whole numbers or numbers between separators, all of a text; false for any other.
template <std::size_t Count>
bool splitNumbers(std::string_view text, char separator, std::array<double, Count>& numbers)
{
    for (std::size_t i = 0; i < Count; ++i) {
        const std::size_t end = i + 1 < Count ? text.find(separator) : text.size();
        if (end == std::string_view::npos || !orv::ParseDouble(text.substr(0, end), numbers[i]))
            return false;
        text.remove_prefix(std::min(text.size(), end + 1));
    }
    return true;
}

constexpr double LargestPictureSide = 20000; // 1.6 GB of pixels

std::string readSize(const std::string& text, RenderArguments& arguments)
{
    std::array<double, 2> sides {};
    const bool isWhole = text.find_first_not_of("0123456789x") == std::string::npos;
    if (!isWhole || !splitNumbers(text, 'x', sides) || sides[0] < 1 || sides[1] < 1
        || sides[0] > LargestPictureSide || sides[1] > LargestPictureSide)
        return "'" + text + "' is no size: give pixels as 1600x1000, at most 20000 each";
    arguments.width = static_cast<int>(sides[0]);
    arguments.height = static_cast<int>(sides[1]);
    return {};
}

std::string readBox(const std::string& text, RenderArguments& arguments)
{
    std::array<double, 4> box {};
    if (!splitNumbers(text, ',', box) || !(box[0] < box[2]) || !(box[1] < box[3]))
        return "'" + text + "' is no rectangle: give x0,y0,x1,y1 with x0 < x1 and y0 < y1";
    arguments.box = box;
    return {};
}

void describeRender(CLI::App& app, RenderArguments& arguments)
{
    app.add_option("FILE", arguments.file, "library (.gpkg) or shapefile (.shp)")
        ->required()
        ->check(namedPath());
    app.add_option("--output", arguments.output, "picture to write (.png)")
        ->required()
        ->check(namedPath())
        ->check(pngPath());
    app.add_option(
           "--theme", arguments.themes, "theme to draw, any number of times; else the visible ones")
        ->expected(1)
        ->take_all();
    app.add_option_function<std::string>(
           "--size",
           [&arguments](const std::string& text) {
               if (const std::string problem = readSize(text, arguments); !problem.empty())
                   throw CLI::ValidationError("--size", problem);
           },
           "pixels")
        ->default_str("1600x1000");
    app.add_option_function<std::string>(
        "--bbox",
        [&arguments](const std::string& text) {
            if (const std::string problem = readBox(text, arguments); !problem.empty())
                throw CLI::ValidationError("--bbox", problem);
        },
        "part of the map as x0,y0,x1,y1; else all");
    app.add_flag("--legend", arguments.hasLegend, "with the themes' names and symbols");
}

/// What CLI11 says of a wrong call, as one line.
Arguments wrongUsage(const CLI::ParseError& error)
{
    std::string text = error.what();
    std::replace(text.begin(), text.end(), '\n', ' ');
    tell(text + " (see: tematica --help)");
    return Ended { WrongUsage };
}

} // namespace

Arguments parseArguments(std::vector<std::string> words)
{
    CLI::App app("Questions to the attribute data of maps, from the command line.", "tematica");
    app.set_version_flag("--version", "tematica " TEMATICA_VERSION);
    app.require_subcommand(1);
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::Throw);
    app.footer("Exit codes: 0 done, 1 could not be done, 2 wrong call, 3 filter refused.");

    InfoArguments info;
    QueryArguments query;
    ValuesArguments values;
    ImportArguments import;
    ExportArguments exports;
    RenderArguments render;
    auto* infoApp = app.add_subcommand("info", "Tables and themes of a file");
    auto* queryApp = app.add_subcommand("query", "Entities for which a condition is true");
    auto* valuesApp = app.add_subcommand("values", "Distinct values of a field, with counts");
    auto* importApp = app.add_subcommand("import", "Shapefile into a library");
    auto* exportApp = app.add_subcommand("export", "Themes of a library as shapefiles");
    auto* renderApp = app.add_subcommand("render", "Map of a file's themes as a picture");
    describeInfo(*infoApp, info);
    describeQuery(*queryApp, query);
    describeValues(*valuesApp, values);
    describeImport(*importApp, import);
    describeExport(*exportApp, exports);
    describeRender(*renderApp, render);

    if (!words.empty() && words.front().rfind('-', 0) != 0
        && app.get_subcommands([&words](const CLI::App* command) {
                  return command->get_name() == words.front();
              })
               .empty()) {
        tell("there is no command '" + words.front()
            + "'; give info, query, values, import, export or render (see: tematica --help)");
        return Ended { WrongUsage };
    }
    std::optional<std::string> filter;
    if (!words.empty() && words.front() == "query")
        filter = takeFilter(words);
    try {
        std::reverse(words.begin(), words.end()); // as CLI11 wants them
        app.parse(words);
    } catch (const CLI::Success& success) {
        app.exit(success, std::cout, std::cerr);
        std::cout.flush();
        if (std::cout)
            return Ended { Done };
        tell("standard output: could not be written");
        return Ended { Failed };
    } catch (const CLI::ParseError& error) {
        return wrongUsage(error);
    }
    if (filter)
        query.filter = *filter;
    if (*infoApp)
        return info;
    if (*queryApp)
        return query;
    if (*valuesApp)
        return values;
    if (*importApp)
        return import;
    if (*exportApp)
        return exports;
    return render;
}

} // namespace cli
