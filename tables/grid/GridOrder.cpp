// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/grid/GridOrder.h"

#include "tables/grid/RadixSort.h"

#include "host/base/Dates.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tables {

namespace {

constexpr int StepRows = 4096;

/// A row with its key; rows without a value are kept apart.
struct KeyedRow {
    std::uint64_t key = 0;
    std::int32_t row = 0;
};

struct KeyedRows {
    std::vector<KeyedRow> rows; // in fill order
    std::vector<int> empty;
};

std::uint64_t keyOfInteger(std::int64_t value)
{
    return static_cast<std::uint64_t>(value) + (std::uint64_t(1) << 63);
}

/// Unsigned keys in the order of the numbers.
std::uint64_t keyOfDecimal(double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value == 0.0 ? 0.0 : value);
    const auto sign = std::uint64_t(1) << 63;
    return bits & sign ? ~bits : bits | sign;
}

/// Ranks texts: equal texts have equal ranks.
class CRanking final {
public:
    /// A text of `code` (dense); to be called for all before `rank`.
    void add(std::string_view text, std::uint32_t code)
    {
        std::uint64_t prefix = 0; // the first eight bytes decide most comparisons without a look-up
        for (std::size_t i = 0; i < 8; ++i)
            prefix = prefix << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
        m_entries.push_back({ prefix, text, code });
    }

    [[nodiscard]] std::vector<std::uint32_t> ranks()
    {
        std::sort(m_entries.begin(), m_entries.end(), [](const Entry& left, const Entry& right) {
            return left.prefix != right.prefix ? left.prefix < right.prefix
                                               : left.text < right.text;
        });
        std::vector<std::uint32_t> ranks(m_entries.size());
        std::uint32_t rank = 0;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            if (i > 0 && m_entries[i].text != m_entries[i - 1].text)
                ++rank;
            ranks[m_entries[i].code] = rank;
        }
        return ranks;
    }

private:
    struct Entry {
        std::uint64_t prefix;
        std::string_view text;
        std::uint32_t code;
    };
    std::vector<Entry> m_entries;
};

/// Reads the keys of the shown rows out of a column.
class CColumnKeys final {
public:
    CColumnKeys(CGridContents& contents, int field, const gis::ColumnView& view)
        : m_view(view)
        , m_edits(contents.edits(field))
        , m_format(contents.field(field).format)
        , m_tableRows(contents.showsWholeTable() ? nullptr : contents.tableRows())
        , m_rowCount(contents.rowCount())
    {
        if (view.kind == gis::ColumnKind::Dictionary)
            rankTexts();
    }

    bool read(const StepCheck& goesOn, KeyedRows& keyed)
    {
        keyed.rows.reserve(static_cast<std::size_t>(m_rowCount));
        auto edit = m_edits.begin();
        for (int row = 0; row < m_rowCount; ++row) {
            if (row % StepRows == 0 && !goesOn(0.5 * row / m_rowCount))
                return false;
            std::uint64_t key = 0;
            const bool isEdited = edit != m_edits.end() && edit->first == row;
            const bool hasKey = isEdited ? editedKey((edit++)->second, key) : storedKey(row, key);
            if (hasKey)
                keyed.rows.push_back({ key, row });
            else
                keyed.empty.push_back(row);
        }
        return true;
    }

private:
    void rankTexts()
    {
        CRanking ranking;
        for (std::uint32_t code = 0; code < m_view.dictionarySize; ++code)
            ranking.add(m_view.dictionary[code].View(), code);
        std::uint32_t code = m_view.dictionarySize;
        for (const auto& edit : m_edits)
            ranking.add(edit.second, code++);
        m_ranks = ranking.ranks();
        m_nextEditedCode = m_view.dictionarySize;
    }

    bool editedKey(const std::string& text, std::uint64_t& key)
    {
        if (m_view.kind == gis::ColumnKind::Dictionary) {
            key = m_ranks[m_nextEditedCode++];
            return !text.empty();
        }
        const auto value = valueOfCellText(orv::String(text), m_format);
        switch (value.GetType()) {
        case orv::PolyBool:
            key = value.GetBoolValue() ? 1 : 0;
            return true;
        case orv::PolyInt32:
            key = keyOfInteger(value.GetInt32Value());
            return true;
        case orv::PolyDouble:
            key = keyOfDecimal(value.GetDoubleValue());
            return true;
        case orv::PolyDate: {
            std::int32_t day = 0;
            orv::LocalDayNumber(value.GetDateValue(), day);
            key = keyOfInteger(day);
            return true;
        }
        default:
            return false;
        }
    }

    bool storedKey(int row, std::uint64_t& key) const
    {
        const int tableRow = m_tableRows ? (*m_tableRows)[static_cast<std::size_t>(row)] : row;
        const auto& chunk = m_view.chunks[tableRow / gis::ColumnChunkRows];
        const int i = tableRow % gis::ColumnChunkRows;
        if (chunk.validity && !(chunk.validity[i / 64] >> (i % 64) & 1))
            return false;
        switch (m_view.kind) {
        case gis::ColumnKind::Boolean:
            key = static_cast<const std::uint8_t*>(chunk.values)[i];
            return true;
        case gis::ColumnKind::Integer:
            key = keyOfInteger(static_cast<const std::int32_t*>(chunk.values)[i]);
            return true;
        case gis::ColumnKind::Date: {
            const std::int32_t day = static_cast<const std::int32_t*>(chunk.values)[i];
            key = keyOfInteger(day);
            return day != 0 || !m_isFirstDayEmpty;
        }
        case gis::ColumnKind::Decimal: {
            const double value = static_cast<const double*>(chunk.values)[i];
            key = keyOfDecimal(value);
            return std::isfinite(value); // others show as nothing
        }
        case gis::ColumnKind::Dictionary: {
            const auto code = static_cast<const std::uint32_t*>(chunk.values)[i];
            key = m_ranks[code];
            return m_view.dictionary[code].length > 0;
        }
        }
        return false;
    }

    const gis::ColumnView m_view;
    const CGridContents::FieldEdits& m_edits;
    const gis::FieldFormat m_format;
    const std::vector<int>* m_tableRows;
    const int m_rowCount;
    std::vector<std::uint32_t> m_ranks;
    std::uint32_t m_nextEditedCode = 0;
    /// The moment 0 is shown as no date, and is a day's midnight in some time zones.
    const bool m_isFirstDayEmpty = orv::LocalMidnightOfDay(0) == 0;
};

/// Reads the keys cell by cell; values of another kind than the format's, which only an unusual
/// host has, sort as texts after the numbers.
bool readCellKeys(
    const CGridContents& contents, int field, const StepCheck& goesOn, KeyedRows& keyed)
{
    const auto& edits = contents.edits(field);
    std::vector<std::pair<int, std::string>> texts;
    for (int row = 0; row < contents.rowCount(); ++row) {
        if (row % 256 == 0 && !goesOn(0.5 * row / contents.rowCount()))
            return false;
        orv::CPolyValue value;
        if (const auto edit = edits.find(row); edit != edits.end())
            value = valueOfCellText(orv::String(edit->second), contents.field(field).format);
        else
            value = contents.storedValue(row, field);
        switch (value.GetType()) {
        case orv::PolyBool:
        case orv::PolyInt32:
        case orv::PolyDouble: {
            const double number
                = value.GetType() == orv::PolyBool ? value.GetBoolValue() : value.GetDoubleValue();
            if (std::isfinite(number))
                keyed.rows.push_back({ keyOfDecimal(number), row });
            else
                keyed.empty.push_back(row);
            break;
        }
        case orv::PolyDate:
            if (value.GetDateValue() == 0) // shown as no date
                keyed.empty.push_back(row);
            else
                keyed.rows.push_back({ keyOfInteger(value.GetDateValue()), row });
            break;
        default:
            texts.emplace_back(row, value.GetStringValue().Bytes());
        }
    }
    CRanking ranking;
    for (std::size_t i = 0; i < texts.size(); ++i)
        ranking.add(texts[i].second, static_cast<std::uint32_t>(i));
    const auto ranks = ranking.ranks();
    std::uint64_t afterNumbers = 0;
    for (const auto& keyedRow : keyed.rows)
        afterNumbers = std::max(afterNumbers, keyedRow.key + 1);
    for (std::size_t i = 0; i < texts.size(); ++i)
        if (texts[i].second.empty())
            keyed.empty.push_back(texts[i].first);
        else
            keyed.rows.push_back({ afterNumbers + ranks[i], texts[i].first });
    std::sort(keyed.empty.begin(), keyed.empty.end());
    std::sort(keyed.rows.begin(), keyed.rows.end(),
        [](const KeyedRow& left, const KeyedRow& right) { return left.row < right.row; });
    return true;
}

/// Keys from 0 with no gaps at the ends, turned round for the other direction; returns their bits.
int normalise(std::vector<KeyedRow>& rows, SortDirection direction)
{
    std::uint64_t least = ~std::uint64_t(0);
    std::uint64_t greatest = 0;
    for (const auto& row : rows) {
        least = std::min(least, row.key);
        greatest = std::max(greatest, row.key);
    }
    for (auto& row : rows)
        row.key = direction == SortDirection::Ascending ? row.key - least : greatest - row.key;
    return rows.empty() ? 0 : static_cast<int>(std::bit_width(greatest - least));
}

} // namespace

bool readsColumn(CGridContents& contents, int field)
{
    return contents.column(field) && (contents.showsWholeTable() || contents.tableRows());
}

bool orderRows(CGridContents& contents, int field, SortDirection direction, const StepCheck& goesOn,
    std::vector<int>& order)
{
    KeyedRows keyed;
    const auto view = readsColumn(contents, field) ? contents.column(field) : std::nullopt;
    if (view ? !CColumnKeys(contents, field, *view).read(goesOn, keyed)
             : !readCellKeys(contents, field, goesOn, keyed))
        return false;
    const int bits = normalise(keyed.rows, direction);
    std::vector<KeyedRow> spare;
    radixSort(keyed.rows, spare, bits, [](const KeyedRow& row) { return row.key; });
    if (!goesOn(0.9))
        return false;
    order.clear();
    order.reserve(static_cast<std::size_t>(contents.rowCount()));
    for (const auto& row : keyed.rows)
        order.push_back(row.row);
    order.insert(order.end(), keyed.empty.begin(), keyed.empty.end());
    return true;
}

} // namespace tables
