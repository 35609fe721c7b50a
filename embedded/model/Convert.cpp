// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"

#include "embedded/model/Column.h"
#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <future>
#include <limits>
#include <system_error>
#include <vector>

namespace embedded {

namespace {

using gis::FieldFormat;

constexpr int RowsBetweenProgress = 16384;

bool isText(FieldFormat format)
{
    return format == FieldFormat::Text || format == FieldFormat::List;
}

std::string_view trimmed(std::string_view text)
{
    const char* const blanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

orv::CPolyValue integerOf(double number)
{
    const double rounded = std::round(number); // halves away from zero, as LongRound
    if (!(std::abs(rounded) <= 2147483648.0) || rounded == 2147483648.0)
        return {};
    return orv::CPolyValue(static_cast<int>(rounded));
}

orv::CPolyValue booleanOf(std::string_view text)
{
    const std::string folded = orv::FoldAsciiCase(trimmed(text));
    // The capital accented letter too: "SÌ" is what one types with the shift lock on.
    if (folded == "s\xC3\xAC" || folded == "s\xC3\x8C" || folded == "true" || folded == "1")
        return orv::CPolyValue(true);
    if (folded == "no" || folded == "false" || folded == "0")
        return orv::CPolyValue(false);
    return {};
}

orv::CPolyValue fromText(std::string_view text, FieldFormat to)
{
    double number = 0;
    std::int64_t date = 0;
    orv::CPolyValue value;
    switch (to) {
    case FieldFormat::Integer:
        return orv::ParseDouble(text, number) ? integerOf(number) : value;
    case FieldFormat::Decimal:
        return orv::ParseDouble(text, number) && std::isfinite(number) ? orv::CPolyValue(number)
                                                                       : value;
    case FieldFormat::Boolean:
        return booleanOf(text);
    case FieldFormat::Date:
        if (orv::ParseDateText(trimmed(text), date))
            value.SetDateValue(date);
        return value;
    default:
        return orv::CPolyValue(orv::String(text));
    }
}

orv::CPolyValue fromNumber(const orv::CPolyValue& value, FieldFormat to)
{
    const double number = value.GetDoubleValue();
    switch (to) {
    case FieldFormat::Integer:
        return integerOf(number);
    case FieldFormat::Decimal:
        return orv::CPolyValue(number);
    case FieldFormat::Boolean:
        return number == 1 ? orv::CPolyValue(true)
            : number == 0  ? orv::CPolyValue(false)
                           : orv::CPolyValue();
    default:
        return {};
    }
}

/// A text of no characters is no value: what has no digits (an infinite number) becomes none.
orv::CPolyValue textOrNone(const orv::String& text)
{
    return text.Length() > 0 ? orv::CPolyValue(text) : orv::CPolyValue();
}

/// Tells the progress every few thousand rows; false once it was cancelled.
bool goesOn(IProgress* progress, int row, int rowCount)
{
    return !progress || row % RowsBetweenProgress != 0
        || progress->advance(static_cast<double>(row) / std::max(1, rowCount));
}

void countCell(bool hasResult, bool sameKind, ConversionCount& count)
{
    ++(!hasResult ? count.emptied : sameKind ? count.unchanged : count.converted);
}

/// What each distinct text of a column becomes, as the bits of a cell.
struct Conversions {
    std::vector<std::uint64_t> raw;
    std::vector<std::uint8_t> hasValue;
};

/// The texts from `first` on, up to `end`; `goesOn` is asked every few thousand of them.
template <typename GoesOn>
void convertRange(const Dictionary& texts, FieldFormat to, std::uint32_t first, std::uint32_t end,
    Conversions& result, const GoesOn& goesOn)
{
    Column cell(columnKindOf(to));
    cell.appendEmpty();
    for (std::uint32_t code = first; code < end; ++code) {
        if ((code - first) % RowsBetweenProgress == 0 && !goesOn(code - first))
            return;
        if (to == FieldFormat::Decimal) { // the usual case, and the one with the most texts
            double number = 0;
            result.hasValue[code]
                = orv::ParseDouble(texts.text(code), number) && std::isfinite(number);
            result.raw[code] = std::bit_cast<std::uint64_t>(number);
            continue;
        }
        cell.setValue(0, fromText(texts.text(code), to));
        result.hasValue[code] = cell.hasValue(0);
        result.raw[code] = cell.rawAt(0);
    }
}

/// Many texts by two threads, each its half; the caller's tells the progress.
Conversions convertTexts(const Dictionary& texts, FieldFormat to, IProgress* progress)
{
    constexpr std::uint32_t textsForTwoThreads = 65536;
    const std::uint32_t size = texts.size();
    Conversions result { std::vector<std::uint64_t>(size), std::vector<std::uint8_t>(size) };
    std::atomic<bool> isStopped = false;
    std::future<void> upperHalf;
    if (size >= textsForTwoThreads)
        try {
            upperHalf = std::async(std::launch::async, [&] {
                convertRange(texts, to, size / 2, size, result,
                    [&isStopped](std::uint32_t) { return !isStopped; });
            });
        } catch (const std::system_error&) { // no thread to be had: one does it all
        }
    const std::uint32_t end = upperHalf.valid() ? size / 2 : size;
    convertRange(texts, to, 0, end, result, [&](std::uint32_t done) {
        isStopped = progress && !progress->advance(0.5 * done / std::max<std::uint32_t>(1, end));
        return !isStopped;
    });
    if (upperHalf.valid())
        upperHalf.get();
    return result;
}

/// Texts of a chunk to cells of the type `Cell`.
template <typename Cell> class ChunkConversion final {
public:
    explicit ChunkConversion(const Conversions& conversions)
        : m_conversions(conversions)
        , m_values(gis::ColumnChunkRows)
        , m_validity(gis::ColumnChunkRows / 64 + 1)
    {
    }
    void append(const gis::ColumnChunk& chunk, Column& result, ConversionCount& count)
    {
        const auto* codes = static_cast<const std::uint32_t*>(chunk.values);
        std::fill(m_validity.begin(), m_validity.end(), 0);
        int texts = 0;
        int converted = 0;
        for (int row = 0; row < chunk.rowCount; ++row) {
            const auto word = static_cast<std::size_t>(row) / 64;
            const std::uint64_t bit = std::uint64_t(1) << (row % 64);
            if (chunk.validity && (chunk.validity[word] & bit) == 0)
                continue;
            ++texts;
            const std::uint32_t code = codes[row];
            if (m_conversions.hasValue[code] == 0)
                continue;
            ++converted;
            m_validity[word] |= bit;
            std::memcpy(&m_values[static_cast<std::size_t>(row)], &m_conversions.raw[code],
                sizeof(Cell)); // the low bytes come first
        }
        result.appendChunk(m_values.data(),
            converted == chunk.rowCount ? nullptr : m_validity.data(), chunk.rowCount);
        count.converted += converted;
        count.emptied += texts - converted;
    }

private:
    static_assert(std::endian::native == std::endian::little);
    const Conversions& m_conversions;
    std::vector<Cell> m_values;
    std::vector<std::uint64_t> m_validity;
};

template <typename Cell>
void convertChunks(const gis::ColumnView& texts, const Conversions& conversions, Column& result,
    ConversionCount& count, IProgress* progress)
{
    ChunkConversion<Cell> conversion(conversions);
    for (int i = 0; i < texts.chunkCount; ++i) {
        if (progress && !progress->advance(0.5 + 0.5 * i / texts.chunkCount))
            return;
        conversion.append(texts.chunks[i], result, count);
    }
}

/// Text to anything: once for each distinct text, not for each cell.
Column fromTexts(const Column& column, FieldFormat to, ConversionCount& count, IProgress* progress)
{
    const Conversions conversions = convertTexts(column.dictionary(), to, progress);
    Column result(columnKindOf(to));
    result.reserve(column.rowCount());
    switch (result.kind()) {
    case gis::ColumnKind::Boolean:
        convertChunks<std::uint8_t>(column.view(), conversions, result, count, progress);
        break;
    case gis::ColumnKind::Decimal:
        convertChunks<double>(column.view(), conversions, result, count, progress);
        break;
    default:
        convertChunks<std::int32_t>(column.view(), conversions, result, count, progress);
        break;
    }
    result.appendEmpty(column.rowCount() - result.rowCount()); // those after which it was stopped
    return result;
}

} // namespace

orv::CPolyValue convertCell(
    const orv::CPolyValue& value, FieldFormat from, FieldFormat to, int oldDigits)
{
    if (value.IsEmpty())
        return {};
    const int type = value.GetType();
    const bool fits = (type == orv::PolyBool && to == FieldFormat::Boolean)
        || (type == orv::PolyInt32 && to == FieldFormat::Integer)
        || (type == orv::PolyDouble && to == FieldFormat::Decimal)
        || (type == orv::PolyDate && to == FieldFormat::Date)
        || (type == orv::PolyString && isText(to));
    if (fits)
        return value;
    if (isText(to)) {
        if (type == orv::PolyDouble && from == FieldFormat::Decimal)
            return textOrNone(
                orv::String::ValueOf(value.GetDoubleValue(), static_cast<unsigned>(oldDigits)));
        return type == orv::PolyArray ? orv::CPolyValue() : orv::CPolyValue(value.GetStringValue());
    }
    if (type == orv::PolyString)
        return fromText(value.TextView(), to);
    if (type == orv::PolyInt32 || type == orv::PolyDouble)
        return fromNumber(value, to);
    return {};
}

Column convertColumn(const Column& column, FieldFormat from, FieldFormat to, int oldDigits,
    ConversionCount& count, IProgress* progress)
{
    if (column.kind() == columnKindOf(to)) {
        count.unchanged += column.rowCount() - column.emptyCount();
        return column;
    }
    if (column.kind() == gis::ColumnKind::Dictionary)
        return fromTexts(column, to, count, progress);
    Column result(columnKindOf(to));
    const int rows = column.rowCount();
    result.appendEmpty(rows);
    orv::CPolyValue value;
    for (int row = 0; row < rows && goesOn(progress, row, rows); ++row) {
        if (!column.hasValue(row))
            continue;
        column.valueAt(row, value);
        const orv::CPolyValue converted = convertCell(value, from, to, oldDigits);
        if (!converted.IsEmpty())
            result.setValue(row, converted);
        countCell(!converted.IsEmpty(), false, count);
    }
    return result;
}

void Column::valueAt(int row, orv::CPolyValue& value) const
{
    if (!hasValue(row)) {
        value.SetToEmpty();
        return;
    }
    switch (kind()) {
    case gis::ColumnKind::Boolean:
        value = booleanAt(row);
        break;
    case gis::ColumnKind::Integer:
        value = integerAt(row);
        break;
    case gis::ColumnKind::Decimal:
        value = decimalAt(row);
        break;
    case gis::ColumnKind::Date:
        value.SetDateValue(orv::LocalMidnightOfDay(integerAt(row)));
        break;
    case gis::ColumnKind::Dictionary:
        value = orv::String(dictionary().text(codeAt(row)));
        break;
    }
}

void Column::setValue(int row, const orv::CPolyValue& value)
{
    std::int32_t day = 0;
    orv::CPolyValue converted;
    switch (kind()) {
    case gis::ColumnKind::Boolean:
        converted = convertCell(value, FieldFormat::Text, FieldFormat::Boolean, 0);
        if (!converted.IsEmpty())
            return setBoolean(row, converted.GetBoolValue());
        break;
    case gis::ColumnKind::Integer:
        converted = convertCell(value, FieldFormat::Text, FieldFormat::Integer, 0);
        if (!converted.IsEmpty())
            return setInteger(row, converted.GetInt32Value());
        break;
    case gis::ColumnKind::Decimal:
        converted = convertCell(value, FieldFormat::Text, FieldFormat::Decimal, 0);
        if (!converted.IsEmpty())
            return setDecimal(row, converted.GetDoubleValue());
        break;
    case gis::ColumnKind::Date:
        converted = convertCell(value, FieldFormat::Text, FieldFormat::Date, 0);
        if (!converted.IsEmpty() && orv::LocalDayNumber(converted.GetDateValue(), day))
            return setInteger(row, day);
        break;
    case gis::ColumnKind::Dictionary:
        if (value.GetType() == orv::PolyString)
            return setText(row, value.TextView());
        converted = convertCell(value, FieldFormat::Text, FieldFormat::Text, 0);
        if (!converted.IsEmpty())
            return setText(row, converted.TextView());
        break;
    }
    setEmpty(row);
}

} // namespace embedded
