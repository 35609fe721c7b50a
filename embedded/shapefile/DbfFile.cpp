// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfFile.h"

#include "embedded/shapefile/ShpFormat.h"

#include <algorithm>

namespace embedded {

namespace {

constexpr std::size_t HeaderBytes = 32;
constexpr std::size_t DescriptorBytes = 32;
// dBASE 7: a longer header and descriptors with names of up to 32 bytes.
constexpr std::size_t HeaderBytes7 = 68;
constexpr std::size_t DescriptorBytes7 = 48;
constexpr unsigned char FieldsEnd = 0x0D;

std::size_t little16(const unsigned char* bytes)
{
    return static_cast<std::size_t>(bytes[0] | bytes[1] << 8);
}

DbfDialect dialectOf(std::uint8_t version)
{
    switch (version) {
    case 0x30:
    case 0x31:
    case 0x32:
        return DbfDialect::FoxPro;
    case 0x04:
    case 0x8C:
        return DbfDialect::DBase7;
    default:
        return DbfDialect::DBase3;
    }
}

} // namespace

Result<DbfFile> DbfFile::open(const std::string& path)
{
    auto bytes = FileBytes::open(path);
    if (!bytes)
        return bytes.error();
    DbfFile file;
    file.m_path = path;
    file.m_file = std::move(bytes.value());
    std::string fault = file.readHeader();
    if (!fault.empty())
        return Error { ErrorCode::BadDbf, path, std::move(fault) };
    return file;
}

std::uint32_t DbfFile::recordCount() const
{
    return static_cast<std::uint32_t>(std::min<std::uint64_t>(m_declaredCount, m_storedCount));
}

std::string DbfFile::readHeader()
{
    const unsigned char* bytes = m_file.data();
    if (m_file.size() == 0)
        return "the file is empty";
    if (m_file.size() < HeaderBytes)
        return "the file is shorter than a header";
    m_version = bytes[0];
    m_languageByte = bytes[29];
    m_declaredCount = shp::loadLittle32(bytes + 4);
    m_headerBytes = little16(bytes + 8);
    m_recordBytes = little16(bytes + 10);
    if (m_headerBytes < HeaderBytes)
        return "header length " + std::to_string(m_headerBytes);
    if (m_headerBytes > m_file.size())
        return "header length " + std::to_string(m_headerBytes) + " in a file of "
            + std::to_string(m_file.size()) + " bytes";
    if (m_recordBytes == 0)
        return "record length 0";
    m_dialect = dialectOf(m_version);
    const bool hasLongDescriptors = m_dialect == DbfDialect::DBase7 && m_headerBytes > HeaderBytes7
        && (m_headerBytes - HeaderBytes7) % DescriptorBytes7 == 1
        && bytes[m_headerBytes - 1] == FieldsEnd;
    if (hasLongDescriptors)
        readFields(HeaderBytes7, DescriptorBytes7);
    else
        readFields(HeaderBytes, DescriptorBytes);
    m_storedCount = (m_file.size() - m_headerBytes) / m_recordBytes;
    return placeFields();
}

void DbfFile::readFields(std::size_t first, std::size_t descriptorBytes)
{
    const std::size_t longestName = descriptorBytes == DescriptorBytes7 ? 32 : 11;
    for (std::size_t at = first; at + descriptorBytes <= m_headerBytes; at += descriptorBytes) {
        const unsigned char* descriptor = m_file.data() + at;
        if (*descriptor == FieldsEnd)
            return;
        DbfField field;
        field.name.assign(reinterpret_cast<const char*>(descriptor), longestName);
        field.name.resize(std::min(field.name.find('\0'), field.name.size()));
        field.type = static_cast<char>(descriptor[longestName]);
        const std::size_t sizes = descriptorBytes == DescriptorBytes7 ? 33 : 16;
        field.widthBytes = descriptor[sizes];
        field.decimals = descriptor[sizes + 1];
        m_fields.push_back(std::move(field));
    }
}

void DbfFile::guessMissingWidth(std::size_t bytesLeft)
{
    const auto hasNoWidth = [](const DbfField& field) { return field.widthBytes == 0; };
    if (std::count_if(m_fields.begin(), m_fields.end(), hasNoWidth) != 1)
        return;
    DbfField& field = *std::find_if(m_fields.begin(), m_fields.end(), hasNoWidth);
    field.widthBytes = static_cast<int>(bytesLeft);
    field.isWidthGuessed = bytesLeft > 0;
}

std::string DbfFile::placeFields()
{
    const auto sumOfWidths = [this](bool longTexts) {
        std::size_t sum = 1; // the deleted mark
        for (const DbfField& field : m_fields)
            sum += static_cast<std::size_t>(field.widthBytes)
                + (longTexts && field.type == 'C'
                        ? std::size_t { 256 } * static_cast<std::size_t>(field.decimals)
                        : 0);
        return sum;
    };
    // Clipper and FoxPro keep the high byte of a text's width where numbers keep their decimals.
    const bool longTexts
        = sumOfWidths(false) != m_recordBytes && sumOfWidths(true) == m_recordBytes;
    if (sumOfWidths(longTexts) > m_recordBytes)
        return "record length " + std::to_string(m_recordBytes) + ", its fields take "
            + std::to_string(sumOfWidths(longTexts));
    guessMissingWidth(m_recordBytes - sumOfWidths(longTexts));
    std::uint32_t offset = 1;
    for (DbfField& field : m_fields) {
        if (field.type == 'C') {
            field.widthBytes += longTexts ? 256 * field.decimals : 0;
            field.decimals = 0;
        }
        field.offset = offset;
        offset += static_cast<std::uint32_t>(field.widthBytes);
    }
    // FoxPro's column of null marks is none of the user's.
    if (m_dialect == DbfDialect::FoxPro)
        std::erase_if(m_fields, [](const DbfField& field) { return field.type == '0'; });
    return {};
}

} // namespace embedded
