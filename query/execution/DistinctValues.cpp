// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/DistinctValues.h"

#include "query/execution/CountTable.h"
#include "query/execution/Parallel.h"
#include "query/execution/plan/EntitySelection.h"

#include "host/base/Dates.h"
#include "host/gis/Columns.h"
#include "host/gis/LibGis.h"

#include <tbb/enumerable_thread_specific.h>
#include <tbb/parallel_sort.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <utility>

namespace query {

namespace {

/// Blocks small enough to share out evenly, large enough to hide what a task costs.
constexpr int BlockEntities = 32768;

bool isNumberBefore(double left, double right)
{
    // NaN after all numbers, so that the order is one.
    if (std::isnan(left) || std::isnan(right))
        return !std::isnan(left) && std::isnan(right);
    return left < right;
}

bool hasValue(const gis::ColumnChunk& chunk, int row)
{
    return !chunk.validity || (chunk.validity[row / 64] >> (row % 64) & 1u) != 0;
}

/// Calls `visit(chunk, row in the chunk, rows, entity index)` for the pieces of entities
/// `from` up to `to` that lie together in one chunk.
template <typename Visit>
void forEachPiece(const gis::EntityRunsView& runs, const gis::ColumnView& column, int from, int to,
    const Visit& visit)
{
    int runStart = 0;
    for (int r = 0; r < runs.runCount && runStart < to; ++r) {
        const gis::EntityRun& run = runs.runs[r];
        int index = std::max(from, runStart);
        const int end = std::min(to, runStart + run.count);
        while (index < end) {
            const int row = run.firstRow + (index - runStart);
            const gis::ColumnChunk& chunk = column.chunks[row / gis::ColumnChunkRows];
            const int inChunk = row % gis::ColumnChunkRows;
            const int count = std::min(end - index, chunk.rowCount - inChunk);
            if (count <= 0)
                return; // the host's views disagree: leave the rest out rather than read beyond
            visit(chunk, inChunk, count, index);
            index += count;
        }
        runStart += run.count;
    }
}

template <typename Local, typename Visit>
void countInParallel(const gis::EntityRunsView& runs, const gis::ColumnView& column,
    tbb::enumerable_thread_specific<Local>& locals, const Visit& visit)
{
    forEachRange(runs.entityCount, BlockEntities, [&](int first, int end) {
        Local& local = locals.local();
        forEachPiece(runs, column, first, end,
            [&](const gis::ColumnChunk& chunk, int row, int count, int index) {
                for (int i = 0; i < count; ++i) {
                    if (hasValue(chunk, row + i))
                        visit(local, chunk, row + i, index + i);
                    else
                        ++local.missing;
                }
            });
    });
}

struct TextCounts {
    std::vector<std::int64_t> counts;
    std::int64_t missing = 0;
};

/// A text with its first bytes as a number, so that most comparisons touch no text.
struct SortedText {
    std::uint64_t prefix;
    std::string_view text;
    std::int64_t count;

    SortedText(std::string_view bytes, std::int64_t entities)
        : prefix(0)
        , text(bytes)
        , count(entities)
    {
        for (std::size_t i = 0; i < 8; ++i)
            prefix = prefix << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0u);
    }
    bool operator<(const SortedText& other) const
    {
        return prefix != other.prefix ? prefix < other.prefix : text < other.text;
    }
};

DistinctValues distinctTexts(const gis::EntityRunsView& runs, const gis::ColumnView& column)
{
    tbb::enumerable_thread_specific<TextCounts> locals([&] {
        return TextCounts { std::vector<std::int64_t>(column.dictionarySize), 0 };
    });
    countInParallel(
        runs, column, locals, [](TextCounts& local, const gis::ColumnChunk& chunk, int row, int) {
            ++local.counts[static_cast<const std::uint32_t*>(chunk.values)[row]];
        });

    DistinctValues result;
    std::vector<std::int64_t> counts(column.dictionarySize);
    for (const TextCounts& local : locals) {
        result.missing += local.missing;
        for (std::size_t code = 0; code < counts.size(); ++code)
            counts[code] += local.counts[code];
    }
    std::vector<SortedText> texts;
    for (std::uint32_t code = 0; code < column.dictionarySize; ++code)
        if (counts[code] > 0)
            texts.emplace_back(column.dictionary[code].View(), counts[code]);
    tbb::parallel_sort(texts.begin(), texts.end());

    result.values.resize(texts.size());
    forEachRange(texts.size(), std::size_t(4096), [&](std::size_t first, std::size_t end) {
        for (std::size_t i = first; i < end; ++i)
            result.values[i] = { orv::CPolyValue(orv::String(texts[i].text)), texts[i].count };
    });
    return result;
}

struct NumberCounts {
    CountTable table;
    std::int64_t missing = 0;
};

/// Distinct values of fixed-width columns: `bitsAt(chunk, row)` gives a value's own bits,
/// `keyOf(bits)` the same for equal values, `valueOf(bits)` the cell.
template <typename BitsAt, typename KeyOf, typename ValueOf>
DistinctValues distinctNumbers(const gis::EntityRunsView& runs, const gis::ColumnView& column,
    const BitsAt& bitsAt, const KeyOf& keyOf, const ValueOf& valueOf)
{
    tbb::enumerable_thread_specific<NumberCounts> locals;
    countInParallel(runs, column, locals,
        [&](NumberCounts& local, const gis::ColumnChunk& chunk, int row, int index) {
            const std::uint64_t bits = bitsAt(chunk, row);
            local.table.add(keyOf(bits), bits, 1, index);
        });

    DistinctValues result;
    CountTable all;
    for (const NumberCounts& local : locals) {
        result.missing += local.missing;
        for (const auto& slot : local.table.slots())
            if (slot.count > 0)
                all.add(slot.key, slot.bits, slot.count, slot.firstIndex);
    }
    for (const auto& slot : all.slots())
        if (slot.count > 0)
            result.values.push_back({ valueOf(slot.bits), slot.count });
    std::sort(result.values.begin(), result.values.end(),
        [](const DistinctValue& left, const DistinctValue& right) {
            return isValueBefore(left.value, right.value);
        });
    return result;
}

std::uint64_t sameKey(std::uint64_t bits)
{
    return bits;
}

std::uint64_t decimalKey(std::uint64_t bits)
{
    const double value = std::bit_cast<double>(bits);
    if (std::isnan(value))
        return std::bit_cast<std::uint64_t>(std::nan(""));
    return value == 0.0 ? 0 : bits;
}

std::uint64_t integerBits(const gis::ColumnChunk& chunk, int row)
{
    return static_cast<std::uint32_t>(static_cast<const std::int32_t*>(chunk.values)[row]);
}

std::int32_t integerOf(std::uint64_t bits)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(bits));
}

DistinctValues distinctInColumn(const gis::EntityRunsView& runs, const gis::ColumnView& column)
{
    switch (column.kind) {
    case gis::ColumnKind::Boolean:
        return distinctNumbers(
            runs, column,
            [](const gis::ColumnChunk& chunk, int row) -> std::uint64_t {
                return static_cast<const std::uint8_t*>(chunk.values)[row] != 0;
            },
            sameKey, [](std::uint64_t bits) { return orv::CPolyValue(bits != 0); });
    case gis::ColumnKind::Integer:
        return distinctNumbers(runs, column, integerBits, sameKey,
            [](std::uint64_t bits) { return orv::CPolyValue(static_cast<int>(integerOf(bits))); });
    case gis::ColumnKind::Decimal:
        return distinctNumbers(
            runs, column,
            [](const gis::ColumnChunk& chunk, int row) {
                return std::bit_cast<std::uint64_t>(static_cast<const double*>(chunk.values)[row]);
            },
            decimalKey,
            [](std::uint64_t bits) { return orv::CPolyValue(std::bit_cast<double>(bits)); });
    case gis::ColumnKind::Date:
        return distinctNumbers(runs, column, integerBits, sameKey, [](std::uint64_t bits) {
            orv::CPolyValue value;
            value.SetDateValue(orv::LocalMidnightOfDay(integerOf(bits)));
            return value;
        });
    case gis::ColumnKind::Dictionary:
        return distinctTexts(runs, column);
    }
    return {};
}

struct ValueOrder {
    bool operator()(const orv::CPolyValue& left, const orv::CPolyValue& right) const
    {
        return isValueBefore(left, right);
    }
};

/// False where the host's views disagree: its cells are asked then.
bool isWhole(
    const gis::ColumnView& column, const gis::EntityRunsView& runs, gis::FieldFormat format)
{
    const auto rows = plan::usedRowCount(runs);
    return rows && *rows <= column.rowCount && gis::IsWhole(column, format);
}

bool hasField(gis::CLibGis& library, gis::CTheme* theme, int fieldIndex)
{
    gis::CDBTable* table = theme ? library.GetTable(theme) : nullptr;
    return table && fieldIndex >= 0 && fieldIndex < library.GetNumFields(table);
}

} // namespace

bool isValueBefore(const orv::CPolyValue& left, const orv::CPolyValue& right)
{
    if (left.IsEmpty() || right.IsEmpty())
        return left.IsEmpty() && !right.IsEmpty();
    if (left.GetType() != right.GetType())
        return left.GetStringValue().Compare(right.GetStringValue()) < 0;
    switch (left.GetType()) {
    case orv::PolyBool:
        return !left.GetBoolValue() && right.GetBoolValue();
    case orv::PolyInt32:
        return left.GetInt32Value() < right.GetInt32Value();
    case orv::PolyDouble:
        return isNumberBefore(left.GetDoubleValue(), right.GetDoubleValue());
    case orv::PolyDate:
        return left.GetDateValue() < right.GetDateValue();
    case orv::PolyString:
        return left.TextView() < right.TextView();
    default:
        return true; // kept apart, each of them
    }
}

std::optional<DistinctValues> distinctValuesByCell(
    gis::CLibGis& library, gis::CTheme* theme, int fieldIndex)
{
    if (!hasField(library, theme, fieldIndex))
        return std::nullopt;
    DistinctValues result;
    // A tree stays whole under an order that is none (mixed kinds), which sorting does not; but
    // only `insert` looks for its place in one way: other calls take hints, which such an order
    // makes wrong.
    std::map<orv::CPolyValue, std::int64_t, ValueOrder> counts;
    const int entityCount = library.GetNoEnts(theme);
    for (int i = 0; i < entityCount; ++i) {
        orv::CPolyValue value;
        library.GetRowValue(library.GetRow(library.GetEnt(theme, i)), fieldIndex, value);
        if (value.IsEmpty())
            ++result.missing;
        else
            ++counts.insert({ std::move(value), 0 }).first->second;
    }
    for (auto& [value, count] : counts)
        result.values.push_back({ value, count });
    return result;
}

std::optional<DistinctValues> distinctValues(
    gis::CLibGis& library, gis::CTheme* theme, int fieldIndex)
{
    if (!hasField(library, theme, fieldIndex))
        return std::nullopt;
    auto* columns = static_cast<gis::IColumns*>(library.Extension(gis::ColumnsExtension));
    gis::ColumnView column;
    gis::EntityRunsView runs;
    gis::CDBTable* const table = library.GetTable(theme);
    if (!columns || !columns->GetColumn(table, fieldIndex, column)
        || !columns->GetEntityRuns(theme, runs)
        || !isWhole(column, runs, library.GetFieldFormat(library.GetField(table, fieldIndex))))
        return distinctValuesByCell(library, theme, fieldIndex);
    return distinctInColumn(runs, column);
}

} // namespace query
