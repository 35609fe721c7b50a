// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/DbfMemo.h"

#include "embedded/shapefile/ShpFormat.h"
#include "embedded/shapefile/Siblings.h"

#include <charconv>

namespace embedded {

DbfMemo::DbfMemo(const std::string& dbfPath, std::uint8_t version)
{
    const std::string stem(withoutExtension(dbfPath));
    std::string path = existingPath(stem + ".dbt");
    m_kind = version == 0x8B || version == 0xCB ? Kind::DBase4 : Kind::DBase3;
    if (path.empty()) {
        path = existingPath(stem + ".fpt");
        m_kind = Kind::FoxPro;
    }
    if (path.empty())
        return;
    auto file = FileBytes::open(path);
    if (!file)
        return;
    m_file = std::move(file.value());
    const unsigned char* bytes = m_file.data();
    if (m_kind == Kind::DBase4 && m_file.size() >= 22)
        m_blockBytes = static_cast<std::size_t>(bytes[20] | bytes[21] << 8);
    if (m_kind == Kind::FoxPro && m_file.size() >= 8)
        m_blockBytes = static_cast<std::size_t>(bytes[6] << 8 | bytes[7]);
    if (m_blockBytes == 0)
        m_blockBytes = m_kind == Kind::FoxPro ? 1 : 512;
}

std::uint64_t DbfMemo::blockOf(std::string_view cell, bool& isBlank)
{
    // Four bytes are a binary number, more are digits.
    std::uint64_t block = 0;
    if (cell.size() == 4) {
        block = shp::loadLittle32(reinterpret_cast<const unsigned char*>(cell.data()));
        isBlank = block == 0 || block == 0x20202020;
        return block;
    }
    const auto first = cell.find_first_not_of(std::string_view(" \0", 2));
    isBlank = first == std::string_view::npos;
    if (!isBlank)
        std::from_chars(cell.data() + first, cell.data() + cell.size(), block);
    return block;
}

std::optional<std::string_view> DbfMemo::text(std::string_view cell) const
{
    bool isBlank = false;
    const std::uint64_t block = blockOf(cell, isBlank);
    if (isBlank)
        return std::string_view();
    if (block == 0 || block > m_file.size() / m_blockBytes)
        return std::nullopt;
    const std::size_t start = static_cast<std::size_t>(block) * m_blockBytes;
    const std::string_view bytes = m_file.bytes();
    if (m_kind == Kind::DBase3) {
        if (start >= bytes.size())
            return std::nullopt;
        const std::size_t end = bytes.find('\x1A', start);
        return bytes.substr(start, end == std::string_view::npos ? end : end - start);
    }
    if (start + 8 > bytes.size())
        return std::nullopt;
    const unsigned char* header = m_file.data() + start;
    // dBASE IV counts the header of eight bytes, FoxPro does not.
    const std::uint64_t stated = m_kind == Kind::DBase4
        ? shp::loadLittle32(header + 4)
        : static_cast<std::uint32_t>(shp::big32(header + 4));
    if (m_kind == Kind::DBase4 && (stated < 8 || shp::loadLittle32(header) != 0x0008FFFF))
        return std::nullopt;
    const std::uint64_t length = m_kind == Kind::DBase4 ? stated - 8 : stated;
    if (length > bytes.size() - start - 8)
        return std::nullopt;
    return bytes.substr(start + 8, static_cast<std::size_t>(length));
}

} // namespace embedded
