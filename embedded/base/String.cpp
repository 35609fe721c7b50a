// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/String.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace orv {

namespace {

std::string_view viewOf(const char* text)
{
    return text ? std::string_view(text) : std::string_view();
}

int signOf(int order)
{
    return (order > 0) - (order < 0);
}

int lengthAsInt(std::size_t length)
{
    constexpr std::size_t Longest = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(length, Longest));
}

} // namespace

String::String() noexcept = default;
String::String(const String& other) = default;
String::String(String&& other) noexcept = default;
String::~String() = default;
String& String::operator=(const String& other) = default;
String& String::operator=(String&& other) noexcept = default;

String::String(const char* text)
    : m_bytes(viewOf(text))
{
}

String::String(const char* text, int start, int count)
{
    if (text && count > 0)
        m_bytes.assign(text + std::max(start, 0), static_cast<std::size_t>(count));
}

String::String(std::string_view bytes)
    : m_bytes(bytes)
{
}

String& String::operator=(const char* text)
{
    // By length, since the text may lie inside this very string.
    m_bytes.assign(text ? text : "", viewOf(text).size());
    return *this;
}

int String::Length() const
{
    return lengthAsInt(m_bytes.size());
}

char String::ReadChar(int position) const
{
    if (position < 0 || static_cast<std::size_t>(position) >= m_bytes.size())
        return '\0';
    return m_bytes[static_cast<std::size_t>(position)];
}

int String::IndexOf(char sought, int start) const
{
    const auto found = m_bytes.find(sought, static_cast<std::size_t>(std::max(start, 0)));
    return found == std::string::npos ? -1 : lengthAsInt(found);
}

int String::LastIndexOf(char sought, int start) const
{
    if (start < 0)
        return -1;
    const auto found = m_bytes.rfind(sought, static_cast<std::size_t>(start));
    return found == std::string::npos ? -1 : lengthAsInt(found);
}

String String::Substring(int start) const
{
    return Substring(start, std::numeric_limits<int>::max());
}

String String::Substring(int start, int count) const
{
    const auto from = std::min(static_cast<std::size_t>(std::max(start, 0)), m_bytes.size());
    if (count <= 0)
        return {};
    return String(View().substr(from, static_cast<std::size_t>(count)));
}

String String::Concat(const String& tail) const
{
    String joined;
    joined.m_bytes.reserve(m_bytes.size() + tail.m_bytes.size());
    joined.m_bytes.append(m_bytes).append(tail.m_bytes);
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
    const auto written = std::to_chars(digits, digits + sizeof digits, value);
    return String(std::string_view(digits, static_cast<std::size_t>(written.ptr - digits)));
}

String String::ValueOf(double value, unsigned int decimals)
{
    String text;
    AppendFixed(text.m_bytes, value, lengthAsInt(decimals));
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
