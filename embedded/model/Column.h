// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Dictionary.h"

#include "host/base/PolyValue.h"

#include <vector>

namespace embedded {

/// One typed column: chunks of `gis::ColumnChunkRows` rows with validity bits; texts as dictionary
/// codes. A copy is a snapshot: it shares the chunks, and whoever writes first copies the chunk it
/// writes. Units: dates as day numbers (orv::DayNumber). Rows count from 0; a row out of range is a
/// programming error. Thread: one writer; a snapshot may be read by another thread while the
/// original changes.
class Column final {
public:
    explicit Column(gis::ColumnKind kind);
    Column(const Column& other);
    Column(Column&&) noexcept;
    Column& operator=(const Column& other);
    Column& operator=(Column&&) noexcept;
    ~Column();

    [[nodiscard]] gis::ColumnKind kind() const;
    [[nodiscard]] int rowCount() const;
    [[nodiscard]] bool hasValue(int row) const;
    [[nodiscard]] bool booleanAt(int row) const;
    [[nodiscard]] std::int32_t integerAt(int row) const; // also day numbers
    [[nodiscard]] double decimalAt(int row) const;
    [[nodiscard]] std::uint32_t codeAt(int row) const;
    [[nodiscard]] std::string_view textAt(int row) const;
    /// The cell as the host boundary gives it; dates as local midnight.
    void valueAt(int row, orv::CPolyValue& value) const;

    void reserve(int rows);
    void appendEmpty(int count = 1);
    void appendBoolean(bool value);
    void appendInteger(std::int32_t value); // also day numbers
    void appendDecimal(double value);
    void appendText(std::string_view text);
    void appendCode(std::uint32_t code);
    void setEmpty(int row);
    void setBoolean(int row, bool value);
    void setInteger(int row, std::int32_t value);
    void setDecimal(int row, double value);
    void setText(int row, std::string_view text);
    /// The cell's bits as they are stored (a code, a number, a double's bits), for the record of
    /// changes; meaningless without a value.
    [[nodiscard]] std::uint64_t rawAt(int row) const;
    void setRaw(int row, std::uint64_t raw);
    /// A value of the column's kind, or empty; other kinds are converted as cells of a changed
    /// format are.
    void setValue(int row, const orv::CPolyValue& value);
    void truncate(int rows);
    /// Appends up to a chunk of values of the column's width at once. The column must end with a
    /// full chunk. `validity`: one bit a row as in gis::ColumnChunk, null when every row has a
    /// value.
    void appendChunk(const void* values, const std::uint64_t* validity, int count);
    /// Appends all rows of a column of the same kind.
    void append(const Column& other);

    [[nodiscard]] const Dictionary& dictionary() const;
    Dictionary& dictionary();
    [[nodiscard]] int emptyCount() const;

    /// Valid until the next change of this column.
    [[nodiscard]] gis::ColumnView view() const;
    [[nodiscard]] std::size_t sizeBytes() const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

/// The kind of column that holds a format's values.
gis::ColumnKind columnKindOf(gis::FieldFormat format);

} // namespace embedded
