// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Encodings.h"

#include "embedded/shapefile/Siblings.h"
#include "tests/embedded/shapefile/RawShapefile.h"

#include <gtest/gtest.h>

#include <filesystem>

using embedded::encodingFromLanguageByte;
using embedded::encodingFromName;
using embedded::TextDecoder;
using embedded::TextEvidence;
using namespace shapetest;

namespace {

TEST(EncodingsTest, NamesOfCpgFilesAreUnderstood)
{
    const std::pair<const char*, const char*> names[] = { { "UTF-8", "UTF-8" }, { "utf8", "UTF-8" },
        { "\xEF\xBB\xBFUTF-8\r\n", "UTF-8" }, { "65001", "UTF-8" }, { "1252", "CP1252" },
        { "CP1252", "CP1252" }, { "ANSI 1252", "CP1252" }, { "ANSI 1250\r\n", "CP1250" },
        { "windows-1251", "CP1251" }, { "437", "CP437" }, { "OEM 850", "CP850" },
        { "IBM852", "CP852" }, { "ISO-8859-1", "ISO-8859-1" }, { "88591", "ISO-8859-1" },
        { "8859-1", "ISO-8859-1" }, { "ISO 8859-15", "ISO-8859-15" }, { "885915", "ISO-8859-15" },
        { "88595", "ISO-8859-5" }, { "Big-5", "BIG5" }, { "koi8r", "KOI8-R" },
        { "latin2", "ISO-8859-2" }, { "UTF-16", "UTF-16LE" }, { "936\r\n", "CP936" },
        { "LDID/87", "CP1252" }, { "EUC-TW", "EUC-TW" } };
    for (const auto& [name, encoding] : names)
        EXPECT_EQ(encodingFromName(name), encoding) << name;
}

TEST(EncodingsTest, WhatIsNoNameGivesNone)
{
    for (const char* name : { "", "  ", "KLINGON-8", "<!DOCTYPE html>", "1252//TRANSLIT", "99999",
             "CP", "LDID/0", "ISO-8859-12", "a/b", "UTF-8 UTF-8 UTF-8 UTF-8 UTF-8 UTF-8 UTF-8" })
        EXPECT_EQ(encodingFromName(name), "") << name;
}

TEST(EncodingsTest, LanguageBytesStandForCodePages)
{
    EXPECT_EQ(encodingFromLanguageByte(0x00), "");
    EXPECT_EQ(encodingFromLanguageByte(0x01), "CP437");
    EXPECT_EQ(encodingFromLanguageByte(0x02), "CP850");
    EXPECT_EQ(encodingFromLanguageByte(0x03), "CP1252");
    EXPECT_EQ(encodingFromLanguageByte(0x57), "CP1252");
    EXPECT_EQ(encodingFromLanguageByte(0x1B), "CP437");
    EXPECT_EQ(encodingFromLanguageByte(0xC8), "CP1250");
    EXPECT_EQ(encodingFromLanguageByte(0xFF), "");
}

TEST(EncodingsTest, EveryLanguageBytesEncodingExists)
{
    for (int byte = 1; byte < 256; ++byte) {
        const std::string encoding = encodingFromLanguageByte(static_cast<std::uint8_t>(byte));
        if (encoding.empty())
            continue;
        bool isValid = false;
        TextDecoder decoder(encoding);
        EXPECT_EQ(decoder.cell("abc ", isValid), "abc") << encoding;
        EXPECT_TRUE(isValid) << encoding;
    }
}

std::string decoded(const std::string& encoding, std::string_view bytes, bool wantValid = true)
{
    TextDecoder decoder(encoding);
    bool isValid = false;
    const std::string text(decoder.cell(bytes, isValid));
    EXPECT_EQ(isValid, wantValid) << text;
    return text;
}

TEST(TextDecoderTest, TextsOfOneByteACharacter)
{
    EXPECT_EQ(decoded("CP1252", "Citt\xE0 \x80 \x93x\x94   "), "Città € “x”");
    EXPECT_EQ(decoded("CP850", "Citt\x85"), "Città");
    EXPECT_EQ(decoded("ISO-8859-15", "\xA4"), "€");
    EXPECT_EQ(decoded("KOI8-R", "\xD2"), "р");
    EXPECT_EQ(decoded("CP1252", "a\x81", false), "a\uFFFD");
}

TEST(TextDecoderTest, TextsOfSeveralBytesACharacter)
{
    EXPECT_EQ(decoded("BIG5", "\xA4\xA4\xA4\xE5"), "中文");
    EXPECT_EQ(decoded("CP936", "\xD6\xD0"), "中");
    EXPECT_EQ(decoded("CP932", "\x93\xFA"), "日");
    EXPECT_EQ(decoded("BIG5", "a\xA4", false), "a\uFFFD");
    EXPECT_EQ(decoded("UTF-16LE",
                  std::string_view("\xFF\xFE"
                                   "c\0i\0 \0 \0",
                      10)),
        "ci");
}

TEST(TextDecoderTest, Utf8KeepsWhatIsValid)
{
    EXPECT_EQ(decoded("UTF-8", "  Città   "), "  Città");
    EXPECT_EQ(decoded("UTF-8", "Citt\xE0", false), "Citt\uFFFD");
    EXPECT_EQ(decoded("UTF-8",
                  "\x80"
                  "abc",
                  false),
        "\uFFFD"
        "abc");
    EXPECT_EQ(decoded("UTF-8", "Perch\xC3\xA9 no\xC3", false), "Perché no\uFFFD");
    EXPECT_EQ(decoded("UTF-8", "\xE2\x82", false), "\uFFFD");
    EXPECT_EQ(decoded("UTF-8", "\xC0\xAF\xED\xA0\x80", false), "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(TextDecoderTest, ANulEndsAText)
{
    EXPECT_EQ(decoded("UTF-8", std::string_view("ab\0\0\0", 5)), "ab");
    EXPECT_EQ(decoded("UTF-8", std::string_view("ab \0  ", 6)), "ab");
    EXPECT_EQ(decoded("UTF-8", std::string_view("ab\0cd", 5), false), "ab");
    EXPECT_EQ(decoded("UTF-8", std::string_view("\0\0", 2)), "");
}

TEST(TextEvidenceTest, OnlyValidSequencesSpeakForUtf8)
{
    const auto isUtf8 = [](std::initializer_list<std::pair<const char*, bool>> cells) {
        TextEvidence evidence;
        for (const auto& [text, fills] : cells)
            evidence.add(text, fills);
        return evidence.isUtf8();
    };
    EXPECT_FALSE(isUtf8({ { "Citta", false } }));
    EXPECT_TRUE(isUtf8({ { "Città", false } }));
    EXPECT_FALSE(isUtf8({ { "Città", false }, { "Citt\xE0", false } }));
    // A sequence cut by the width of its cell is no proof against UTF-8, nor for it.
    EXPECT_TRUE(isUtf8({ { "Città", false }, { "Forl\xC3", true } }));
    EXPECT_FALSE(isUtf8({ { "Forl\xC3", true } }));
    EXPECT_FALSE(isUtf8({ { "Città", false }, { "Forl\xC3", false } }));
}

TEST(TextEvidenceTest, CutsKeepCharactersWhole)
{
    EXPECT_EQ(embedded::cutUtf8("Città", 6), "Città");
    EXPECT_EQ(embedded::cutUtf8("Città", 5), "Citt");
    EXPECT_EQ(embedded::cutUtf8("a€", 3), "a");
    EXPECT_EQ(embedded::cutUtf8("", 3), "");
    EXPECT_EQ(embedded::cutUtf8("\x80\x80\x80\x80\x80\x80", 5).size(), 5u);
}

TEST(SiblingsTest, SiblingsAreFoundWhateverTheirCase)
{
    const TemporaryFolder folder;
    for (const char* name :
        { "Strade.shp", "strade.DBF", "STRADE.Shx", "Strade.cpg", "Strade.CPG", "altro.prj" })
        writeFile(folder / name, "x");

    const auto paths = embedded::shapefilePaths(folder / "Strade.shp");

    EXPECT_EQ(paths.dbf, folder / "strade.DBF");
    EXPECT_EQ(paths.shx, folder / "STRADE.Shx");
    EXPECT_EQ(paths.cpg, folder / "Strade.cpg");
    EXPECT_EQ(paths.prj, "");
}

TEST(SiblingsTest, CapitalsAskForCapitalsFirst)
{
    const TemporaryFolder folder;
    for (const char* name : { "A.SHP", "A.DBF", "A.dbf" })
        writeFile(folder / name, "x");

    EXPECT_EQ(embedded::shapefilePaths(folder / "A.SHP").dbf, folder / "A.DBF");
    EXPECT_EQ(embedded::shapefilePaths(folder / "A.shp").dbf, folder / "A.dbf");
}

TEST(SiblingsTest, StemsLoseFolderAndLastExtension)
{
    EXPECT_EQ(embedded::fileStem("/a.b/c.d.shp"), "c.d");
    EXPECT_EQ(embedded::fileStem("strade"), "strade");
    EXPECT_EQ(embedded::fileStem("/a.b/strade"), "strade");
    EXPECT_EQ(embedded::fileStem("/a/.shp"), ".shp");
    EXPECT_EQ(embedded::existingPath("/a/b/none.shp"), "");
}

} // namespace
