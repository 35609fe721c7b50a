// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/FieldGuess.h"

#include "embedded/store/CellText.h"
#include "embedded/store/Statement.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace embedded::store {
namespace {

constexpr std::int64_t ExactWhole = std::int64_t(1) << 53;

enum class Declared { Text, Boolean, Whole, Real, Date, Moment, Bytes, Any };

bool containsAny(std::string_view text, std::initializer_list<std::string_view> words)
{
    return std::any_of(words.begin(), words.end(),
        [&](std::string_view word) { return text.find(word) != std::string_view::npos; });
}

// GeoPackage's own names first, then the names that other databases use.
Declared declaredOf(const std::string& type)
{
    const std::string folded = orv::FoldAsciiCase(type);
    const std::string_view name = std::string_view(folded).substr(0, folded.find_first_of("( "));
    if (name.starts_with("bool"))
        return Declared::Boolean;
    if (name == "date")
        return Declared::Date;
    if (name == "datetime" || name == "timestamp")
        return Declared::Moment;
    if (containsAny(name, { "blob", "geometry", "polygon", "linestring", "multipoint" })
        || name == "point")
        return Declared::Bytes;
    if (containsAny(name, { "int" }))
        return Declared::Whole;
    if (containsAny(name, { "char", "text", "clob", "json" }))
        return Declared::Text;
    if (containsAny(name, { "real", "floa", "doub", "numeric", "decimal" }))
        return Declared::Real;
    return Declared::Any;
}

int digitsOf(double value)
{
    std::array<char, 64> buffer {};
    const auto [end, problem] = std::to_chars(
        buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific);
    if (problem != std::errc() || !std::isfinite(value))
        return 0;
    const std::string_view text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const auto mark = text.find('e');
    const auto point = text.find('.');
    int exponent = 0;
    const char* from = text.data() + mark + (text[mark + 1] == '+' ? 2 : 1);
    std::from_chars(from, text.data() + text.size(), exponent);
    const int mantissa = point == std::string_view::npos ? 0 : static_cast<int>(mark - point - 1);
    return std::clamp(mantissa - exponent, 0, gis::MaxDecimalDigits);
}

/// What a column holds.
struct Content {
    std::int64_t values = 0;
    std::int64_t texts = 0;
    std::int64_t reals = 0;
    std::int64_t blobs = 0;
    std::int64_t timesOfDay = 0;
    std::int64_t notDates = 0;
    std::int64_t notBooleans = 0;
    std::int64_t lowest = std::numeric_limits<std::int64_t>::max();
    std::int64_t highest = std::numeric_limits<std::int64_t>::min();
    int digits = 0;
    bool isReadableNumber = true; // every text among the values is a number

    [[nodiscard]] bool fits(std::int64_t low, std::int64_t high) const
    {
        return lowest >= low && highest <= high;
    }
};

void look(Statement& row, int column, Declared declared, Content& content)
{
    std::int32_t day = 0;
    bool hasTime = false;
    double number = 0;
    const bool isDate = declared == Declared::Date || declared == Declared::Moment;
    switch (row.type(column)) {
    case Statement::Type::Null:
        return;
    case Statement::Type::Integer:
        content.lowest = std::min(content.lowest, row.integer(column));
        content.highest = std::max(content.highest, row.integer(column));
        content.notDates += isDate ? 1 : 0;
        break;
    case Statement::Type::Real:
        ++content.reals;
        content.notDates += isDate ? 1 : 0;
        if (content.digits < gis::MaxDecimalDigits)
            content.digits = std::max(content.digits, digitsOf(row.real(column)));
        break;
    case Statement::Type::Text:
        ++content.texts;
        if (isDate) {
            if (parseIsoDay(row.text(column), day, hasTime))
                content.timesOfDay += hasTime ? 1 : 0;
            else
                ++content.notDates;
        } else if (declared == Declared::Boolean) {
            content.notBooleans += booleanOf(row.text(column)) ? 0 : 1;
        } else if (declared != Declared::Text) {
            content.isReadableNumber
                = content.isReadableNumber && orv::ParseDouble(row.text(column), number);
        }
        break;
    case Statement::Type::Blob:
        ++content.blobs;
        break;
    }
    ++content.values;
}

gis::FieldFormat wholeFormat(const Content& content)
{
    if (content.values == 0
        || content.fits(
            std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()))
        return gis::FieldFormat::Integer;
    return content.fits(-ExactWhole, ExactWhole) ? gis::FieldFormat::Decimal
                                                 : gis::FieldFormat::Text;
}

// Numbers as declared unless texts stand among them, which only a text field can keep.
GuessedField guess(const std::string& column, Declared declared, const Content& content)
{
    GuessedField field { column, gis::FieldFormat::Text, 0 };
    const bool isNumeric = content.isReadableNumber;
    switch (declared) {
    case Declared::Boolean:
        field.format = gis::FieldFormat::Boolean;
        break;
    case Declared::Date:
    case Declared::Moment:
        field.format = gis::FieldFormat::Date;
        break;
    case Declared::Whole:
        if (isNumeric && content.texts + content.reals == 0)
            field.format = wholeFormat(content);
        else if (isNumeric)
            field.format = gis::FieldFormat::Decimal;
        break;
    case Declared::Real:
        if (isNumeric)
            field.format = gis::FieldFormat::Decimal;
        break;
    case Declared::Any:
        if (content.values > 0 && content.texts == 0)
            field.format = content.reals > 0 ? gis::FieldFormat::Decimal : wholeFormat(content);
        break;
    case Declared::Text:
    case Declared::Bytes:
        break;
    }
    if (field.format == gis::FieldFormat::Decimal)
        field.digits = content.texts > 0 ? gis::MaxDecimalDigits : content.digits;
    return field;
}

void reportField(const std::string& table, const PhysicalColumn& column, Declared declared,
    const Content& content, const GuessedField& field, Report& report)
{
    if (declared == Declared::Whole && field.format != gis::FieldFormat::Integer)
        report.add({ FindingCode::FieldTypeTaken, FindingSeverity::Note, column.name,
            field.format == gis::FieldFormat::Decimal ? "decimal: values beyond 32 bits"
                                                      : "text: values beyond 32 bits and 2^53",
            0, 0 });
    if (content.timesOfDay > 0)
        report.add({ FindingCode::TimeDropped, FindingSeverity::Warning, column.name, table,
            content.timesOfDay, 0 });
    if (content.notDates > 0)
        report.add({ FindingCode::DateUnreadable, FindingSeverity::Warning, column.name, table,
            content.notDates, 0 });
    if (content.notBooleans > 0)
        report.add({ FindingCode::LogicalUnreadable, FindingSeverity::Warning, column.name, table,
            content.notBooleans, 0 });
    if (content.blobs > 0)
        report.add({ FindingCode::CellsEmptied, FindingSeverity::Warning, column.name, table,
            content.blobs, 0 });
}

} // namespace

std::vector<GuessedField> guessFields(Connection& connection, const std::string& table,
    const std::vector<PhysicalColumn>& columns, Report& report)
{
    std::vector<const PhysicalColumn*> taken;
    std::vector<Declared> declared;
    std::string list;
    for (const PhysicalColumn& column : columns) {
        const Declared kind = declaredOf(column.type);
        if (kind == Declared::Bytes) {
            report.add(
                { FindingCode::FieldLeftOut, FindingSeverity::Warning, column.name, table, 0, 0 });
            continue;
        }
        taken.push_back(&column);
        declared.push_back(kind);
        list += (list.empty() ? "" : ", ") + quoted(column.name);
    }
    std::vector<GuessedField> fields;
    if (taken.empty())
        return fields;
    std::vector<Content> contents(taken.size());
    Statement rows(connection, "SELECT " + list + " FROM " + quoted(table));
    while (rows.step())
        for (std::size_t i = 0; i < taken.size(); ++i)
            look(rows, static_cast<int>(i), declared[i], contents[i]);
    for (std::size_t i = 0; i < taken.size(); ++i) {
        fields.push_back(guess(taken[i]->name, declared[i], contents[i]));
        reportField(table, *taken[i], declared[i], contents[i], fields.back(), report);
    }
    return fields;
}

} // namespace embedded::store
