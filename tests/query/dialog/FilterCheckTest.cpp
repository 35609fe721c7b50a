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
        Case { "QuoteOpen", "Nome = 'Via Roma", "il testo non ha l'apice di chiusura", "'" },
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
