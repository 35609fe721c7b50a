// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

// Whole values in and out of byte strings. The files are little-endian; so are the processors this
// is built for, and a build for another one stops here.
static_assert(std::endian::native == std::endian::little);

namespace embedded::store {

template <typename Value> void putValue(std::string& out, Value value)
{
    char bytes[sizeof(Value)];
    std::memcpy(bytes, &value, sizeof(Value));
    out.append(bytes, sizeof(Value));
}

/// Numbers of seven bits a byte, lowest first.
inline void putVarint(std::string& out, std::uint64_t value)
{
    for (; value >= 0x80; value >>= 7)
        out += static_cast<char>((value & 0x7F) | 0x80);
    out += static_cast<char>(value);
}

/// Reads from the front of a byte string; once too little is left, everything read is 0 and `ok`
/// is false.
class CByteReader final {
public:
    explicit CByteReader(std::string_view bytes)
        : m_bytes(bytes)
    {
    }
    [[nodiscard]] bool ok() const { return m_ok; }
    [[nodiscard]] std::size_t left() const { return m_bytes.size(); }
    void setBigEndian(bool bigEndian) { m_bigEndian = bigEndian; }

    template <typename Value> Value value()
    {
        Value result {};
        if (!take(sizeof(Value)))
            return result;
        char bytes[sizeof(Value)];
        for (std::size_t i = 0; i < sizeof(Value); ++i)
            bytes[i] = m_taken[m_bigEndian ? sizeof(Value) - 1 - i : i];
        std::memcpy(&result, bytes, sizeof(Value));
        return result;
    }

    std::uint64_t varint()
    {
        std::uint64_t result = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const auto byte = value<std::uint8_t>();
            result |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (byte < 0x80)
                return result;
        }
        m_ok = false;
        return 0;
    }

    /// `count` doubles into `out`; false when too few are left.
    bool doubles(double* out, std::size_t count)
    {
        if (count > m_bytes.size() / sizeof(double) || !take(count * sizeof(double)))
            return m_ok = false;
        if (count == 0)
            return true;
        std::memcpy(out, m_taken, count * sizeof(double));
        if (m_bigEndian)
            for (std::size_t i = 0; i < count; ++i)
                out[i] = swapped(out[i]);
        return true;
    }

    bool skip(std::size_t count) { return take(count); }

private:
    static double swapped(double value)
    {
        auto bits = std::bit_cast<std::uint64_t>(value);
        std::uint64_t reversed = 0;
        for (int i = 0; i < 8; ++i, bits >>= 8)
            reversed = (reversed << 8) | (bits & 0xFF);
        return std::bit_cast<double>(reversed);
    }

    bool take(std::size_t count)
    {
        if (!m_ok || count > m_bytes.size())
            return m_ok = false;
        m_taken = m_bytes.data();
        m_bytes.remove_prefix(count);
        return true;
    }

    std::string_view m_bytes;
    const char* m_taken = nullptr;
    bool m_ok = true;
    bool m_bigEndian = false;
};

} // namespace embedded::store
