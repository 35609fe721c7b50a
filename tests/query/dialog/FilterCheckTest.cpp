// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterCheck.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

struct Case {
    const char* name;
    const char* text;
    const char* message;
    const char* marked;
};

void PrintTo(const Case& c, std::ostream* out)
{
    *out << c.text;
}

class FilterCheckTest : public testing::TestWithParam<Case> { };

} // namespace

TEST_P(FilterCheckTest, SaysWhatIsMissingAndMarksThePlace)
{
    const QString text = QString::fromUtf8(GetParam().text);

    const auto check = query::checkFilter(text);

    EXPECT_FALSE(check.isFilter);
    EXPECT_EQ(check.message.toStdString(), GetParam().message);
    EXPECT_EQ(text.mid(check.start, check.length).toStdString(), GetParam().marked);
}

INSTANTIATE_TEST_SUITE_P(Slips, FilterCheckTest,
    testing::Values(Case { "ValueMissing", "A = 1 AND", "atteso un valore dopo AND", "AND" },
        Case { "ValueMissingAfterComparison", "A = ", "atteso un valore dopo =", "=" },
        Case {
            "ComparisonMissing", "Attivo", "atteso un confronto, LIKE o IS dopo Attivo", "Attivo" },
        Case { "ConnectiveMissing", "A = 1 B", "atteso AND o OR dopo 1", "B" },
        Case { "PatternMissing", "Nome LIKE 5", "atteso un testo tra apici dopo LIKE", "5" },
        Case { "DecimalComma", "Importo = 1,5", "nei decimali si scrive il punto, non la virgola",
            "," },
        Case { "CommaMissing", "A = Date(1 2", "attesa una virgola o una parentesi chiusa dopo 1",
            "2" },
        Case {
            "ParenthesisMissing", "(A = 1 B", "atteso AND, OR o una parentesi chiusa dopo 1", "B" },
        Case { "ParenthesisMissingAtTheEnd", "A = (1", "attesa una parentesi chiusa dopo 1", "1" },
        Case { "NullMissing", "A IS 5", "atteso NULL dopo IS", "5" },
        Case { "NullMissingAfterNot", "A IS NOT", "atteso NULL dopo NOT", "NOT" },
        Case { "BracketOpen", "[Data rilievo = 1", "il nome non ha la parentesi quadra di chiusura",
            "[" },
        Case { "WrongQuotes", "Nome = \"Roma\"", "i testi si scrivono tra apici: 'testo'", "\"" },
        Case { "QuoteOpen", "Nome = 'Via Roma", "il testo non ha l'apice di chiusura", "'" },
        Case { "TextOutOfPlace", "'it''s'", "atteso un confronto dopo 'it'", "'s'" },
        Case { "NameOutOfPlace", "N = 1 [abc]", "atteso AND o OR dopo 1", "[abc]" },
        Case { "AccentsBefore", "Città = 'Forlì' AND", "atteso un valore dopo AND", "AND" },
        Case { "Shortened", "(A = 1) AND",
            "atteso un valore dopo AND (Esegui userebbe solo: A = 1)", "AND" }),
    [](const testing::TestParamInfo<Case>& c) { return c.param.name; });

TEST(FilterCheckOfRightTextsTest, SaysNothing)
{
    for (const char* text : { "A = 1", "nome like 'A%'", "[Data rilievo] >= Date(1,1,2010)" }) {
        const auto check = query::checkFilter(QString::fromUtf8(text));
        EXPECT_TRUE(check.isFilter) << text;
        EXPECT_TRUE(check.message.isEmpty()) << text;
        EXPECT_EQ(check.length, 0) << text;
    }
}

TEST(FilterCheckOfRightTextsTest, AnEmptyTextIsNoFilterAndNoSlip)
{
    const auto check = query::checkFilter(QStringLiteral("  "));

    EXPECT_FALSE(check.isFilter);
    EXPECT_TRUE(check.message.isEmpty());
}

TEST(FilterCheckOfLongTextsTest, TooManyParenthesesAreCalledWhatTheyAre)
{
    const QString text = QString(12'000, QLatin1Char('(')) + QStringLiteral("A = 1")
        + QString(12'000, QLatin1Char(')'));

    const auto check = query::checkFilter(text);

    EXPECT_FALSE(check.isFilter);
    EXPECT_EQ(check.message, QStringLiteral("troppe parentesi una dentro l'altra"));
}

TEST(FilterCheckOfLongTextsTest, LongWordsAreCutAt60LettersAndMarkedWhole)
{
    const QString word(500, QChar(0xE0)); // two bytes each: letters count, not bytes
    const QString cut = word.left(60) + QStringLiteral("…");

    const auto alone = query::checkFilter(word);
    EXPECT_EQ(alone.message, QStringLiteral("atteso un confronto, LIKE o IS dopo ") + cut);
    EXPECT_EQ(alone.start, 0);
    EXPECT_EQ(alone.length, 500);

    const auto shortened
        = query::checkFilter(QStringLiteral("(") + word + QStringLiteral(" = 1) OR"));
    EXPECT_EQ(shortened.message,
        QStringLiteral("atteso un valore dopo OR (Esegui userebbe solo: ") + cut
            + QLatin1Char(')'));
}

TEST(FilterCheckOfLongTextsTest, AWordOf60LettersIsShownWhole)
{
    const QString word(60, QLatin1Char('w'));

    EXPECT_EQ(query::checkFilter(word).message,
        QStringLiteral("atteso un confronto, LIKE o IS dopo ") + word);
}
