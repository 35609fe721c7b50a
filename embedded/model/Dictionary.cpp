// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Dictionary.h"

#include "embedded/model/Cow.h"

#include <cstring>
#include <vector>

namespace embedded {

namespace {

constexpr std::size_t ArenaBytes = 64 * 1024;

/// Source: Fowler, Noll and Vo, FNV-1a, taken eight bytes at a time and mixed at the end, since
/// texts are short.
std::uint64_t hashOf(std::string_view text)
{
    std::uint64_t hash = 0xCBF29CE484222325u ^ text.size();
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; left -= 8, at += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
        hash ^= hash >> 32;
    }
    std::uint64_t word = 0;
    std::memcpy(&word, at, left);
    hash = (hash ^ word) * 0x9E3779B97F4A7C15u;
    return hash ^ (hash >> 29);
}

} // namespace

struct Dictionary::Data {
    struct Contents {
        std::vector<gis::DictionaryEntry> entries;
        std::vector<std::uint32_t> slots; // codes, open addressing; size a power of two
        std::vector<std::shared_ptr<char[]>>
            arenas; // shared by copies; each appends to arenas of its own only
        std::size_t arenaLeft = 0;
        std::size_t textBytes = 0;

        Contents() = default;
        Contents(Contents&&) = default;
        Contents& operator=(Contents&&) = default;
        Contents& operator=(const Contents&) = delete;
        // The rest of the last arena stays the original's: both may append.
        Contents(const Contents& other)
            : entries(other.entries)
            , slots(other.slots)
            , arenas(other.arenas)
            , textBytes(other.textBytes)
        {
        }

        [[nodiscard]] std::size_t slotOf(std::string_view text) const
        {
            const std::size_t mask = slots.size() - 1;
            std::size_t slot = hashOf(text) & mask;
            while (slots[slot] != NoCode && entries[slots[slot]].View() != text)
                slot = (slot + 1) & mask;
            return slot;
        }
        void grow()
        {
            slots.assign(slots.empty() ? 16 : slots.size() * 2, NoCode);
            for (std::uint32_t code = 0; code < entries.size(); ++code)
                slots[slotOf(entries[code].View())] = code;
        }
        const char* keep(std::string_view text)
        {
            if (text.size() > arenaLeft || arenas.empty()) {
                const std::size_t size
                    = std::max(entries.size() < 64 ? std::size_t(1024) : ArenaBytes, text.size());
                arenas.emplace_back(new char[size]);
                arenaLeft = size;
                lastArenaSize = size;
            }
            char* place = arenas.back().get() + (lastArenaSize - arenaLeft);
            std::memcpy(place, text.data(), text.size());
            arenaLeft -= text.size();
            textBytes += text.size();
            return place;
        }
        std::size_t lastArenaSize = 0;
    };
    Cow<Contents> contents;
};

Dictionary::Dictionary()
    : m_data(std::make_unique<Data>())
{
}
Dictionary::Dictionary(const Dictionary& other)
    : m_data(std::make_unique<Data>(*other.m_data))
{
}
Dictionary& Dictionary::operator=(const Dictionary& other)
{
    if (this != &other)
        m_data = std::make_unique<Data>(*other.m_data);
    return *this;
}
Dictionary::Dictionary(Dictionary&&) noexcept = default;
Dictionary& Dictionary::operator=(Dictionary&&) noexcept = default;
Dictionary::~Dictionary() = default;

std::uint32_t Dictionary::intern(std::string_view text)
{
    const std::uint32_t known = find(text);
    if (known != NoCode)
        return known;
    Data::Contents& contents = m_data->contents.write();
    if (contents.entries.size() * 2 >= contents.slots.size())
        contents.grow();
    const auto code = static_cast<std::uint32_t>(contents.entries.size());
    const char* bytes = contents.keep(text);
    contents.slots[contents.slotOf(text)] = code;
    contents.entries.push_back({ bytes, static_cast<std::uint32_t>(text.size()) });
    return code;
}

std::uint32_t Dictionary::find(std::string_view text) const
{
    const Data::Contents& contents = m_data->contents.read();
    return contents.slots.empty() ? NoCode : contents.slots[contents.slotOf(text)];
}

std::uint32_t Dictionary::size() const
{
    return static_cast<std::uint32_t>(m_data->contents.read().entries.size());
}

const gis::DictionaryEntry* Dictionary::entries() const
{
    return m_data->contents.read().entries.data();
}

std::size_t Dictionary::sizeBytes() const
{
    const Data::Contents& contents = m_data->contents.read();
    return contents.entries.capacity() * sizeof(gis::DictionaryEntry)
        + contents.slots.capacity() * sizeof(std::uint32_t) + contents.textBytes;
}

} // namespace embedded
