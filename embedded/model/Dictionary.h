// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Columns.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace embedded {

/// Distinct texts with dense codes in order of first appearance. Grows only; codes and texts stay.
/// A copy shares the texts (cheap enough for a snapshot: it copies the index of entries only when
/// one side grows). Thread: readable from several threads while nobody adds.
class Dictionary final {
public:
    static constexpr std::uint32_t NoCode = 0xFFFFFFFFu;

    Dictionary();
    Dictionary(const Dictionary& other);
    Dictionary& operator=(const Dictionary& other);
    Dictionary(Dictionary&&) noexcept;
    Dictionary& operator=(Dictionary&&) noexcept;
    ~Dictionary();

    /// The code of a text, added where it is new.
    std::uint32_t intern(std::string_view text);
    /// `NoCode` when the text is not there.
    [[nodiscard]] std::uint32_t find(std::string_view text) const;
    [[nodiscard]] std::string_view text(std::uint32_t code) const { return entries()[code].View(); }
    [[nodiscard]] std::uint32_t size() const;
    /// Contiguous, `size()` entries; valid until the next `intern`.
    [[nodiscard]] const gis::DictionaryEntry* entries() const;
    [[nodiscard]] std::size_t sizeBytes() const;

private:
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace embedded
