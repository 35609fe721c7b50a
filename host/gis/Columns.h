// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace gis {

/// Rows of a column come in chunks of this many (the last may be shorter).
inline constexpr int ColumnChunkRows = 65536;

/// How the values of a chunk are stored.
enum class ColumnKind : int {
    Boolean, // std::uint8_t, 0 or 1
    Integer, // std::int32_t
    Decimal, // double, as stored (not rounded)
    Date, // std::int32_t, days since 1970-01-01 of the local calendar; GetRowValue gives the day's
          // local midnight
    Dictionary, // std::uint32_t, code in the column's dictionary (text and list fields)
};

/// One chunk of a column. Values of rows without a value are undefined.
struct ColumnChunk {
    const void* values = nullptr;
    /// One bit a row, set where there is a value, lowest bit first; null when every row has one.
    const std::uint64_t* validity = nullptr;
    int rowCount = 0;
};

/// A text of a dictionary. Codes are dense from 0; texts are distinct; unused texts may occur.
struct DictionaryEntry {
    const char* bytes = nullptr;
    std::uint32_t length = 0;
    [[nodiscard]] std::string_view View() const { return { bytes, length }; }
};

/// A column of a table in row order.
struct ColumnView {
    ColumnKind kind = ColumnKind::Dictionary;
    const ColumnChunk* chunks = nullptr;
    int chunkCount = 0;
    int rowCount = 0;
    const DictionaryEntry* dictionary = nullptr;
    std::uint32_t dictionarySize = 0;
};

/// Whether a column of this kind can be what a field of the format holds.
[[nodiscard]] inline bool HoldsFormat(ColumnKind kind, FieldFormat format)
{
    switch (format) {
    case FieldFormat::Boolean:
        return kind == ColumnKind::Boolean;
    case FieldFormat::Integer:
        return kind == ColumnKind::Integer;
    case FieldFormat::Decimal:
        return kind == ColumnKind::Decimal;
    case FieldFormat::Date:
        return kind == ColumnKind::Date;
    default:
        return kind == ColumnKind::Dictionary;
    }
}

/// Whether a column can be read as what it says: values of the field's format in as many chunks,
/// and as long ones, as its row count says. A host may err; its cells are asked then, since reading
/// on would go beyond the chunks.
[[nodiscard]] inline bool IsWhole(const ColumnView& column, FieldFormat format)
{
    if (!HoldsFormat(column.kind, format))
        return false;
    int rows = 0;
    for (int i = 0; i < column.chunkCount; rows += column.chunks[i].rowCount, ++i)
        if (column.chunks[i].rowCount != std::min(column.rowCount - rows, ColumnChunkRows))
            return false;
    return rows == column.rowCount;
}

/// Entities of a theme in entity order, in runs that lie at equal distances in memory and whose
/// rows follow one another.
struct EntityRun {
    CEnt* first = nullptr;
    std::ptrdiff_t strideBytes = 0; // from one entity's handle to the next
    int firstRow = 0; // row index of the first entity; the k-th has firstRow + k
    int count = 0;
    [[nodiscard]] CEnt* At(int k) const
    {
        return reinterpret_cast<CEnt*>(reinterpret_cast<char*>(first) + strideBytes * k);
    }
};

struct EntityRunsView {
    const EntityRun* runs = nullptr;
    int runCount = 0;
    int entityCount = 0;
};

/// Extension "columns/1": typed columns in row order and the rows of a theme's entities.
/// Whoever overrides `GetRowValue` or `GetEnt` must answer null for this extension.
/// Errors: false where the table, field or theme is not this library's or cannot be given as
/// columns. Owner, thread: everything belongs to the library and is valid until its next change;
/// may be called and read from several threads while no changing call runs.
class TEMATICA_HOST_API IColumns {
public:
    virtual bool GetColumn(CDBTable* table, int fieldIndex, ColumnView& view) = 0;
    virtual bool GetEntityRuns(CTheme* theme, EntityRunsView& view) = 0;

protected:
    ~IColumns();
};
inline constexpr const char* ColumnsExtension = "columns/1";

} // namespace gis
