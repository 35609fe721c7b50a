// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/base/Export.h"

#include <string>
#include <string_view>

namespace orv {

/// Text of the host: bytes with a length, by convention UTF-8, neither checked nor normalised.
/// Lengths and positions count bytes, so `Length()` of "Sì" is 3; NUL bytes are kept.
/// Errors: positions outside the text are clamped, single reads outside give '\0', searches give
/// -1. Owner, thread: a value; as safe between threads as std::string. The layout is part of the
/// host contract.
class TEMATICA_HOST_API String final {
public:
    String() noexcept;
    String(const char* text); // up to the first NUL; null is empty
    /// `count` bytes from `text + start`, NULs included.
    String(const char* text, int start, int count);
    explicit String(std::string_view bytes);
    String(const String& other);
    String(String&& other) noexcept;
    ~String();
    String& operator=(const char* text);
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;

    [[nodiscard]] int Length() const;
    [[nodiscard]] char ReadChar(int position) const;
    /// First position at or after `start`, or -1.
    [[nodiscard]] int IndexOf(char sought, int start) const;
    /// Last position at or before `start`, or -1; 2147483647 searches from the end.
    [[nodiscard]] int LastIndexOf(char sought, int start) const;
    [[nodiscard]] String Substring(int start) const;
    [[nodiscard]] String Substring(int start, int count) const;
    [[nodiscard]] String Concat(const String& tail) const;
    /// Byte-wise over the full lengths; 0 when equal, else the sign of the order.
    [[nodiscard]] int Compare(const char* other) const;
    [[nodiscard]] int Compare(const String& other) const;
    /// As `Compare`, with ASCII letters folded and all other bytes as they are.
    [[nodiscard]] int CompareIgnoreCase(const char* other) const;
    [[nodiscard]] int CompareIgnoreCase(const String& other) const;
    String& operator+=(char tail);

    [[nodiscard]] static String ValueOf(int value);
    /// Fixed notation with a point, correctly rounded from the binary value; `decimals` is clamped
    /// to 0..60, NaN and infinities give the empty text.
    [[nodiscard]] static String ValueOf(double value, unsigned int decimals);

    /// The bytes, valid until this text changes; `Data()` ends with a NUL.
    [[nodiscard]] const char* Data() const noexcept { return m_bytes.c_str(); }
    [[nodiscard]] std::string_view View() const noexcept { return m_bytes; }
    [[nodiscard]] const std::string& Bytes() const noexcept { return m_bytes; }

private:
    std::string m_bytes;
};

TEMATICA_HOST_API String operator+(const char* left, const String& right);
TEMATICA_HOST_API String operator+(const String& left, const char* right);
TEMATICA_HOST_API String operator+(const String& left, char right);
inline String operator+(const String& left, const String& right)
{
    return left.Concat(right);
}
inline bool operator==(const String& left, const String& right)
{
    return left.View() == right.View();
}
inline bool operator!=(const String& left, const String& right)
{
    return left.View() != right.View();
}
inline bool operator<(const String& left, const String& right)
{
    return left.View() < right.View();
}

} // namespace orv
