// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Table.h"
#include "embedded/shapefile/DbfWriter.h"
#include "embedded/shapefile/Encodings.h"

#include "host/base/Dates.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <ctime>
#include <limits>

namespace embedded {

namespace {

constexpr std::size_t HeaderBytes = 32;
constexpr std::size_t DescriptorBytes = 32;
constexpr std::uint64_t LongestFile = std::numeric_limits<std::int32_t>::max();
constexpr std::size_t RowsBetweenLooks = 4096;

void putLittle16(std::string& bytes, std::size_t at, std::size_t value)
{
    bytes[at] = static_cast<char>(value & 0xFF);
    bytes[at + 1] = static_cast<char>(value >> 8 & 0xFF);
}

std::size_t recordBytes(const std::vector<DbfColumnLayout>& layout)
{
    std::size_t sum = 1;
    for (const DbfColumnLayout& column : layout)
        sum += static_cast<std::size_t>(column.widthBytes);
    return sum;
}

std::string headerText(const std::vector<DbfColumnLayout>& layout, std::size_t rows)
{
    std::string bytes(HeaderBytes + DescriptorBytes * layout.size() + 1, '\0');
    bytes[0] = '\x03';
    const std::time_t now = std::time(nullptr);
    std::tm today {};
    if (::gmtime_r(&now, &today)) {
        bytes[1] = static_cast<char>(today.tm_year);
        bytes[2] = static_cast<char>(today.tm_mon + 1);
        bytes[3] = static_cast<char>(today.tm_mday);
    }
    putLittle16(bytes, 4, rows & 0xFFFF);
    putLittle16(bytes, 6, rows >> 16);
    putLittle16(bytes, 8, bytes.size());
    putLittle16(bytes, 10, recordBytes(layout));
    std::size_t at = HeaderBytes;
    for (const DbfColumnLayout& column : layout) {
        column.name.copy(&bytes[at], 10);
        bytes[at + 11] = column.type;
        bytes[at + 16] = static_cast<char>(column.widthBytes);
        bytes[at + 17] = static_cast<char>(column.decimals);
        at += DescriptorBytes;
    }
    bytes[at] = '\x0D';
    return bytes;
}

/// Bytes of the UTF-8 character at a place; 0 where none is.
std::size_t characterBytes(std::string_view text, std::size_t at)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(at);
    const std::size_t length = lead < 0x80 ? 1
        : lead >= 0xC2 && lead < 0xE0      ? 2
        : lead >= 0xE0 && lead < 0xF0      ? 3
        : lead >= 0xF0 && lead < 0xF5      ? 4
                                           : 0;
    if (length == 0 || at + length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0) != 0x80)
            return 0;
    const bool isOverlong
        = (lead == 0xE0 && byte(at + 1) < 0xA0) || (lead == 0xF0 && byte(at + 1) < 0x90);
    const bool isBeyond
        = (lead == 0xED && byte(at + 1) >= 0xA0) || (lead == 0xF4 && byte(at + 1) >= 0x90);
    return isOverlong || isBeyond ? 0 : length;
}

bool isUtf8(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t bytes = characterBytes(text, at);
        if (bytes == 0)
            return false;
        at += bytes;
    }
    return true;
}

/// A question mark for each byte that is no text: readers of the file would refuse it, or guess.
void replaceInvalid(char* text, std::size_t size)
{
    for (std::size_t at = 0; at < size;) {
        const std::size_t bytes = characterBytes({ text, size }, at);
        if (bytes == 0)
            text[at] = '?';
        at += std::max<std::size_t>(bytes, 1);
    }
}

/// One column's cells on their way into records.
class CellWriter final {
public:
    CellWriter(gis::CDBTable& table, const DbfColumnLayout& layout)
        : m_layout(layout)
        , m_column(layout.fieldIndex < 0 ? nullptr : &table.column(layout.fieldIndex))
        , m_field(layout.fieldIndex < 0 ? nullptr : table.field(layout.fieldIndex))
    {
    }

    /// `cell` is filled with blanks and has the column's width.
    void write(int row, std::size_t record, char* cell)
    {
        if (!m_column) {
            putRight(std::to_string(record + 1), cell);
            return;
        }
        if (row < 0 || !m_column->hasValue(row))
            return;
        switch (m_field->format) {
        case gis::FieldFormat::Boolean:
            *cell = m_column->booleanAt(row) ? 'T' : 'F';
            return;
        case gis::FieldFormat::Integer:
            putInteger(m_column->integerAt(row), cell);
            return;
        case gis::FieldFormat::Decimal:
            putDecimal(m_column->decimalAt(row), cell);
            return;
        case gis::FieldFormat::Date:
            putDate(m_column->integerAt(row), cell);
            return;
        default:
            putText(m_column->textAt(row), cell);
        }
    }

    void tell(Report& report) const
    {
        tell(report, FindingCode::NumberRounded, m_rounded);
        tell(report, FindingCode::TextReplaced, m_invalid);
        const bool isDate = m_layout.type == 'D';
        tell(report,
            m_layout.type == 'C' ? FindingCode::TextCut
                : isDate         ? FindingCode::DateCut
                                 : FindingCode::NumberCut,
            m_inexact);
    }

private:
    void tell(Report& report, FindingCode code, std::int64_t count) const
    {
        if (count == 0)
            return;
        Finding finding;
        finding.code = code;
        finding.subject = m_field->name.Bytes();
        finding.count = count;
        report.add(std::move(finding));
    }

    void putRight(std::string_view text, char* cell) const
    {
        const auto width = static_cast<std::size_t>(m_layout.widthBytes);
        text.copy(cell + width - std::min(width, text.size()), width);
    }

    void putInteger(std::int32_t value, char* cell) const
    {
        std::array<char, 12> text {};
        const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
        putRight({ text.data(), static_cast<std::size_t>(end - text.data()) }, cell);
    }

    void putDecimal(double value, char* cell)
    {
        bool isExact = true;
        const auto text = dbfNumberText(value, m_layout.decimals, m_layout.widthBytes, isExact);
        putRight(text, cell);
        if (!isExact)
            ++(text.empty() ? m_inexact : m_rounded);
    }

    void putDate(std::int32_t dayNumber, char* cell)
    {
        const orv::CalendarDay day = orv::DayFromNumber(dayNumber);
        if (day.year < 1 || day.year > 9999) {
            ++m_inexact;
            return;
        }
        int number = day.year * 10000 + day.month * 100 + day.day;
        for (int i = 7; i >= 0; --i, number /= 10)
            cell[i] = static_cast<char>('0' + number % 10);
    }

    void putText(std::string_view text, char* cell)
    {
        // A NUL ends a text for its readers, and blanks at its end are not told from filling.
        const std::string_view kept = cutUtf8(
            text.substr(0, text.find('\0')), static_cast<std::size_t>(m_layout.widthBytes));
        kept.copy(cell, kept.size());
        if (!isUtf8(kept)) {
            ++m_invalid;
            replaceInvalid(cell, kept.size());
        }
        if (kept.size() != text.size() || kept.ends_with(' '))
            ++m_inexact;
    }

    const DbfColumnLayout& m_layout;
    const Column* m_column;
    const gis::CField* m_field;
    std::int64_t m_inexact = 0;
    std::int64_t m_rounded = 0;
    std::int64_t m_invalid = 0;
};

} // namespace

void writeDbf(gis::CDBTable& table, const std::vector<int>& rows,
    const std::vector<DbfColumnLayout>& layout, OutputFile& dbf,
    const std::function<bool(double)>& isToStop, Report& report)
{
    const std::size_t width = recordBytes(layout);
    constexpr std::size_t most16Bits = 0xFFFF;
    if (width > most16Bits || HeaderBytes + DescriptorBytes * layout.size() + 1 > most16Bits) {
        dbf.fail(std::to_string(layout.size()) + " fields of " + std::to_string(width)
            + " bytes are more than a .dbf holds");
        return;
    }
    if (rows.size() > LongestFile / width) {
        dbf.fail("more than 2 GiB of records");
        return;
    }
    std::vector<CellWriter> writers;
    for (const DbfColumnLayout& column : layout)
        writers.emplace_back(table, column);
    dbf.write(headerText(layout, rows.size()));
    std::string record(width, ' ');
    for (std::size_t i = 0; i < rows.size() && dbf.ok(); ++i) {
        if (i % RowsBetweenLooks == 0
            && isToStop(static_cast<double>(i) / static_cast<double>(rows.size())))
            return;
        std::memset(record.data(), ' ', record.size());
        char* cell = record.data() + 1;
        for (std::size_t c = 0; c < writers.size(); ++c) {
            writers[c].write(rows[i], i, cell);
            cell += layout[c].widthBytes;
        }
        dbf.write(record);
    }
    dbf.write("\x1A");
    for (const CellWriter& writer : writers)
        writer.tell(report);
}

} // namespace embedded
