// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Cells.h"
#include "cli/Utf8.h"

#include "host/base/Dates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using cli::OutputColumn;

std::string json(const orv::CPolyValue& value)
{
    std::string text;
    cli::appendJson(text, value);
    return text;
}

std::string jsonText(std::string_view text)
{
    std::string out;
    cli::appendJsonText(out, text);
    return out;
}

orv::CPolyValue date(const char* text)
{
    std::int64_t moment = 0;
    EXPECT_TRUE(orv::ParseDateText(text, moment));
    orv::CPolyValue value;
    value.SetDateValue(moment);
    return value;
}

TEST(CellsTest, ValuesAreShownAsPeopleReadThem)
{
    const OutputColumn decimal { "L", gis::FieldFormat::Decimal, 2 };
    const OutputColumn other { "X", gis::FieldFormat::Text, 0 };

    EXPECT_EQ(cli::shownText(orv::CPolyValue(3.5), decimal), "3.50");
    EXPECT_EQ(cli::shownText(orv::CPolyValue(1234567.005), decimal), "1234567.00");
    EXPECT_EQ(cli::shownText(orv::CPolyValue(true), other), "S\xC3\xAC");
    EXPECT_EQ(cli::shownText(orv::CPolyValue(false), other), "No");
    EXPECT_EQ(cli::shownText(orv::CPolyValue(-7), other), "-7");
    EXPECT_EQ(cli::shownText(date("5/3/2016"), other), "05/03/2016");
    EXPECT_EQ(cli::shownText(orv::CPolyValue(), decimal), "");
}

TEST(CellsTest, JsonHasItsOwnTypes)
{
    EXPECT_EQ(json(orv::CPolyValue()), "null");
    EXPECT_EQ(json(orv::CPolyValue(true)), "true");
    EXPECT_EQ(json(orv::CPolyValue(-2147483647 - 1)), "-2147483648");
    EXPECT_EQ(json(orv::CPolyValue(0.1)), "0.1");
    EXPECT_EQ(json(orv::CPolyValue(std::nan(""))), "null");
    EXPECT_EQ(json(orv::CPolyValue(std::numeric_limits<double>::infinity())), "null");
    EXPECT_EQ(json(date("05/03/2016")), "\"2016-03-05\"");
    EXPECT_EQ(json(date("1/1/0033")), "\"0033-01-01\"");
    EXPECT_EQ(json(orv::CPolyValue("Via \"Roma\"")), "\"Via \\\"Roma\\\"\"");
}

TEST(CellsTest, JsonTextsAreValidWhateverTheBytes)
{
    EXPECT_EQ(jsonText("a\\b\n\t\x01"), "\"a\\\\b\\u000a\\u0009\\u0001\"");
    EXPECT_EQ(jsonText("citt\xC3\xA0 \xF0\x9F\x8F\xA0"), "\"citt\xC3\xA0 \xF0\x9F\x8F\xA0\"");
    EXPECT_EQ(jsonText("a\xE0z"), "\"a\xEF\xBF\xBDz\"");
    EXPECT_EQ(jsonText("\xC0\xAF"), "\"\xEF\xBF\xBD\xEF\xBF\xBD\"");
    EXPECT_EQ(jsonText("\xED\xA0\x80").substr(0, 4), "\"\xEF\xBF\xBD");
    EXPECT_EQ(jsonText(std::string_view("a\0b", 3)), "\"a\\u0000b\"");
}

TEST(CellsTest, WidthsAreThoseOfATerminal)
{
    EXPECT_EQ(cli::terminalWidth(""), 0);
    EXPECT_EQ(cli::terminalWidth("Strada"), 6);
    EXPECT_EQ(cli::terminalWidth("citt\xC3\xA0"), 5);
    EXPECT_EQ(cli::terminalWidth("citta\xCC\x80"), 5);
    EXPECT_EQ(cli::terminalWidth("\xE9\x81\x93\xE8\xB7\xAF"), 4);
    EXPECT_EQ(cli::terminalWidth("\xF0\x9F\x8F\xA0"), 2);
    EXPECT_EQ(cli::terminalWidth("a\xFF"), 2);
}

TEST(CellsTest, EveryCharacterIsPassedWhole)
{
    const std::string_view text = "a\xC3\xA0\xE2\x82\xAC\xF0\x9F\x8F\xA0\xE2\x82";
    const std::uint32_t expected[] = { 'a', 0xE0, 0x20AC, 0x1F3E0, 0xFFFD, 0xFFFD };
    std::size_t position = 0;
    for (const auto character : expected)
        EXPECT_EQ(cli::nextCharacter(text, position), character);
    EXPECT_EQ(position, text.size());
}

} // namespace
