// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/RowWriters.h"
#include "cli/Source.h"

#include "query/execution/DistinctValues.h"

namespace cli {

namespace {

OutputColumn countColumn()
{
    return { "count", gis::FieldFormat::Integer, 0 };
}

/// Values that are written alike (decimals that differ beyond the field's digits) share a row: no
/// text comes twice. JSON keeps them apart, since it has all their digits.
void uniteTexts(std::vector<query::DistinctValue>& values, const OutputColumn& column)
{
    std::size_t kept = 0;
    std::string last;
    for (auto& value : values) {
        std::string text = shownText(value.value, column);
        if (kept > 0 && text == last) {
            values[kept - 1].count += value.count;
            continue;
        }
        last = std::move(text);
        if (&values[kept] != &value)
            values[kept] = std::move(value);
        ++kept;
    }
    values.resize(kept);
}

int write(query::DistinctValues distinct, OutputColumn column, Format format)
{
    if (format != Format::Json)
        uniteTexts(distinct.values, column);
    if (distinct.missing > 0)
        distinct.values.push_back({ orv::CPolyValue(), distinct.missing });
    column.name = "value";
    Output output;
    const auto writer = makeRowWriter(format, { column, countColumn() }, output);
    std::vector<orv::CPolyValue> cells(2);
    for (const auto& value : distinct.values) {
        cells[0] = value.value;
        cells[1] = static_cast<int>(value.count);
        if (!writer->row(cells, nullptr))
            break;
    }
    writer->end();
    return output.finish();
}

} // namespace

int runValues(const ValuesArguments& arguments)
{
    auto library = openForReading(arguments.file);
    if (!library)
        return fail(library.error());
    gis::CLibGis& lib = *library.value();
    const auto theme = chooseTheme(lib, arguments.file, arguments.theme);
    if (!theme)
        return fail(theme.error());
    gis::CDBTable* table = lib.GetTable(theme.value());
    const auto field = findField(lib, table, arguments.field);
    if (!field)
        return fail(field.error());
    auto distinct = query::distinctValues(lib, theme.value(), field.value());
    if (!distinct)
        return fail({ embedded::ErrorCode::UnknownField, arguments.field, "" });
    if (const embedded::Error* failed = failedRead(lib))
        return fail(*failed);
    return write(
        std::move(*distinct), columnOf(lib, lib.GetField(table, field.value())), arguments.format);
}

} // namespace cli
