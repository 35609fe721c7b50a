// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Encodings.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iconv.h>

namespace embedded {

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr std::size_t MostKnownTexts = 100'000;

bool isAscii(std::string_view text)
{
    const char* at = text.data();
    std::size_t left = text.size();
    for (; left >= 8; at += 8, left -= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, at, 8);
        if (word & 0x8080808080808080u)
            return false;
    }
    for (; left > 0; ++at, --left)
        if (static_cast<unsigned char>(*at) > 127)
            return false;
    return true;
}

std::string_view withoutTrailingBlanks(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

bool isWide(const std::string& encoding)
{
    return encoding.starts_with("UTF-16") || encoding.starts_with("UTF-32")
        || encoding.starts_with("UCS");
}

/// Bytes that a UTF-8 sequence beginning with `lead` takes; 0 for no lead byte.
std::size_t lengthByLead(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

/// Bytes at the beginning of `text` that belong to one sequence, whole or not.
std::size_t validPrefix(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t wanted = lengthByLead(byte(0));
    if (wanted < 2)
        return wanted;
    std::size_t length = 1;
    while (length < wanted && length < text.size()) {
        unsigned char lowest = 0x80;
        unsigned char highest = 0xBF;
        if (length == 1) {
            // No overlong forms, no surrogates, nothing beyond U+10FFFF.
            lowest = byte(0) == 0xE0 ? 0xA0 : (byte(0) == 0xF0 ? 0x90 : 0x80);
            highest = byte(0) == 0xED ? 0x9F : (byte(0) == 0xF4 ? 0x8F : 0xBF);
        }
        if (byte(length) < lowest || byte(length) > highest)
            break;
        ++length;
    }
    return length;
}

} // namespace

std::size_t utf8SequenceLength(std::string_view text)
{
    if (text.empty())
        return 0;
    const std::size_t length = validPrefix(text);
    return length == lengthByLead(static_cast<unsigned char>(text[0])) ? length : 0;
}

std::string_view cutUtf8(std::string_view text, std::size_t bytes)
{
    if (text.size() <= bytes)
        return text;
    std::size_t end = bytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    // A run of continuation bytes longer than any character is no UTF-8: cut it where asked.
    return text.substr(0, bytes - end <= 3 ? end : bytes);
}

void TextEvidence::add(std::string_view text, bool fillsItsCell)
{
    if (isAscii(text))
        return;
    hasHighBytes = true;
    while (!text.empty() && !isInvalidUtf8) {
        const std::size_t whole = utf8SequenceLength(text);
        if (whole == 0) {
            const bool isCutByCell = fillsItsCell && validPrefix(text) == text.size();
            isInvalidUtf8 = !isCutByCell;
            return;
        }
        hasWholeSequences = hasWholeSequences || whole > 1;
        text.remove_prefix(whole);
    }
}

void TextEvidence::add(const TextEvidence& other)
{
    hasHighBytes = hasHighBytes || other.hasHighBytes;
    hasWholeSequences = hasWholeSequences || other.hasWholeSequences;
    isInvalidUtf8 = isInvalidUtf8 || other.isInvalidUtf8;
}

TextDecoder::TextDecoder(const std::string& encoding)
    : m_encoding(encoding)
{
    if (encoding == "UTF-8")
        return;
    m_kind = Kind::Converter;
    openConverter();
    if (!isWide(encoding))
        buildTable();
}

TextDecoder::TextDecoder(const TextDecoder& other)
    : m_encoding(other.m_encoding)
    , m_kind(other.m_kind)
    , m_table(other.m_table)
{
    if (m_kind == Kind::Converter)
        openConverter();
}

TextDecoder::~TextDecoder()
{
    if (m_converter)
        ::iconv_close(static_cast<iconv_t>(m_converter));
}

void TextDecoder::openConverter()
{
    const iconv_t converter = ::iconv_open("UTF-8", m_encoding.c_str());
    m_converter = converter == reinterpret_cast<iconv_t>(-1) ? nullptr : converter;
}

void TextDecoder::buildTable()
{
    // Encodings of one byte a character are read by a table; one in which some byte begins a
    // longer sequence keeps the converter.
    if (!m_converter)
        return;
    for (int code = 0; code < 256; ++code) {
        char in = static_cast<char>(code);
        char out[8] = {};
        char* from = &in;
        char* to = out;
        std::size_t inLeft = 1;
        std::size_t outLeft = sizeof out;
        errno = 0;
        ::iconv(static_cast<iconv_t>(m_converter), nullptr, nullptr, nullptr, nullptr);
        const std::size_t result
            = ::iconv(static_cast<iconv_t>(m_converter), &from, &inLeft, &to, &outLeft);
        if (result == static_cast<std::size_t>(-1) && errno == EINVAL)
            return;
        const auto length = static_cast<std::size_t>(to - out);
        auto& entry = m_table[static_cast<std::size_t>(code)];
        entry[0] = result == static_cast<std::size_t>(-1) || length > 3 ? '\0'
                                                                        : static_cast<char>(length);
        std::memcpy(entry.data() + 1, out, static_cast<std::size_t>(entry[0]));
    }
    m_kind = Kind::SingleByte;
    ::iconv_close(static_cast<iconv_t>(m_converter));
    m_converter = nullptr;
}

std::string_view TextDecoder::cell(std::string_view bytes, bool& isValid)
{
    isValid = true;
    if (m_kind == Kind::Converter && isWide(m_encoding))
        return withoutTrailingBlanks(converted(bytes, isValid));
    bytes = withoutTrailingBlanks(bytes);
    if (const auto end = bytes.find('\0'); end != std::string_view::npos) {
        // Padding with NULs is common; text after one is what a longer value left behind.
        isValid
            = bytes.find_first_not_of(std::string_view("\0 ", 2), end) == std::string_view::npos;
        bytes = withoutTrailingBlanks(bytes.substr(0, end));
    }
    if (isAscii(bytes))
        return bytes;
    switch (m_kind) {
    case Kind::Utf8:
        return utf8(bytes, isValid);
    case Kind::SingleByte:
        return singleByte(bytes, isValid);
    default:
        return withoutTrailingBlanks(converted(bytes, isValid));
    }
}

std::string_view TextDecoder::utf8(std::string_view bytes, bool& isValid)
{
    std::size_t good = 0;
    while (good < bytes.size()) {
        const std::size_t length = utf8SequenceLength(bytes.substr(good));
        if (length == 0)
            break;
        good += length;
    }
    if (good == bytes.size())
        return bytes;
    isValid = false;
    m_buffer.assign(bytes.substr(0, good));
    for (bytes.remove_prefix(good); !bytes.empty();) {
        const std::size_t length = utf8SequenceLength(bytes);
        m_buffer += length ? bytes.substr(0, length) : Replacement;
        bytes.remove_prefix(length ? length : std::max<std::size_t>(1, validPrefix(bytes)));
    }
    return m_buffer;
}

std::string_view TextDecoder::singleByte(std::string_view bytes, bool& isValid)
{
    m_buffer.clear();
    for (const char c : bytes) {
        const auto& entry = m_table[static_cast<unsigned char>(c)];
        if (entry[0] == 0) {
            isValid = false;
            m_buffer += Replacement;
        } else {
            m_buffer.append(entry.data() + 1, static_cast<std::size_t>(entry[0]));
        }
    }
    return m_buffer;
}

std::string_view TextDecoder::converted(std::string_view bytes, bool& isValid)
{
    if (m_known.size() > MostKnownTexts)
        m_known.clear();
    const auto [entry, isNew] = m_known.try_emplace(std::string(bytes));
    Known& known = entry->second;
    if (!isNew) {
        isValid = isValid && known.isValid;
        return known.text;
    }
    if (!m_converter) {
        known.isValid = false;
    } else {
        ::iconv(static_cast<iconv_t>(m_converter), nullptr, nullptr, nullptr, nullptr);
        std::string in(bytes);
        char* from = in.data();
        std::size_t inLeft = in.size();
        while (inLeft > 0) {
            char out[256];
            char* to = out;
            std::size_t outLeft = sizeof out;
            const std::size_t result
                = ::iconv(static_cast<iconv_t>(m_converter), &from, &inLeft, &to, &outLeft);
            known.text.append(out, static_cast<std::size_t>(to - out));
            if (result != static_cast<std::size_t>(-1) || errno == E2BIG)
                continue;
            known.isValid = false;
            known.text += Replacement;
            const std::size_t step = std::min<std::size_t>(inLeft, isWide(m_encoding) ? 2 : 1);
            from += step;
            inLeft -= step;
        }
    }
    if (isWide(m_encoding)) {
        if (known.text.starts_with("\xEF\xBB\xBF"))
            known.text.erase(0, 3);
        if (const auto end = known.text.find('\0'); end != std::string::npos)
            known.text.resize(end);
    }
    isValid = isValid && known.isValid;
    return known.text;
}

} // namespace embedded
