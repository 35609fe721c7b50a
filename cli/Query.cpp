// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/RowWriters.h"
#include "cli/Source.h"

#include "embedded/model/EntityStore.h"

#include "query/execution/FilterNames.h"
#include "query/execution/Readings.h"
#include "query/language/FilterParser.h"

#include "tematica/QueryExecute.h"

#include <fmt/format.h>

#include <algorithm>

namespace cli {

namespace {

using embedded::Result;

/// Field positions for "A,B". A name may hold commas itself: the longest run of pieces that is a
/// field's name is taken.
Result<std::vector<int>> fieldPositions(
    gis::CLibGis& library, gis::CDBTable* table, const std::string& names)
{
    std::vector<int> positions;
    for (std::size_t start = 0; start <= names.size();) {
        std::size_t end = names.size();
        auto field = findField(library, table, names.substr(start));
        while (!field && end > start && end != std::string::npos) {
            end = end == 0 ? std::string::npos : names.rfind(',', end - 1);
            if (end == std::string::npos || end < start)
                break;
            field = findField(library, table, names.substr(start, end - start));
        }
        if (!field)
            return embedded::Error { embedded::ErrorCode::UnknownField,
                names.substr(start, names.find(',', start) - start),
                "table " + library.GetTableName(table).Bytes() };
        // A field named twice is given once: a JSON object has a name once only.
        if (std::find(positions.begin(), positions.end(), field.value()) == positions.end())
            positions.push_back(field.value());
        start = end + 1;
    }
    return positions;
}

std::vector<int> allPositions(gis::CLibGis& library, gis::CDBTable* table)
{
    std::vector<int> positions(static_cast<std::size_t>(library.GetNumFields(table)));
    for (std::size_t i = 0; i < positions.size(); ++i)
        positions[i] = static_cast<int>(i);
    return positions;
}

/// The entity's number, then the fields.
std::vector<OutputColumn> columnsOf(
    gis::CLibGis& library, gis::CDBTable* table, const std::vector<int>& positions)
{
    std::vector<OutputColumn> columns { { "#", gis::FieldFormat::Integer, 0 } };
    for (const int position : positions)
        columns.push_back(columnOf(library, library.GetField(table, position)));
    return columns;
}

int writeRows(gis::CLibGis& library, gis::CTheme* theme, const std::vector<gis::CEnt*>& found,
    const std::vector<int>& positions, const QueryArguments& arguments)
{
    Output output;
    auto columns = columnsOf(library, library.GetTable(theme), positions);
    std::vector<orv::CPolyValue> cells(columns.size());
    const auto writer = arguments.format == Format::GeoJson
        ? makeGeoJsonWriter(*theme, std::move(columns), output)
        : makeRowWriter(arguments.format, std::move(columns), output);
    const std::size_t count = arguments.limit
        ? std::min(found.size(), static_cast<std::size_t>(*arguments.limit))
        : found.size();
    for (std::size_t i = 0; i < count; ++i) {
        cells[0] = embedded::EntityStore::indexOf(found[i]) + 1;
        orv::CResultRow* row = library.GetRow(found[i]);
        for (std::size_t k = 0; k < positions.size(); ++k) {
            cells[k + 1].SetToEmpty();
            library.GetRowValue(row, positions[k], cells[k + 1]);
        }
        if (!writer->row(cells, found[i]))
            return Failed;
    }
    writer->end();
    return output.finish();
}

/// Which condition was taken; its text too where that is not simply what stands before the slip,
/// and the slip where the word that stands there does not show it.
void tellShortened(const query::ParseOutcome& filter, std::string_view text)
{
    tell(fmt::format("only the condition before position {} was used", filter.errorPosition));
    const auto start = static_cast<std::size_t>(filter.conditionPosition - 1);
    const auto isPlain = [](char c) { return c == ' ' || c == '('; };
    if (!std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(start), isPlain))
        tell(fmt::format(
            "that is: {}", text.substr(start, static_cast<std::size_t>(filter.conditionBytes))));
    if (const std::string slip = hiddenSlip(filter); !slip.empty())
        tell(fmt::format("the rest is refused at position {}: {}", filter.errorPosition, slip));
}

/// Says what of the filter has no effect: names that are not there, and what follows the point
/// where the parser stopped.
void tellFilterWarnings(std::string_view text, const query::ParseOutcome& filter,
    gis::CLibGis& library, gis::CTheme* theme)
{
    if (filter.isShortened())
        tellShortened(filter, text);
    for (const auto& name : query::filterNames(*filter.root, &library, theme))
        if (!name.isKnown)
            tell(fmt::format("there is no {} named {}; terms that name it cannot be computed",
                name.isFunction ? "function" : "field", name.name.Bytes()));
}

} // namespace

int runQuery(const QueryArguments& arguments)
{
    auto library = openForReading(arguments.file);
    if (!library)
        return fail(library.error());
    gis::CLibGis& lib = *library.value();
    const auto theme = chooseTheme(lib, arguments.file, arguments.theme);
    if (!theme)
        return fail(theme.error());
    gis::CDBTable* table = lib.GetTable(theme.value());
    auto positions = arguments.fields ? fieldPositions(lib, table, *arguments.fields)
                                      : Result<std::vector<int>>(allPositions(lib, table));
    if (!positions)
        return fail(positions.error());

    CQueryExecute execution(&lib, theme.value());
    const auto filter = query::parseFilter(arguments.filter, query::ErrorReport::Silent);
    if (!execution.SetQueryFilter(orv::String(arguments.filter))) {
        tell(refusal(filter));
        return FilterRefused;
    }
    if (filter.root)
        tellFilterWarnings(arguments.filter, filter, lib, theme.value());
    std::vector<gis::CEnt*> found;
    execution.Execute(found);
    // A damaged page of the file must not pass for cells without a value.
    if (!arguments.isCountOnly) {
        for (const int position : positions.value())
            static_cast<void>(query::isReadable(lib, table, position));
        if (arguments.format == Format::GeoJson)
            static_cast<void>(theme.value()->geometry()); // nor for entities without a shape
    }
    if (const embedded::Error* failed = failedRead(lib))
        return fail(*failed);
    if (!arguments.isCountOnly)
        return writeRows(lib, theme.value(), found, positions.value(), arguments);
    Output output;
    output.write(fmt::format("{}\n", found.size()));
    return output.finish();
}

} // namespace cli
