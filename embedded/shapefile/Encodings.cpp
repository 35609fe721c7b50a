// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Encodings.h"

#include <algorithm>
#include <charconv>
#include <iconv.h>

namespace embedded {

namespace {

struct NamedEncoding {
    std::string_view key; // capital letters and digits of the name
    const char* encoding;
};
constexpr NamedEncoding Names[] = {
    { "UTF8", "UTF-8" },
    { "UTF16", "UTF-16LE" },
    { "UTF16LE", "UTF-16LE" },
    { "UTF16BE", "UTF-16BE" },
    { "UNICODE", "UTF-16LE" },
    // Files that say ASCII and hold accents were written by the system's own code page.
    { "ASCII", "CP1252" },
    { "USASCII", "CP1252" },
    { "ANSI", "CP1252" },
    { "SYSTEM", "CP1252" },
    { "KOI8R", "KOI8-R" },
    { "KOI8U", "KOI8-U" },
    { "BIG5", "BIG5" },
    { "GBK", "GBK" },
    { "GB2312", "GBK" },
    { "GB18030", "GB18030" },
    { "SJIS", "CP932" },
    { "SHIFTJIS", "CP932" },
    { "EUCJP", "EUC-JP" },
    { "EUCKR", "EUC-KR" },
    { "TIS620", "TIS-620" },
    { "MACINTOSH", "MACINTOSH" },
    { "MACROMAN", "MACINTOSH" },
    { "LATIN1", "ISO-8859-1" },
    { "LATIN2", "ISO-8859-2" },
    { "LATIN3", "ISO-8859-3" },
    { "LATIN4", "ISO-8859-4" },
    { "LATIN5", "ISO-8859-9" },
    { "LATIN6", "ISO-8859-10" },
    { "LATIN7", "ISO-8859-13" },
    { "LATIN8", "ISO-8859-14" },
    { "LATIN9", "ISO-8859-15" },
    { "LATIN10", "ISO-8859-16" },
};

struct LanguageByte {
    std::uint8_t byte;
    int codePage;
};
constexpr LanguageByte LanguageBytes[] = { { 0x01, 437 }, { 0x02, 850 }, { 0x03, 1252 },
    { 0x04, 10000 }, { 0x08, 865 }, { 0x09, 437 }, { 0x0A, 850 }, { 0x0B, 437 }, { 0x0D, 437 },
    { 0x0E, 850 }, { 0x0F, 437 }, { 0x10, 850 }, { 0x11, 437 }, { 0x12, 850 }, { 0x13, 932 },
    { 0x14, 850 }, { 0x15, 437 }, { 0x16, 850 }, { 0x17, 865 }, { 0x18, 437 }, { 0x19, 437 },
    { 0x1A, 850 }, { 0x1B, 437 }, { 0x1C, 863 }, { 0x1D, 850 }, { 0x1F, 852 }, { 0x22, 852 },
    { 0x23, 852 }, { 0x24, 860 }, { 0x25, 850 }, { 0x26, 866 }, { 0x37, 850 }, { 0x40, 852 },
    { 0x4D, 936 }, { 0x4E, 949 }, { 0x4F, 950 }, { 0x50, 874 }, { 0x57, 1252 }, { 0x58, 1252 },
    { 0x59, 1252 }, { 0x64, 852 }, { 0x65, 866 }, { 0x66, 865 }, { 0x67, 861 }, { 0x6A, 737 },
    { 0x6B, 857 }, { 0x6C, 863 }, { 0x78, 950 }, { 0x79, 949 }, { 0x7A, 936 }, { 0x7B, 932 },
    { 0x7C, 874 }, { 0x7D, 1255 }, { 0x7E, 1256 }, { 0x86, 737 }, { 0x87, 852 }, { 0x88, 857 },
    { 0x96, 10007 }, { 0x97, 10029 }, { 0xC8, 1250 }, { 0xC9, 1251 }, { 0xCA, 1254 },
    { 0xCB, 1253 }, { 0xCC, 1257 } };

bool isKnownToSystem(const std::string& encoding)
{
    iconv_t converter = ::iconv_open("UTF-8", encoding.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1))
        return false;
    ::iconv_close(converter);
    return true;
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string keyOf(std::string_view name)
{
    std::string key;
    for (const char c : name) {
        if (isDigit(c) || (c >= 'A' && c <= 'Z'))
            key += c;
        else if (c >= 'a' && c <= 'z')
            key += static_cast<char>(c - 'a' + 'A');
    }
    return key;
}

std::string isoLatin(int part)
{
    return part >= 1 && part <= 16 && part != 12 ? "ISO-8859-" + std::to_string(part) : "";
}

std::string encodingFromNumber(int number)
{
    if (number >= 88591 && number <= 88599)
        return isoLatin(number - 88590);
    if (number >= 885910 && number <= 885916)
        return isoLatin(number - 885900);
    if (number >= 28591 && number <= 28606)
        return isoLatin(number - 28590);
    switch (number) {
    case 65001:
        return "UTF-8";
    case 1200:
        return "UTF-16LE";
    case 1201:
        return "UTF-16BE";
    case 20127:
        return "CP1252";
    case 20866:
        return "KOI8-R";
    case 21866:
        return "KOI8-U";
    case 10000:
        return "MACINTOSH";
    case 10029:
        return "MAC-CENTRALEUROPE";
    case 54936:
        return "GB18030";
    default:
        break;
    }
    const std::string name = "CP" + std::to_string(number);
    return isKnownToSystem(name) ? name : "";
}

/// The number at the end of a key after one of the usual words; -1 when it is no such name.
int codePageOf(std::string_view key)
{
    for (const std::string_view prefix :
        { "ANSI", "WINDOWS", "WIN", "CODEPAGE", "CP", "OEM", "MSDOS", "DOS", "IBM", "ISO" })
        if (key.starts_with(prefix)) {
            key.remove_prefix(prefix.size());
            break;
        }
    int number = -1;
    const auto result = std::from_chars(key.data(), key.data() + key.size(), number);
    return result.ec == std::errc() && result.ptr == key.data() + key.size() ? number : -1;
}

std::string_view trimmed(std::string_view name)
{
    if (name.starts_with("\xEF\xBB\xBF"))
        name.remove_prefix(3);
    const auto isBlank = [](char c) { return c >= 0 && c <= ' '; };
    while (!name.empty() && isBlank(name.front()))
        name.remove_prefix(1);
    while (!name.empty() && isBlank(name.back()))
        name.remove_suffix(1);
    return name;
}

} // namespace

std::string encodingFromName(std::string_view name)
{
    constexpr std::size_t longestName = 40; // a page of HTML in a .cpg is no name
    name = trimmed(name);
    if (name.empty() || name.size() > longestName)
        return {};
    const bool isPlain = std::all_of(name.begin(), name.end(), [](char c) {
        return isDigit(c) || isLetter(c)
            || std::string_view(" _-.:/()").find(c) != std::string_view::npos;
    });
    if (!isPlain)
        return {};
    const std::string key = keyOf(name);
    for (const NamedEncoding& known : Names)
        if (known.key == key)
            return known.encoding;
    if (key.starts_with("LDID")) {
        const int byte = codePageOf(std::string_view(key).substr(4));
        return byte > 0 && byte < 256 ? encodingFromLanguageByte(static_cast<std::uint8_t>(byte))
                                      : "";
    }
    if (const int number = codePageOf(key); number > 0)
        return encodingFromNumber(number);
    const std::string asGiven(name);
    const bool isOneWord = asGiven.find_first_of(" /()") == std::string::npos;
    return isOneWord && isKnownToSystem(asGiven) ? asGiven : std::string();
}

std::string encodingFromLanguageByte(std::uint8_t languageByte)
{
    for (const LanguageByte& known : LanguageBytes)
        if (known.byte == languageByte)
            return encodingFromNumber(known.codePage);
    return {};
}

} // namespace embedded
