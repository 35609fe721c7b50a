// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfCells.h"
#include "embedded/shapefile/DbfColumns.h"
#include "embedded/shapefile/ShpFormat.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"
#include "host/gis/Types.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

namespace embedded {

namespace {

constexpr std::int32_t JulianDayOfEpoch = 2440588; // 1970-01-01
constexpr std::size_t CellsBetweenLooks = 16384;

/// What the cells of a column of numbers have in common.
struct NumberRange {
    bool hasFractions = false;
    bool isExact = true;
    bool fits32Bits = true;
    int digits = 0;
    std::int64_t unreadable = 0;

    void add(const DbfNumber& number)
    {
        if (number.state == CellState::Unreadable)
            ++unreadable;
        if (number.state != CellState::Value)
            return;
        hasFractions = hasFractions || !number.isWhole;
        isExact = isExact && number.isExact;
        fits32Bits = fits32Bits && number.value >= std::numeric_limits<std::int32_t>::min()
            && number.value <= std::numeric_limits<std::int32_t>::max();
        digits = std::max(digits, number.digits);
    }
};

/// Reads one column; each `read…` takes the cells of one kind of type.
class ColumnReader final {
public:
    ColumnReader(const DbfReading& reading, TextDecoder& decoder, const DbfField& field,
        const std::string& name, const std::atomic<bool>& stop,
        std::atomic<std::int64_t>& cellsDone)
        : m_reading(reading)
        , m_decoder(decoder)
        , m_field(field)
        , m_stop(stop)
        , m_cellsDone(cellsDone)
    {
        m_result.name = name;
    }

    DbfColumn read();

private:
    using Number = DbfNumber (*)(std::string_view);

    template <typename Each> void forEachCell(const Each& each);
    /// `fromRight`: numbers and types that nobody knows may stand at the right of their cells.
    void readTexts(bool fromRight);
    void readMemos();
    void readNumbers(Number parse, bool isReal);
    void readLogicals();
    void readDates();
    void readMoments(bool isFoxPro);
    void readUnknown();
    void begin(gis::FieldFormat format, int digits = 0);
    void appendText(std::string_view text);
    void report(FindingCode code, std::int64_t count);
    void reportType(const std::string& detail, FindingSeverity severity = FindingSeverity::Note);
    void reportWidth();
    [[nodiscard]] Number binaryNumber() const;

    const DbfReading& m_reading;
    TextDecoder& m_decoder;
    const DbfField& m_field;
    const std::atomic<bool>& m_stop;
    std::atomic<std::int64_t>& m_cellsDone;
    DbfColumn m_result;
};

const unsigned char* bytesOf(std::string_view cell)
{
    return reinterpret_cast<const unsigned char*>(cell.data());
}

template <typename Each> void ColumnReader::forEachCell(const Each& each)
{
    std::size_t done = 0;
    for (const std::uint32_t record : m_reading.records) {
        if (++done % CellsBetweenLooks == 0) {
            m_cellsDone += static_cast<std::int64_t>(CellsBetweenLooks);
            if (m_stop)
                return;
        }
        each(record == NoRecord ? std::string_view() : m_reading.file.cell(record, m_field));
    }
}

void ColumnReader::begin(gis::FieldFormat format, int digits)
{
    m_result.format = format;
    m_result.digits = digits;
    m_result.column = Column(columnKindOf(format));
    m_result.column.reserve(static_cast<int>(m_reading.records.size()));
}

void ColumnReader::appendText(std::string_view text)
{
    if (text.empty())
        m_result.column.appendEmpty();
    else
        m_result.column.appendText(text);
}

void ColumnReader::report(FindingCode code, std::int64_t count)
{
    if (count == 0)
        return;
    Finding finding;
    finding.code = code;
    finding.subject = m_result.name;
    finding.count = count;
    m_result.findings.push_back(std::move(finding));
}

void ColumnReader::reportType(const std::string& detail, FindingSeverity severity)
{
    Finding finding;
    finding.code = FindingCode::FieldTypeTaken;
    finding.severity = severity;
    finding.subject = m_result.name;
    finding.detail = detail;
    m_result.findings.push_back(std::move(finding));
}

void ColumnReader::reportWidth()
{
    if (m_field.isWidthGuessed)
        reportType("width 0 in the header, " + std::to_string(m_field.widthBytes)
                + " bytes in the records",
            FindingSeverity::Warning);
    else if (m_field.widthBytes == 0)
        reportType("width 0: no values");
}

void ColumnReader::readTexts(bool fromRight)
{
    begin(gis::FieldFormat::Text);
    std::int64_t invalid = 0;
    forEachCell([&](std::string_view cell) {
        bool isValid = true;
        std::string_view text = m_decoder.cell(fromRight ? trimmedCell(cell) : cell, isValid);
        if (fromRight && text.find_first_not_of('*') == std::string_view::npos)
            text = {};
        invalid += isValid ? 0 : 1;
        appendText(text);
    });
    report(FindingCode::TextInvalid, invalid);
}

void ColumnReader::readMemos()
{
    begin(gis::FieldFormat::Text);
    if (!m_reading.memo.isOpen()) {
        m_result.column.appendEmpty(static_cast<int>(m_reading.records.size()));
        Finding missing;
        missing.code = FindingCode::MemoMissing;
        missing.subject = m_result.name;
        m_result.findings.push_back(std::move(missing));
        return;
    }
    // Records of a damaged table may all point into the same bytes: what is taken is limited
    // by what a sound file can hold.
    std::size_t budget = 4 * m_reading.memo.sizeBytes();
    std::int64_t invalid = 0;
    forEachCell([&](std::string_view cell) {
        bool isValid = true;
        const auto bytes = m_reading.memo.text(cell);
        if (!bytes || bytes->size() > budget) {
            ++invalid;
            m_result.column.appendEmpty();
            return;
        }
        budget -= bytes->size();
        appendText(m_decoder.cell(*bytes, isValid));
        invalid += isValid ? 0 : 1;
    });
    report(FindingCode::TextInvalid, invalid);
}

void ColumnReader::readNumbers(Number parse, bool isReal)
{
    NumberRange range;
    std::vector<double> values;
    values.reserve(m_reading.records.size());
    forEachCell([&](std::string_view cell) {
        const DbfNumber number = cell.empty() ? DbfNumber() : parse(cell);
        range.add(number);
        values.push_back(number.state == CellState::Value
                ? number.value
                : std::numeric_limits<double>::quiet_NaN());
    });
    if (!isReal && !range.isExact) {
        m_cellsDone -= static_cast<std::int64_t>(values.size()); // read once more, as texts
        reportType("text: whole numbers beyond 2^53");
        readTexts(true);
        return;
    }
    if (isReal || range.hasFractions || !range.fits32Bits) {
        const int digits = isReal && m_field.decimals > 0 ? m_field.decimals : range.digits;
        const bool isWhole = !isReal && !range.hasFractions;
        begin(gis::FieldFormat::Decimal, isWhole ? 0 : std::min(digits, gis::MaxDecimalDigits));
        if (!isReal)
            reportType(isWhole ? "decimal: whole numbers beyond 32 bits" : "decimal: fractions");
    } else {
        begin(gis::FieldFormat::Integer);
    }
    const bool isInteger = m_result.format == gis::FieldFormat::Integer;
    for (const double value : values) {
        if (std::isnan(value))
            m_result.column.appendEmpty();
        else if (isInteger)
            m_result.column.appendInteger(static_cast<std::int32_t>(value));
        else
            m_result.column.appendDecimal(value);
    }
    report(FindingCode::NumberUnreadable, range.unreadable);
}

void ColumnReader::readLogicals()
{
    begin(gis::FieldFormat::Boolean);
    std::int64_t unreadable = 0;
    forEachCell([&](std::string_view cell) {
        bool value = false;
        const CellState state = parseDbfLogical(cell, value);
        unreadable += state == CellState::Unreadable ? 1 : 0;
        if (state == CellState::Value)
            m_result.column.appendBoolean(value);
        else
            m_result.column.appendEmpty();
    });
    report(FindingCode::LogicalUnreadable, unreadable);
}

void ColumnReader::readDates()
{
    begin(gis::FieldFormat::Date);
    std::int64_t unreadable = 0;
    forEachCell([&](std::string_view cell) {
        std::int32_t day = 0;
        const CellState state = parseDbfDate(cell, day);
        unreadable += state == CellState::Unreadable ? 1 : 0;
        if (state == CellState::Value)
            m_result.column.appendInteger(day);
        else
            m_result.column.appendEmpty();
    });
    report(FindingCode::DateUnreadable, unreadable);
}

void ColumnReader::readMoments(bool isFoxPro)
{
    begin(gis::FieldFormat::Date);
    std::int64_t unreadable = 0;
    std::int64_t timesDropped = 0;
    forEachCell([&](std::string_view cell) {
        const std::string_view text = trimmedCell(cell);
        if (text.empty()) {
            m_result.column.appendEmpty();
            return;
        }
        const unsigned char* bytes = bytesOf(cell);
        const std::int32_t julian = isFoxPro ? shp::little32(bytes) : shp::big32(bytes);
        const std::int32_t time = isFoxPro ? shp::little32(bytes + 4) : shp::big32(bytes + 4);
        std::int32_t day = 0;
        constexpr std::int32_t lastJulianDay = 5373484; // 9999-12-31
        const bool isDay = julian > 0 && julian <= lastJulianDay
            && orv::DayNumber(orv::DayFromNumber(julian - JulianDayOfEpoch), day);
        if (!isDay) {
            ++unreadable;
            m_result.column.appendEmpty();
            return;
        }
        timesDropped += time != 0 ? 1 : 0;
        m_result.column.appendInteger(day);
    });
    report(FindingCode::DateUnreadable, unreadable);
    report(FindingCode::TimeDropped, timesDropped);
}

void ColumnReader::readUnknown()
{
    const char type = m_field.type;
    const bool isPrintable = type > ' ' && type < 127;
    reportType("text: column type "
        + (isPrintable ? "'" + std::string(1, type) + "'"
                       : std::to_string(static_cast<unsigned char>(type))));
    readTexts(true);
}

ColumnReader::Number ColumnReader::binaryNumber() const
{
    const bool isFoxPro = m_reading.file.dialect() == DbfDialect::FoxPro;
    const bool isDBase7 = m_reading.file.dialect() == DbfDialect::DBase7;
    switch (m_field.type) {
    case 'I':
    case '+':
        if (m_field.widthBytes != 4 || (!isFoxPro && !isDBase7))
            return nullptr;
        return isFoxPro ? parseFoxProInteger : parseDBaseInteger;
    case 'B':
        return isFoxPro && m_field.widthBytes == 8 ? parseFoxProDouble : nullptr;
    case 'Y':
        return isFoxPro && m_field.widthBytes == 8 ? parseFoxProMoney : nullptr;
    case 'O':
        return isDBase7 && m_field.widthBytes == 8 ? parseDBaseDouble : nullptr;
    default:
        return nullptr;
    }
}

DbfColumn ColumnReader::read()
{
    reportWidth();
    const bool isFoxPro = m_reading.file.dialect() == DbfDialect::FoxPro;
    const bool isDBase7 = m_reading.file.dialect() == DbfDialect::DBase7;
    switch (m_field.type) {
    case 'C':
    case 'V':
        readTexts(false);
        return std::move(m_result);
    case 'N':
    case 'F':
        readNumbers(parseDbfNumber, m_field.decimals > 0);
        return std::move(m_result);
    case 'L':
        readLogicals();
        return std::move(m_result);
    case 'D':
        readDates();
        return std::move(m_result);
    case 'M':
        readMemos();
        return std::move(m_result);
    case 'T':
    case '@':
        if (m_field.widthBytes == 8 && (isFoxPro || isDBase7)) {
            readMoments(isFoxPro);
            return std::move(m_result);
        }
        break;
    default:
        break;
    }
    if (const Number parse = binaryNumber())
        readNumbers(parse, m_field.type != 'I' && m_field.type != '+');
    else
        readUnknown();
    return std::move(m_result);
}

} // namespace

DbfColumn readDbfColumn(const DbfReading& reading, TextDecoder& decoder, int fieldIndex,
    const std::string& name, const std::atomic<bool>& stop, std::atomic<std::int64_t>& cellsDone)
{
    const DbfField& field = reading.file.fields()[static_cast<std::size_t>(fieldIndex)];
    return ColumnReader(reading, decoder, field, name, stop, cellsDone).read();
}

} // namespace embedded
