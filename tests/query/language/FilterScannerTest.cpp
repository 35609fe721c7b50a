// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/FilterScanner.h"
#include "tests/query/support/CaseFile.h"

#include "host/base/Numbers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using query::FilterScanner;
using query::Token;

std::string tokenText(const Token& token)
{
    std::string text = std::to_string(token.code);
    switch (token.code) {
    case 279:
    case 280:
        return text + ":" + std::string(token.text);
    case 281:
        return text + ":" + std::to_string(token.integer);
    case 284:
        return text + ":" + orv::ShortestText(token.number);
    default:
        return text;
    }
}

std::string tokensOf(const std::string& text)
{
    FilterScanner scanner(text.data(), static_cast<int>(text.size()));
    std::string out;
    for (Token token = scanner.next(); token.code != 0; token = scanner.next())
        out += (out.empty() ? "" : " ") + tokenText(token);
    return out;
}

TEST(FilterScannerTest, TextsBecomeTheTokensOfTheTable)
{
    for (const auto& line : testing_query::readCases("language/tokens.txt", 2)) {
        EXPECT_EQ(tokensOf(line.columns[0]), line.columns[1]) << "tokens.txt:" << line.number;
    }
}

TEST(FilterScannerTest, EveryByteThatBeginsNoTokenIsItsOwnCode)
{
    const std::string known = " \t\n'[!#$%_(),=<>+-*/";
    for (int byte = 1; byte < 128; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        const bool isWord = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z')
            || (byte >= 'a' && byte <= 'z');
        if (!isWord && known.find(text) == std::string::npos) {
            EXPECT_EQ(tokensOf(text), std::to_string(byte));
        }
    }
}

TEST(FilterScannerTest, BytesFrom128AreLettersOfNames)
{
    for (int byte = 128; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(byte));
        EXPECT_EQ(tokensOf(text), "279:" + text);
    }
}

TEST(FilterScannerTest, TruthValuesAreGiven)
{
    FilterScanner scanner("true FALSE", 10);

    EXPECT_TRUE(scanner.next().truth);
    EXPECT_FALSE(scanner.next().truth);
}

TEST(FilterScannerTest, PositionsCountBytes)
{
    const std::string text = " Città >= 'x'";
    FilterScanner scanner(text.data(), static_cast<int>(text.size()));

    const Token name = scanner.next();
    const Token comparison = scanner.next();
    const Token quoted = scanner.next();
    const Token end = scanner.next();

    EXPECT_EQ(name.span.begin, 1);
    EXPECT_EQ(name.span.end, 7);
    EXPECT_EQ(comparison.span.begin, 8);
    EXPECT_EQ(quoted.span.begin, 11);
    EXPECT_EQ(quoted.span.end, 14);
    EXPECT_EQ(end.code, 0);
    EXPECT_EQ(end.span.begin, 14);
}

TEST(FilterScannerTest, LinesAreCountedOutsideQuotesAndBracketsOnly)
{
    const std::string text = "a\n=\n'x\ny' [b\nc]\n";
    FilterScanner scanner(text.data(), static_cast<int>(text.size()));
    while (scanner.next().code != 0) { }

    EXPECT_EQ(scanner.line(), 3);
}

TEST(FilterScannerTest, TokensLongerThanTheFirstBufferComeWhole)
{
    for (const std::size_t length : { 16381u, 16382u, 16383u, 16384u, 16385u, 100000u }) {
        const std::string name(length, 'n');
        const std::string text = name + " '" + name + "' 7";
        EXPECT_EQ(tokensOf(text), "279:" + name + " 280:" + name + " 281:7") << length;
    }
}

TEST(FilterScannerTest, ATokenOfManyMegabytesIsReadInLinearTime)
{
    // Scanned again for each portion read, this would take hours.
    const std::string text = "'" + std::string(std::size_t(32) << 20, 'x') + "'";
    FilterScanner scanner(text.data(), static_cast<int>(text.size()));

    EXPECT_EQ(scanner.next().text.size(), text.size() - 2);
}

TEST(FilterScannerTest, TwoScannersDoNotDisturbEachOther)
{
    FilterScanner one("a b", 3);
    FilterScanner other("1 2", 3);

    EXPECT_EQ(tokenText(one.next()), "279:a");
    EXPECT_EQ(tokenText(other.next()), "281:1");
    EXPECT_EQ(tokenText(one.next()), "279:b");
    EXPECT_EQ(tokenText(other.next()), "281:2");
}

TEST(FilterScannerTest, NoTextHasNoTokens)
{
    FilterScanner scanner(nullptr, 5);

    EXPECT_EQ(scanner.next().code, 0);
}

} // namespace
