// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfWriter.h"

#include "embedded/model/Table.h"
#include "embedded/shapefile/Encodings.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace embedded {

namespace {

constexpr std::size_t LongestName = 10;
constexpr int WidestText = 254;
constexpr int WidestNumber = 20;
constexpr int IntegerWidth = 11; // -2147483648

int fixedLength(double value, int decimals)
{
    std::string text;
    orv::AppendFixed(text, value, decimals);
    return static_cast<int>(text.size());
}

int textWidth(const Column& column, const std::vector<int>& rows)
{
    std::size_t longest = 1;
    for (const int row : rows)
        if (row >= 0 && column.hasValue(row))
            longest = std::max(longest, column.textAt(row).size());
    return static_cast<int>(std::min<std::size_t>(longest, WidestText));
}

int numberWidth(const Column& column, const std::vector<int>& rows, int decimals)
{
    double lowest = 0.0;
    double highest = 0.0;
    for (const int row : rows) {
        if (row < 0 || !column.hasValue(row))
            continue;
        const double value = column.decimalAt(row);
        if (std::isfinite(value)) {
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    }
    // The longest texts are those of the two ends; a number too long for them is written
    // otherwise.
    const int longest = std::max(fixedLength(highest, decimals), fixedLength(lowest, decimals));
    return std::min(longest, WidestNumber);
}

void describe(gis::CField& field, const Column& column, const std::vector<int>& rows,
    int maxTextBytes, DbfColumnLayout& layout)
{
    switch (field.format) {
    case gis::FieldFormat::Boolean:
        layout.type = 'L';
        layout.widthBytes = 1;
        return;
    case gis::FieldFormat::Integer:
        layout.type = 'N';
        layout.widthBytes = IntegerWidth;
        return;
    case gis::FieldFormat::Decimal:
        layout.type = 'N';
        layout.decimals = field.decimalDigits();
        layout.widthBytes = numberWidth(column, rows, layout.decimals);
        return;
    case gis::FieldFormat::Date:
        layout.type = 'D';
        layout.widthBytes = 8;
        return;
    default:
        layout.type = 'C';
        layout.widthBytes
            = std::min(textWidth(column, rows), std::clamp(maxTextBytes, 1, WidestText));
    }
}

/// Whether nothing in the file tells decimals from whole numbers.
bool readsBackAsInteger(
    const gis::CField& field, const Column& column, const std::vector<int>& rows)
{
    if (field.format != gis::FieldFormat::Decimal || field.decimalDigits() != 0)
        return false;
    return std::all_of(rows.begin(), rows.end(), [&column](int row) {
        return row < 0 || !column.hasValue(row)
            || (column.decimalAt(row) >= std::numeric_limits<std::int32_t>::min()
                && column.decimalAt(row) <= std::numeric_limits<std::int32_t>::max());
    });
}

void reportField(Report& report, FindingCode code, const orv::String& field, std::string detail,
    FindingSeverity severity = FindingSeverity::Warning)
{
    Finding finding;
    finding.code = code;
    finding.severity = severity;
    finding.subject = field.Bytes();
    finding.detail = std::move(detail);
    report.add(std::move(finding));
}

} // namespace

std::vector<std::string> dbfFieldNames(const std::vector<std::string>& names)
{
    std::unordered_set<std::string> taken;
    std::vector<std::string> result;
    for (const std::string& name : names) {
        std::string clean;
        for (const char c : name)
            clean += c == '\0' ? '_' : c;
        if (clean.empty())
            clean = "_";
        std::string candidate(cutUtf8(clean, LongestName));
        for (int number = 1; !taken.insert(orv::FoldAsciiCase(candidate)).second; ++number) {
            const std::string tail = "_" + std::to_string(number);
            candidate = std::string(cutUtf8(clean, LongestName - tail.size())) + tail;
        }
        result.push_back(std::move(candidate));
    }
    return result;
}

std::vector<DbfColumnLayout> dbfLayout(
    gis::CDBTable& table, const std::vector<int>& rows, int maxTextBytes, Report& report)
{
    std::vector<DbfColumnLayout> layouts;
    if (table.fieldCount() == 0) {
        DbfColumnLayout number;
        number.name = "FID";
        number.type = 'N';
        number.widthBytes = IntegerWidth;
        layouts.push_back(std::move(number));
        return layouts;
    }
    std::vector<std::string> names;
    for (int i = 0; i < table.fieldCount(); ++i)
        names.push_back(table.field(i)->name.Bytes());
    const std::vector<std::string> fileNames = dbfFieldNames(names);
    for (int i = 0; i < table.fieldCount(); ++i) {
        gis::CField& field = *table.field(i);
        DbfColumnLayout layout;
        layout.fieldIndex = i;
        layout.name = fileNames[static_cast<std::size_t>(i)];
        describe(field, table.column(i), rows, maxTextBytes, layout);
        if (layout.name != field.name.View())
            reportField(report, FindingCode::FieldNameCut, field.name, layout.name);
        if (field.format == gis::FieldFormat::List)
            reportField(report, FindingCode::FormatChanged, field.name, "list as text");
        if (readsBackAsInteger(field, table.column(i), rows))
            reportField(report, FindingCode::FormatChanged, field.name,
                "decimals without digits, which read back as integers", FindingSeverity::Note);
        layouts.push_back(std::move(layout));
    }
    return layouts;
}

std::string dbfNumberText(double value, int decimals, int widthBytes, bool& isExact)
{
    const auto readsBack = [value](const std::string& text) {
        double read = 0.0;
        return orv::ParseDouble(text, read) && read == value;
    };
    isExact = false;
    if (!std::isfinite(value))
        return {};
    std::string text;
    orv::AppendFixed(text, value, decimals);
    const auto width = static_cast<std::size_t>(widthBytes);
    if (text.size() > width) {
        text = orv::ShortestText(value);
        char buffer[40];
        for (int precision = 16; text.size() > width && precision >= 0; --precision) {
            const auto end = std::to_chars(
                buffer, buffer + sizeof buffer, value, std::chars_format::scientific, precision);
            text.assign(buffer, end.ptr);
        }
        if (text.size() > width)
            return {};
    }
    isExact = readsBack(text);
    return text;
}

} // namespace embedded
