// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ShpFile.h"

#include <algorithm>
#include <limits>
#include <unordered_map>

namespace embedded {

namespace {

/// Lengths and offsets are 31-bit counts of 16-bit words: nothing lies beyond 4 GiB.
constexpr std::size_t LongestFile = std::size_t { 1 } << 32;
/// A record takes at least its header and a shape type.
constexpr std::size_t SmallestRecord = shp::RecordHeaderBytes + 4;

std::int32_t numberAfter(std::int32_t number)
{
    return number == std::numeric_limits<std::int32_t>::max() ? 0 : number + 1;
}

std::string numberText(std::uint64_t number)
{
    return std::to_string(number);
}

} // namespace

ShapeSize statedShapeSize(const unsigned char* content, std::uint64_t available)
{
    constexpr ShapeSize impossible { -1, -1 };
    if (available < 4)
        return impossible;
    const std::int32_t type = shp::little32(content);
    if (type == shp::Null)
        return { 4, 4 };
    const std::int32_t family = shp::familyOf(type);
    if (family == 0)
        return impossible;
    if (family == shp::Point) {
        if (shp::hasZ(type))
            return { 28, 36 };
        return shp::isMType(type) ? ShapeSize { 28, 28 } : ShapeSize { 20, 20 };
    }
    const bool hasParts = family != shp::MultiPoint;
    const std::int64_t fixed = hasParts ? 44 : 40;
    if (available < static_cast<std::uint64_t>(fixed))
        return impossible;
    const std::int64_t parts = hasParts ? shp::little32(content + 36) : 0;
    const std::int64_t points = shp::little32(content + (hasParts ? 40 : 36));
    if (parts < 0 || points < 0)
        return impossible;
    const std::int64_t flat = fixed + 4 * parts + 16 * points;
    const std::int64_t ordinates = 16 + 8 * points;
    if (shp::hasZ(type))
        return { flat + ordinates, flat + 2 * ordinates };
    return { flat, shp::isMType(type) ? flat + ordinates : flat };
}

Result<ShpFile> ShpFile::open(const std::string& shpPath)
{
    auto read = FileBytes::open(shpPath);
    if (!read)
        return read.error();
    ShpFile file;
    file.m_file = std::move(read.value());
    const unsigned char* bytes = file.m_file.data();
    file.m_size = std::min(file.m_file.size(), LongestFile);
    if (file.m_file.size() == 0)
        return Error { ErrorCode::EmptyFile, shpPath, {} };
    if (file.m_file.size() < shp::HeaderBytes || shp::big32(bytes) != shp::FileCode)
        return Error { ErrorCode::NoShapeHeader, shpPath, {} };
    file.m_type = shp::little32(bytes + 32);
    if (shp::familyOf(file.m_type) == 0)
        return Error { ErrorCode::UnknownShapeType, shpPath, std::to_string(file.m_type) };
    const std::int64_t declared = 2 * static_cast<std::int64_t>(shp::big32(bytes + 24));
    file.m_declaredBytes = declared > 0 ? static_cast<std::uint64_t>(declared) : 0;
    return file;
}

ShpFile::Header ShpFile::headerAt(std::size_t offset) const
{
    const unsigned char* bytes = m_file.data() + offset;
    return { shp::big32(bytes), 2 * static_cast<std::int64_t>(shp::big32(bytes + 4)) };
}

bool ShpFile::fits(std::size_t offset, std::int64_t sizeBytes) const
{
    const auto room = static_cast<std::int64_t>(m_size - offset - shp::RecordHeaderBytes);
    return sizeBytes >= 4 && sizeBytes <= room;
}

bool ShpFile::goesOnAt(std::size_t offset, std::int32_t number) const
{
    if (offset == m_size)
        return true;
    return offset + shp::RecordHeaderBytes <= m_size
        && shp::big32(m_file.data() + offset) == number;
}

bool ShpFile::isRecordAt(std::size_t offset, std::int32_t lowest, std::int32_t highest) const
{
    if (offset + SmallestRecord > m_size)
        return false;
    const Header header = headerAt(offset);
    if (header.number < lowest || header.number > highest || !fits(offset, header.sizeBytes))
        return false;
    const unsigned char* content = m_file.data() + offset + shp::RecordHeaderBytes;
    const std::int32_t type = shp::little32(content);
    if (type != m_type && type != shp::Null)
        return false;
    const ShapeSize own = statedShapeSize(content, static_cast<std::uint64_t>(header.sizeBytes));
    return own.smallest == header.sizeBytes || own.withMeasures == header.sizeBytes;
}

std::int64_t ShpFile::ownSizeLeadingOn(std::size_t offset) const
{
    const std::size_t start = offset + shp::RecordHeaderBytes;
    const std::uint64_t room = m_size - start;
    const ShapeSize own = statedShapeSize(m_file.data() + start, room);
    const std::int32_t next = numberAfter(headerAt(offset).number);
    for (const std::int64_t size : { own.withMeasures, own.smallest }) {
        if (size < 4 || static_cast<std::uint64_t>(size) > room)
            continue;
        const std::size_t end = start + static_cast<std::size_t>(size);
        if (end == m_size || isRecordAt(end, next, next))
            return size;
    }
    return -1;
}

std::size_t ShpFile::searchRecord(std::size_t from, std::int32_t previousNumber) const
{
    // No more records can have been lost than there is room for in between.
    for (std::size_t offset = from; offset + SmallestRecord <= m_size; offset += 2) {
        const auto lost = static_cast<std::int64_t>((offset - from) / SmallestRecord) + 1;
        const std::int64_t highest = std::min<std::int64_t>(
            previousNumber + lost + 1, std::numeric_limits<std::int32_t>::max());
        if (isRecordAt(offset, previousNumber + 1, static_cast<std::int32_t>(highest)))
            return offset;
    }
    return 0;
}

void ShpFile::add(
    std::size_t offset, std::int64_t sizeBytes, std::int32_t number, ShpRecordState state)
{
    ShpRecord record;
    record.offset = offset + shp::RecordHeaderBytes;
    record.sizeBytes = static_cast<std::uint32_t>(sizeBytes);
    record.number = number;
    record.state = state;
    m_records.push_back(record);
}

bool ShpFile::readDamaged(std::size_t& offset, std::int32_t& previousNumber)
{
    const Header header = headerAt(offset);
    const bool isExpected = header.number == numberAfter(previousNumber);
    if (isExpected) {
        const std::int64_t own = ownSizeLeadingOn(offset);
        if (own > 0) {
            // A length of nothing says that there is no shape; any other impossible length is
            // noise over a shape that is still whole.
            const bool hasShape = header.sizeBytes < 0 || header.sizeBytes >= 4;
            add(offset, own, header.number,
                hasShape ? ShpRecordState::LengthWrong : ShpRecordState::Impossible);
            previousNumber = header.number;
            offset += shp::RecordHeaderBytes + static_cast<std::size_t>(own);
            return true;
        }
    }
    const std::size_t next = searchRecord(offset + 2, previousNumber);
    if (next == 0) {
        if (isExpected)
            add(offset, 0, header.number,
                header.sizeBytes >= 4 ? ShpRecordState::Cut : ShpRecordState::Impossible);
        return false;
    }
    const std::int32_t nextNumber = headerAt(next).number;
    for (std::int32_t lost = previousNumber + 1; lost < nextNumber; ++lost)
        add(offset, 0, lost, ShpRecordState::Impossible);
    previousNumber = nextNumber - 1;
    offset = next;
    return true;
}

void ShpFile::findRecords(const std::string& shxPath)
{
    std::size_t offset = shp::HeaderBytes;
    std::int32_t previousNumber = 0;
    if (shp::familyOf(m_type) == shp::Point)
        m_records.reserve((m_size - shp::HeaderBytes) / 28 + 1);
    while (offset + shp::RecordHeaderBytes <= m_size) {
        const Header header = headerAt(offset);
        if (!fits(offset, header.sizeBytes)) {
            if (!readDamaged(offset, previousNumber))
                break;
            continue;
        }
        std::int64_t sizeBytes = header.sizeBytes;
        auto state = ShpRecordState::Readable;
        const auto end = offset + shp::RecordHeaderBytes + static_cast<std::size_t>(sizeBytes);
        if (!goesOnAt(end, numberAfter(header.number))) {
            const std::int64_t own = ownSizeLeadingOn(offset);
            if (own > 0 && own != sizeBytes) {
                sizeBytes = own;
                state = ShpRecordState::LengthWrong;
            }
        }
        add(offset, sizeBytes, header.number, state);
        previousNumber = header.number;
        offset += shp::RecordHeaderBytes + static_cast<std::size_t>(sizeBytes);
        m_recordsEnd = offset;
    }
    m_recordsEnd = std::max(m_recordsEnd, std::min(offset, m_size));
    readIndex(shxPath);
    compareIndex();
}

void ShpFile::readIndex(const std::string& shxPath)
{
    if (shxPath.empty()) {
        m_index.isMissing = true;
        return;
    }
    const auto bytes = FileBytes::open(shxPath);
    if (!bytes) {
        m_index.isMissing = true;
        return;
    }
    const FileBytes& file = bytes.value();
    if (file.size() < shp::HeaderBytes || shp::big32(file.data()) != shp::FileCode) {
        m_index.difference = "no .shx header";
        return;
    }
    const std::size_t count = (file.size() - shp::HeaderBytes) / 8;
    m_indexIsCut = (file.size() - shp::HeaderBytes) % 8 != 0;
    m_indexEntries.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned char* entry = file.data() + shp::HeaderBytes + 8 * i;
        m_indexEntries[i] = { 2 * static_cast<std::int64_t>(shp::big32(entry)),
            2 * static_cast<std::int64_t>(shp::big32(entry + 4)) };
    }
    m_index.entryCount
        = static_cast<int>(std::min<std::size_t>(count, std::numeric_limits<int>::max()));
}

void ShpFile::compareIndex()
{
    if (m_index.isMissing || !m_index.difference.empty())
        return;
    if (takeIndexOrder())
        return;
    if (m_indexEntries.size() != m_records.size() || m_indexIsCut) {
        m_index.difference = numberText(m_indexEntries.size()) + " entries, "
            + numberText(m_records.size()) + " records";
        return;
    }
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        const auto offset = static_cast<std::int64_t>(m_records[i].offset - shp::RecordHeaderBytes);
        if (m_indexEntries[i].offset != offset) {
            m_index.difference = "entry " + numberText(i + 1) + " points elsewhere";
            return;
        }
        if (m_indexEntries[i].sizeBytes != m_records[i].sizeBytes
            && m_records[i].state == ShpRecordState::Readable) {
            m_index.difference = "entry " + numberText(i + 1) + " has another length";
            return;
        }
    }
}

bool ShpFile::takeIndexOrder()
{
    // The order of the file is the order of the shapes unless both files agree on another one.
    bool isInFileOrder = m_indexEntries.size() == m_records.size();
    for (std::size_t i = 0; isInFileOrder && i < m_records.size(); ++i)
        isInFileOrder = m_indexEntries[i].offset
            == static_cast<std::int64_t>(m_records[i].offset - shp::RecordHeaderBytes);
    if (isInFileOrder || m_indexIsCut || m_indexEntries.size() > m_records.size())
        return false;
    std::unordered_map<std::int64_t, std::size_t> recordAt;
    recordAt.reserve(m_records.size());
    for (std::size_t i = 0; i < m_records.size(); ++i) {
        const ShpRecord& record = m_records[i];
        if (record.number < 1 || static_cast<std::size_t>(record.number) > m_indexEntries.size())
            return false;
        recordAt.emplace(static_cast<std::int64_t>(record.offset - shp::RecordHeaderBytes), i);
    }
    std::vector<ShpRecord> ordered;
    ordered.reserve(m_indexEntries.size());
    for (std::size_t i = 0; i < m_indexEntries.size(); ++i) {
        const auto found = recordAt.find(m_indexEntries[i].offset);
        if (found == recordAt.end())
            return false;
        const ShpRecord& record = m_records[found->second];
        if (static_cast<std::size_t>(record.number) != i + 1
            || m_indexEntries[i].sizeBytes != record.sizeBytes)
            return false;
        ordered.push_back(record);
    }
    m_records = std::move(ordered);
    return true;
}

std::string ShpFile::sizeDifference() const
{
    if (m_declaredBytes == m_size && m_recordsEnd == m_size)
        return {};
    std::string text = "length field " + numberText(m_declaredBytes) + " bytes, records end at "
        + numberText(m_recordsEnd) + ", file has " + numberText(m_size);
    return text;
}

} // namespace embedded
