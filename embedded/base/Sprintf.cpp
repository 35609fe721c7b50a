// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstring>

// The C library's own function writes the decimal sign of the process's locale.

namespace {

struct Conversion {
    bool isLeft = false;
    bool hasPlus = false;
    bool hasBlank = false;
    bool hasZeros = false;
    bool isAlternate = false;
    int width = 0;
    int precision = -1; // none given
    int longs = 0; // l = 1; ll, j, z and t = 2
    char kind = 0;
};

bool setFlag(char byte, Conversion& conversion)
{
    switch (byte) {
    case '-':
        return conversion.isLeft = true;
    case '+':
        return conversion.hasPlus = true;
    case ' ':
        return conversion.hasBlank = true;
    case '0':
        return conversion.hasZeros = true;
    case '#':
        return conversion.isAlternate = true;
    default:
        return false;
    }
}

class Writer {
public:
    explicit Writer(std::va_list& arguments)
        : m_arguments(arguments)
    {
    }
    /// Errors: false for a conversion that is not known.
    bool write(const char* format)
    {
        while (*format != '\0') {
            if (*format != '%') {
                m_text += *format++;
                continue;
            }
            const Conversion conversion = read(++format);
            if (!convert(conversion))
                return false;
        }
        return true;
    }
    [[nodiscard]] const std::string& text() const { return m_text; }

private:
    int readCount(const char*& format)
    {
        if (*format == '*') {
            ++format;
            return va_arg(m_arguments, int);
        }
        const std::size_t digits = std::strspn(format, "0123456789");
        const int count = orv_atoi(std::string_view(format, digits));
        format += digits;
        return count;
    }

    Conversion read(const char*& format)
    {
        Conversion conversion;
        while (setFlag(*format, conversion))
            ++format;
        conversion.width = readCount(format);
        if (conversion.width < 0) {
            conversion.isLeft = true;
            conversion.width = conversion.width == INT32_MIN ? 0 : -conversion.width;
        }
        if (*format == '.')
            conversion.precision = readCount(++format);
        for (; *format != '\0' && std::strchr("hljzt", *format); ++format)
            conversion.longs += *format == 'l' ? 1 : *format == 'h' ? 0 : 2;
        conversion.kind = *format;
        if (*format != '\0')
            ++format;
        return conversion;
    }

    bool convert(const Conversion& conversion)
    {
        switch (conversion.kind) {
        case '%':
            m_text += '%';
            return true;
        case 'd':
        case 'i':
            writeSigned(conversion);
            return true;
        case 'u':
        case 'x':
        case 'X':
            writeUnsigned(conversion);
            return true;
        case 'c':
            pad({}, std::string(1, static_cast<char>(va_arg(m_arguments, int))), conversion);
            return true;
        case 's':
            writeText(conversion);
            return true;
        case 'f':
        case 'F':
        case 'e':
        case 'E':
        case 'g':
        case 'G':
            writeDouble(conversion);
            return true;
        default:
            return false;
        }
    }

    void writeSigned(const Conversion& conversion)
    {
        const std::int64_t value = conversion.longs == 0 ? va_arg(m_arguments, int)
            : conversion.longs == 1                      ? va_arg(m_arguments, long)
                                                         : va_arg(m_arguments, long long);
        const auto magnitude = static_cast<std::uint64_t>(value);
        writeInteger(
            signOf(value < 0, conversion), value < 0 ? 0 - magnitude : magnitude, 10, conversion);
    }

    void writeUnsigned(const Conversion& conversion)
    {
        const std::uint64_t value = conversion.longs == 0 ? va_arg(m_arguments, unsigned)
            : conversion.longs == 1                       ? va_arg(m_arguments, unsigned long)
                                                          : va_arg(m_arguments, unsigned long long);
        const bool isHexadecimal = conversion.kind != 'u';
        std::string prefix;
        if (isHexadecimal && conversion.isAlternate && value != 0)
            prefix = std::string("0") + conversion.kind;
        writeInteger(prefix, value, isHexadecimal ? 16 : 10, conversion);
    }

    void writeInteger(
        const std::string& sign, std::uint64_t magnitude, int base, const Conversion& conversion)
    {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, magnitude, base).ptr;
        std::string text(digits, end);
        if (conversion.kind == 'X')
            toUpper(text);
        if (conversion.precision == 0 && magnitude == 0)
            text.clear();
        const auto least = static_cast<std::size_t>(std::max(conversion.precision, 0));
        if (text.size() < least)
            text.insert(0, least - text.size(), '0');
        Conversion padding = conversion;
        padding.hasZeros = conversion.hasZeros && conversion.precision < 0;
        pad(sign, text, padding);
    }

    void writeText(const Conversion& conversion)
    {
        const char* text = va_arg(m_arguments, const char*);
        if (!text)
            text = "(null)";
        const std::size_t length = conversion.precision < 0
            ? std::strlen(text)
            : strnlen(text, static_cast<std::size_t>(conversion.precision));
        Conversion padding = conversion;
        padding.hasZeros = false;
        pad({}, std::string(text, length), padding);
    }

    void writeDouble(const Conversion& conversion)
    {
        const double value = va_arg(m_arguments, double);
        const bool isUpper = conversion.kind >= 'A' && conversion.kind <= 'Z';
        const char kind
            = isUpper ? static_cast<char>(conversion.kind + ('a' - 'A')) : conversion.kind;
        const int precision = std::min(conversion.precision < 0 ? 6 : conversion.precision, 1000);
        const auto format = kind == 'f' ? std::chars_format::fixed
            : kind == 'e'               ? std::chars_format::scientific
                                        : std::chars_format::general;
        char digits[1400]; // 309 digits, sign, point and 1000 decimals
        const auto end
            = std::to_chars(digits, digits + sizeof digits, std::fabs(value), format, precision)
                  .ptr;
        std::string text(digits, end);
        if (conversion.isAlternate && kind != 'g' && precision == 0)
            text.insert(std::min(text.find('e'), text.size()), 1, '.');
        if (isUpper)
            toUpper(text);
        Conversion padding = conversion;
        padding.hasZeros = conversion.hasZeros && std::isfinite(value);
        pad(signOf(std::signbit(value), conversion), text, padding);
    }

    static std::string signOf(bool isNegative, const Conversion& conversion)
    {
        if (isNegative)
            return "-";
        return conversion.hasPlus ? "+" : conversion.hasBlank ? " " : "";
    }

    static void toUpper(std::string& text)
    {
        for (char& byte : text)
            if (byte >= 'a' && byte <= 'z')
                byte = static_cast<char>(byte - ('a' - 'A'));
    }

    void pad(const std::string& sign, const std::string& text, const Conversion& conversion)
    {
        const std::size_t length = sign.size() + text.size();
        const auto width = static_cast<std::size_t>(conversion.width);
        const std::size_t missing = width > length ? width - length : 0;
        const bool isZeroed = conversion.hasZeros && !conversion.isLeft;
        if (!conversion.isLeft && !isZeroed)
            m_text.append(missing, ' ');
        m_text += sign;
        if (isZeroed)
            m_text.append(missing, '0');
        m_text += text;
        if (conversion.isLeft)
            m_text.append(missing, ' ');
    }

    std::va_list& m_arguments;
    std::string m_text;
};

} // namespace

int orv_sprintf(char* buffer, std::size_t sizeBytes, const char* format, ...)
{
    if (buffer && sizeBytes > 0)
        buffer[0] = '\0';
    if (!format)
        return -1;
    std::va_list arguments;
    va_start(arguments, format);
    Writer writer(arguments);
    const bool isWritten = writer.write(format);
    va_end(arguments);
    if (!isWritten)
        return -1;
    const std::string& text = writer.text();
    if (buffer && sizeBytes > 0) {
        const std::size_t kept = std::min(text.size(), sizeBytes - 1);
        std::memcpy(buffer, text.data(), kept);
        buffer[kept] = '\0';
    }
    return static_cast<int>(text.size());
}
