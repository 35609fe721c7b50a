// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/Names.h"

#include "host/base/Numbers.h"

#include <array>

namespace embedded::store {
namespace {

// Bytes of the UTF-8 character that begins here; 0 where none does.
std::size_t characterLength(std::string_view text)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byteAt(0);
    std::size_t length = 0;
    if (lead < 0x80)
        length = 1;
    else if (lead >= 0xC2 && lead < 0xE0)
        length = 2;
    else if (lead >= 0xE0 && lead < 0xF0)
        length = 3;
    else if (lead >= 0xF0 && lead < 0xF5)
        length = 4;
    if (length == 0 || length > text.size())
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byteAt(i) & 0xC0) != 0x80)
            return 0;
    const bool overlong = (lead == 0xE0 && byteAt(1) < 0xA0) || (lead == 0xF0 && byteAt(1) < 0x90);
    const bool outside = (lead == 0xED && byteAt(1) > 0x9F) || (lead == 0xF4 && byteAt(1) > 0x8F);
    return overlong || outside ? 0 : length;
}

std::string readable(std::string_view name)
{
    std::string out;
    while (!name.empty()) {
        const std::size_t length = characterLength(name);
        const auto first = static_cast<unsigned char>(name.front());
        if (length == 0 || first < 0x20 || first == 0x7F) {
            out += '_';
            name.remove_prefix(1);
        } else {
            out += name.substr(0, length);
            name.remove_prefix(length);
        }
    }
    return out;
}

} // namespace

bool CNameSet::take(std::string_view name)
{
    return m_folded.insert(orv::FoldAsciiCase(name)).second;
}

void CNameSet::release(std::string_view name)
{
    m_folded.erase(orv::FoldAsciiCase(name));
}

bool CNameSet::isTaken(std::string_view name) const
{
    return m_folded.count(orv::FoldAsciiCase(name)) != 0;
}

std::string CNameSet::takeFree(const std::string& wanted)
{
    std::string name = wanted;
    for (int number = 2; !take(name); ++number)
        name = wanted + "_" + std::to_string(number);
    return name;
}

std::string safeTableName(std::string_view name)
{
    static constexpr std::array<std::string_view, 5> Kept
        = { "gpkg_", "rtree_", "sqlite_", "tematica_", "idx_" };
    std::string safe = readable(name);
    if (safe.empty())
        return "senza_nome";
    const std::string folded = orv::FoldAsciiCase(safe);
    for (const std::string_view prefix : Kept)
        if (folded.starts_with(prefix))
            return "t_" + safe;
    return safe;
}

std::string safeColumnName(std::string_view name)
{
    std::string safe = readable(name);
    return safe.empty() ? "senza_nome" : safe;
}

std::string rtreeName(const std::string& table, const std::string& geometryColumn)
{
    return "rtree_" + table + "_" + geometryColumn;
}

} // namespace embedded::store
