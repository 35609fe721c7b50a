// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Column.h"

#include "embedded/model/Cow.h"
#include "host/base/Dates.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace embedded {

namespace {

constexpr int ChunkRows = gis::ColumnChunkRows;

std::size_t widthOf(gis::ColumnKind kind)
{
    switch (kind) {
    case gis::ColumnKind::Boolean:
        return 1;
    case gis::ColumnKind::Decimal:
        return 8;
    default:
        return 4;
    }
}

/// Rows of a chunk with their validity; no validity words while every row has a value.
struct Chunk {
    std::vector<std::uint64_t>
        words; // the values, in 8-byte units so that they are aligned for any kind
    std::vector<std::uint64_t> validity;
    int rows = 0;

    [[nodiscard]] bool hasValue(int row) const
    {
        return validity.empty()
            || (validity[static_cast<std::size_t>(row) / 64] >> (row % 64) & 1u) != 0;
    }
    void needValidity()
    {
        if (!validity.empty())
            return;
        validity.assign(static_cast<std::size_t>(rows) / 64 + 1, ~std::uint64_t(0));
    }
    void setValid(int row, bool valid)
    {
        if (valid && validity.empty())
            return;
        needValidity();
        const auto word = static_cast<std::size_t>(row) / 64;
        if (word >= validity.size())
            validity.resize(word + 1, ~std::uint64_t(0));
        const std::uint64_t bit = std::uint64_t(1) << (row % 64);
        validity[word] = valid ? validity[word] | bit : validity[word] & ~bit;
    }
    template <typename T> [[nodiscard]] T get(int row) const
    {
        T value;
        std::memcpy(&value,
            reinterpret_cast<const char*>(words.data()) + static_cast<std::size_t>(row) * sizeof(T),
            sizeof(T));
        return value;
    }
    template <typename T> void set(int row, T value)
    {
        std::memcpy(
            reinterpret_cast<char*>(words.data()) + static_cast<std::size_t>(row) * sizeof(T),
            &value, sizeof(T));
    }
    void grow(int newRows, std::size_t width)
    {
        const std::size_t needed = (static_cast<std::size_t>(newRows) * width + 7) / 8;
        if (needed > words.capacity()) // doubled, but never beyond a full chunk
            words.reserve(std::min(std::max(needed, words.capacity() * 2), ChunkRows * width / 8));
        words.resize(needed);
        if (!validity.empty())
            validity.resize(static_cast<std::size_t>(newRows) / 64 + 1, ~std::uint64_t(0));
        rows = newRows;
    }
};

} // namespace

struct Column::Data {
    gis::ColumnKind kind;
    std::size_t width;
    int rows = 0;
    std::vector<Cow<Chunk>> chunks;
    Dictionary dictionary;
    mutable std::vector<gis::ColumnChunk> views;

    explicit Data(gis::ColumnKind columnKind)
        : kind(columnKind)
        , width(widthOf(columnKind))
    {
    }
    [[nodiscard]] const Chunk& chunkOf(int row) const
    {
        return chunks[static_cast<std::size_t>(row / ChunkRows)].read();
    }
    Chunk& writableOf(int row) { return chunks[static_cast<std::size_t>(row / ChunkRows)].write(); }

    /// Room for `count` more rows in the last chunk (which is new when the one before is full);
    /// returns how many fit.
    Chunk& appendRows(int count, int& first, int& appended)
    {
        if (rows % ChunkRows == 0 && rows / ChunkRows == static_cast<int>(chunks.size()))
            chunks.emplace_back();
        Chunk& chunk = chunks.back().write();
        first = chunk.rows;
        appended = std::min(count, ChunkRows - chunk.rows);
        chunk.grow(first + appended, width);
        rows += appended;
        return chunk;
    }
    template <typename T> void append(T value)
    {
        int first = 0;
        int appended = 0;
        Chunk& chunk = appendRows(1, first, appended);
        chunk.set(first, value);
        chunk.setValid(first, true);
    }
    template <typename T> void set(int row, T value)
    {
        Chunk& chunk = writableOf(row);
        chunk.set(row % ChunkRows, value);
        chunk.setValid(row % ChunkRows, true);
    }
};

Column::Column(gis::ColumnKind kind)
    : m_data(std::make_unique<Data>(kind))
{
}
Column::Column(const Column& other)
    : m_data(std::make_unique<Data>(*other.m_data))
{
}
Column::Column(Column&&) noexcept = default;
Column& Column::operator=(const Column& other)
{
    if (this != &other)
        m_data = std::make_unique<Data>(*other.m_data);
    return *this;
}
Column& Column::operator=(Column&&) noexcept = default;
Column::~Column() = default;

gis::ColumnKind Column::kind() const
{
    return m_data->kind;
}
int Column::rowCount() const
{
    return m_data->rows;
}
bool Column::hasValue(int row) const
{
    return m_data->chunkOf(row).hasValue(row % ChunkRows);
}
bool Column::booleanAt(int row) const
{
    return m_data->chunkOf(row).get<std::uint8_t>(row % ChunkRows) != 0;
}
std::int32_t Column::integerAt(int row) const
{
    return m_data->chunkOf(row).get<std::int32_t>(row % ChunkRows);
}
double Column::decimalAt(int row) const
{
    return m_data->chunkOf(row).get<double>(row % ChunkRows);
}
std::uint32_t Column::codeAt(int row) const
{
    return m_data->chunkOf(row).get<std::uint32_t>(row % ChunkRows);
}
std::string_view Column::textAt(int row) const
{
    return hasValue(row) ? m_data->dictionary.text(codeAt(row)) : std::string_view();
}

std::uint64_t Column::rawAt(int row) const
{
    switch (m_data->kind) {
    case gis::ColumnKind::Boolean:
        return m_data->chunkOf(row).get<std::uint8_t>(row % ChunkRows);
    case gis::ColumnKind::Decimal:
        return m_data->chunkOf(row).get<std::uint64_t>(row % ChunkRows);
    default:
        return m_data->chunkOf(row).get<std::uint32_t>(row % ChunkRows);
    }
}

void Column::setRaw(int row, std::uint64_t raw)
{
    switch (m_data->kind) {
    case gis::ColumnKind::Boolean:
        m_data->set(row, static_cast<std::uint8_t>(raw));
        break;
    case gis::ColumnKind::Decimal:
        m_data->set(row, raw);
        break;
    default:
        m_data->set(row, static_cast<std::uint32_t>(raw));
    }
}

void Column::reserve(int rows)
{
    m_data->chunks.reserve(static_cast<std::size_t>(rows / ChunkRows + 1));
}

void Column::appendEmpty(int count)
{
    while (count > 0) {
        int first = 0;
        int appended = 0;
        Chunk& chunk = m_data->appendRows(count, first, appended);
        for (int row = first; row < first + appended; ++row)
            chunk.setValid(row, false);
        count -= appended;
    }
}
void Column::appendBoolean(bool value)
{
    m_data->append(static_cast<std::uint8_t>(value));
}
void Column::appendInteger(std::int32_t value)
{
    m_data->append(value);
}
void Column::appendDecimal(double value)
{
    m_data->append(value);
}
void Column::appendText(std::string_view text)
{
    m_data->append(m_data->dictionary.intern(text));
}
void Column::appendCode(std::uint32_t code)
{
    m_data->append(code);
}
void Column::appendChunk(const void* values, const std::uint64_t* validity, int count)
{
    int first = 0;
    int appended = 0;
    Chunk& chunk = m_data->appendRows(count, first, appended);
    std::memcpy(chunk.words.data(), values, static_cast<std::size_t>(count) * m_data->width);
    if (validity)
        chunk.validity.assign(validity, validity + count / 64 + 1);
}
void Column::setEmpty(int row)
{
    if (hasValue(row))
        m_data->writableOf(row).setValid(row % ChunkRows, false);
}
void Column::setBoolean(int row, bool value)
{
    m_data->set(row, static_cast<std::uint8_t>(value));
}
void Column::setInteger(int row, std::int32_t value)
{
    m_data->set(row, value);
}
void Column::setDecimal(int row, double value)
{
    m_data->set(row, value);
}
void Column::setText(int row, std::string_view text)
{
    m_data->set(row, m_data->dictionary.intern(text));
}

void Column::truncate(int rows)
{
    if (rows >= m_data->rows)
        return;
    m_data->chunks.resize(static_cast<std::size_t>((rows + ChunkRows - 1) / ChunkRows));
    m_data->rows = rows;
    if (rows % ChunkRows != 0) {
        Chunk& last = m_data->chunks.back().write();
        last.grow(rows % ChunkRows, m_data->width);
        // Rows that come later must find their bits set, as in a chunk that was never longer.
        if (!last.validity.empty())
            last.validity.back() |= ~std::uint64_t(0) << (rows % 64);
    }
}

void Column::append(const Column& other)
{
    const bool shareWhole = m_data->rows == 0 && other.kind() == kind();
    if (shareWhole) {
        *this = other;
        return;
    }
    std::vector<std::uint32_t> codes; // of the other's dictionary, in this one's numbering
    if (kind() == gis::ColumnKind::Dictionary)
        for (std::uint32_t code = 0; code < other.dictionary().size(); ++code)
            codes.push_back(m_data->dictionary.intern(other.dictionary().text(code)));
    for (int row = 0; row < other.rowCount(); ++row) {
        if (!other.hasValue(row))
            appendEmpty();
        else if (kind() == gis::ColumnKind::Dictionary)
            appendCode(codes[other.codeAt(row)]);
        else if (kind() == gis::ColumnKind::Decimal)
            appendDecimal(other.decimalAt(row));
        else if (kind() == gis::ColumnKind::Boolean)
            appendBoolean(other.booleanAt(row));
        else
            appendInteger(other.integerAt(row));
    }
}

const Dictionary& Column::dictionary() const
{
    return m_data->dictionary;
}
Dictionary& Column::dictionary()
{
    return m_data->dictionary;
}

int Column::emptyCount() const
{
    int empty = 0;
    for (const auto& shared : m_data->chunks) {
        const Chunk& chunk = shared.read();
        if (chunk.validity.empty())
            continue;
        int valid = 0;
        for (int word = 0; word < chunk.rows / 64; ++word)
            valid += std::popcount(chunk.validity[static_cast<std::size_t>(word)]);
        if (chunk.rows % 64 != 0)
            valid += std::popcount(chunk.validity[static_cast<std::size_t>(chunk.rows / 64)]
                & ((std::uint64_t(1) << (chunk.rows % 64)) - 1));
        empty += chunk.rows - valid;
    }
    return empty;
}

gis::ColumnView Column::view() const
{
    // Written only where it differs: another reader may be walking over it.
    std::vector<gis::ColumnChunk>& views = m_data->views;
    if (views.size() != m_data->chunks.size())
        views.resize(m_data->chunks.size());
    for (std::size_t i = 0; i < views.size(); ++i) {
        const Chunk& chunk = m_data->chunks[i].read();
        const void* validity = chunk.validity.empty() ? nullptr : chunk.validity.data();
        gis::ColumnChunk& known = views[i];
        if (known.values != chunk.words.data() || known.validity != validity
            || known.rowCount != chunk.rows)
            known = { chunk.words.data(), chunk.validity.empty() ? nullptr : chunk.validity.data(),
                chunk.rows };
    }
    gis::ColumnView view;
    view.kind = m_data->kind;
    view.chunks = m_data->views.data();
    view.chunkCount = static_cast<int>(m_data->views.size());
    view.rowCount = m_data->rows;
    view.dictionary = m_data->dictionary.entries();
    view.dictionarySize = m_data->dictionary.size();
    return view;
}

std::size_t Column::sizeBytes() const
{
    std::size_t bytes = kind() == gis::ColumnKind::Dictionary ? m_data->dictionary.sizeBytes() : 0;
    for (const auto& shared : m_data->chunks)
        bytes += (shared.read().words.capacity() + shared.read().validity.capacity()) * 8;
    return bytes;
}

gis::ColumnKind columnKindOf(gis::FieldFormat format)
{
    switch (format) {
    case gis::FieldFormat::Boolean:
        return gis::ColumnKind::Boolean;
    case gis::FieldFormat::Integer:
        return gis::ColumnKind::Integer;
    case gis::FieldFormat::Decimal:
        return gis::ColumnKind::Decimal;
    case gis::FieldFormat::Date:
        return gis::ColumnKind::Date;
    default:
        return gis::ColumnKind::Dictionary;
    }
}

} // namespace embedded
