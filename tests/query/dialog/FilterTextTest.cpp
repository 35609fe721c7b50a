// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterText.h"

#include <gtest/gtest.h>

using query::filterLiteral;
using query::insertIntoFilter;

namespace {

/// The text with "|" at its caret after an insertion; "[" and "]" enclose what is selected before.
std::string inserted(QString text, const char* insertion)
{
    const auto start = text.indexOf(QLatin1Char('['));
    text.remove(start, 1);
    const auto end = text.indexOf(QLatin1Char(']'));
    text.remove(end, 1);
    auto result = insertIntoFilter(
        text, static_cast<int>(start), static_cast<int>(end), QString::fromUtf8(insertion));
    return result.text.insert(result.caret, QLatin1Char('|')).toStdString();
}

std::string literal(const char* value, gis::FieldFormat format)
{
    return filterLiteral(QString::fromUtf8(value), format).toStdString();
}

} // namespace

TEST(InsertIntoFilterTest, AnEmptySelectionTakesTheTextAtTheCaret)
{
    EXPECT_EQ(inserted(QStringLiteral("abc[]def"), " AND "), "abc AND |def");
    EXPECT_EQ(inserted(QStringLiteral("[]"), "Nome"), "Nome|");
    const auto result = insertIntoFilter(QStringLiteral("abc"), 3, 3, QStringLiteral(" AND "));
    EXPECT_EQ(result.caret, 8);
}

TEST(InsertIntoFilterTest, EveryOccurrenceOfTheSelectedTextIsReplaced)
{
    EXPECT_EQ(
        inserted(QStringLiteral("[abc] = 'x' OR abc = 'y'"), "'z'"), "'z' = |'x' OR 'z' = 'y'");
    EXPECT_EQ(inserted(QStringLiteral("a = 1 AND [a] = 2"), "b"), "b = 1 AND b |= 2");
}

TEST(InsertIntoFilterTest, OccurrencesDoNotOverlapAndWhatWasInsertedIsNotSearched)
{
    EXPECT_EQ(inserted(QStringLiteral("[aa]aaa"), "aaaa"), "aaaaaa|aaa");
    EXPECT_EQ(inserted(QStringLiteral("[a] A"), "x"), "x |A");
}

TEST(InsertIntoFilterTest, TheCaretIsMeasuredFromTheOldEndOfTheSelectionWithinTheText)
{
    EXPECT_EQ(inserted(QStringLiteral("xx [lungo testo]"), "k"), "xx k|");
    EXPECT_EQ(inserted(QStringLiteral("à[è]ì"), "ò"), "àòì|");
}

TEST(FilterLiteralTest, TextsAndListsAreQuotedAndInnerQuotesLeftAlone)
{
    EXPECT_EQ(literal("Via Roma", gis::FieldFormat::Text), "'Via Roma'");
    EXPECT_EQ(literal("A", gis::FieldFormat::List), "'A'");
    EXPECT_EQ(literal("l'Aquila", gis::FieldFormat::Text), "'l'Aquila'");
}

TEST(FilterLiteralTest, OnlyTheYesOfTheListIsTrue)
{
    EXPECT_EQ(literal("S\xC3\xAC", gis::FieldFormat::Boolean), "true");
    for (const char* other : { "No", "", "true", "Si", "Yes", "Si\xCC\x80" })
        EXPECT_EQ(literal(other, gis::FieldFormat::Boolean), "false") << other;
}

TEST(FilterLiteralTest, NumbersStayAsTheyStand)
{
    EXPECT_EQ(literal("12", gis::FieldFormat::Integer), "12");
    EXPECT_EQ(literal("1.50", gis::FieldFormat::Decimal), "1.50");
}

TEST(FilterLiteralTest, ADateBecomesACallWithItsPartsAsTheyStand)
{
    EXPECT_EQ(literal("01/02/2015", gis::FieldFormat::Date), "Date(01,02,2015)");
    EXPECT_EQ(literal("1/2/2015/7", gis::FieldFormat::Date), "Date(1,2,2015/7)");
    for (const char* other : { "", "01/02", "/02/2015", "01//2015", "01/02/" })
        EXPECT_EQ(literal(other, gis::FieldFormat::Date), other);
}
