// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace cli {

/// The next character of a UTF-8 text; moves `position` past it. 0xFFFD for a byte that begins no
/// valid character (one byte is then passed).
[[nodiscard]] inline std::uint32_t nextCharacter(std::string_view text, std::size_t& position)
{
    const auto byteAt = [&](std::size_t i) -> std::uint32_t {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    const std::uint32_t lead = byteAt(position);
    const int length = lead < 0x80    ? 1
        : lead >= 0xC2 && lead < 0xE0 ? 2
        : lead >= 0xE0 && lead < 0xF0 ? 3
        : lead >= 0xF0 && lead < 0xF5 ? 4
                                      : 0;
    std::uint32_t character = length <= 1 ? lead : lead & (0xFFu >> (length + 1));
    bool isValid = length > 0;
    for (int i = 1; i < length && isValid; ++i) {
        const std::uint32_t tail = byteAt(position + static_cast<std::size_t>(i));
        isValid = (tail & 0xC0u) == 0x80u;
        character = character << 6 | (tail & 0x3Fu);
    }
    const bool isOverlong
        = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    if (!isValid || isOverlong || isSurrogate || character > 0x10FFFF) {
        ++position;
        return 0xFFFD;
    }
    position += static_cast<std::size_t>(length);
    return character;
}

} // namespace cli
