// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/base/String.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace orv {

namespace {

int sizeOf(const std::string& bytes)
{
    constexpr std::size_t Most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(bytes.size(), Most));
}

int signOf(int order)
{
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::string_view viewOf(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

} // namespace

String::String() noexcept = default;
String::String(const char* text)
    : m_bytes(viewOf(text))
{
}
String::String(const char* text, int start, int count)
{
    if (text && count > 0)
        m_bytes.assign(text + std::max(0, start), static_cast<std::size_t>(count));
}
String::String(std::string_view bytes)
    : m_bytes(bytes)
{
}
String::String(const String& other) = default;
String::String(String&& other) noexcept = default;
String::~String() = default;
String& String::operator=(const String& other) = default;
String& String::operator=(String&& other) noexcept = default;
String& String::operator=(const char* text)
{
    m_bytes = std::string(viewOf(text)); // a copy first: `text` may point into this text
    return *this;
}

int String::Length() const
{
    return sizeOf(m_bytes);
}

char String::ReadChar(int position) const
{
    return position >= 0 && position < Length() ? m_bytes[static_cast<std::size_t>(position)]
                                                : '\0';
}

int String::IndexOf(char sought, int start) const
{
    const std::size_t found = m_bytes.find(sought, static_cast<std::size_t>(std::max(0, start)));
    return found == std::string::npos ? -1 : static_cast<int>(found);
}

int String::LastIndexOf(char sought, int start) const
{
    if (start < 0)
        return -1;
    const std::size_t found = m_bytes.rfind(sought, static_cast<std::size_t>(start));
    return found == std::string::npos ? -1 : static_cast<int>(found);
}

String String::Substring(int start) const
{
    return Substring(start, Length());
}

String String::Substring(int start, int count) const
{
    const int from = std::clamp(start, 0, Length());
    const int most = Length() - from;
    return String(View().substr(
        static_cast<std::size_t>(from), static_cast<std::size_t>(std::clamp(count, 0, most))));
}

String String::Concat(const String& tail) const
{
    String joined(*this);
    joined.m_bytes += tail.m_bytes;
    return joined;
}

int String::Compare(const char* other) const
{
    return signOf(View().compare(viewOf(other)));
}
int String::Compare(const String& other) const
{
    return signOf(View().compare(other.View()));
}
int String::CompareIgnoreCase(const char* other) const
{
    return CompareIgnoreAsciiCase(View(), viewOf(other));
}
int String::CompareIgnoreCase(const String& other) const
{
    return CompareIgnoreAsciiCase(View(), other.View());
}

String& String::operator+=(char tail)
{
    m_bytes += tail;
    return *this;
}

String String::ValueOf(int value)
{
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    return String(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

String String::ValueOf(double value, unsigned int decimals)
{
    String text;
    AppendFixed(text.m_bytes, value, static_cast<int>(std::min(decimals, 60u)));
    return text;
}

String operator+(const char* left, const String& right)
{
    return String(left).Concat(right);
}
String operator+(const String& left, const char* right)
{
    return left.Concat(String(right));
}
String operator+(const String& left, char right)
{
    String joined(left);
    joined += right;
    return joined;
}

} // namespace orv
