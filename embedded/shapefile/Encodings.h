// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace embedded {

/// The system's name of an encoding that a .cpg or a user names ("UTF-8", "1252", "ANSI 1252",
/// "88591", "koi8r", "LDID/87" ...); empty when there is no such encoding.
std::string encodingFromName(std::string_view name);

/// The encoding that a .dbf's language byte stands for; empty for 0 and unknown ones.
std::string encodingFromLanguageByte(std::uint8_t languageByte);

/// What the bytes over 127 of texts say about their encoding.
struct TextEvidence {
    bool hasHighBytes = false;
    bool hasWholeSequences = false; // complete UTF-8 sequences of two bytes or more
    bool isInvalidUtf8 = false;

    /// A sequence cut by the end of a full cell counts neither way.
    void add(std::string_view text, bool fillsItsCell);
    void add(const TextEvidence& other);
    [[nodiscard]] bool isUtf8() const { return hasWholeSequences && !isInvalidUtf8; }
};

/// Length of the UTF-8 sequence at the beginning of `text`; 0 when it is not a whole valid one.
std::size_t utf8SequenceLength(std::string_view text);
/// The longest beginning of at most `bytes` bytes that does not cut a character.
std::string_view cutUtf8(std::string_view text, std::size_t bytes);

/// Texts of one encoding as UTF-8. Bytes that are invalid in it become U+FFFD. Thread: one; a copy
/// for each.
class TextDecoder final {
public:
    /// `encoding` as `encodingFromName` gives it.
    explicit TextDecoder(const std::string& encoding);
    TextDecoder(const TextDecoder& other);
    TextDecoder& operator=(const TextDecoder&) = delete;
    ~TextDecoder();

    /// Decodes a .dbf's cell: ends at a NUL, without trailing blanks. The view is valid until the
    /// next call. `isValid` becomes false when bytes were invalid or something follows the NUL.
    [[nodiscard]] std::string_view cell(std::string_view bytes, bool& isValid);
    [[nodiscard]] const std::string& encoding() const { return m_encoding; }

private:
    enum class Kind { Utf8, SingleByte, Converter };
    std::string_view utf8(std::string_view bytes, bool& isValid);
    std::string_view singleByte(std::string_view bytes, bool& isValid);
    std::string_view converted(std::string_view bytes, bool& isValid);
    void openConverter();
    void buildTable();

    struct Known {
        std::string text;
        bool isValid = true;
    };

    std::string m_encoding;
    Kind m_kind = Kind::Utf8;
    void* m_converter = nullptr;
    std::array<std::array<char, 4>, 256> m_table {}; // length, then up to three bytes
    std::string m_buffer;
    std::unordered_map<std::string, Known> m_known; // a converter's call costs more than a look-up
};

} // namespace embedded
