// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tables/structure/FieldNames.h"

#include <gtest/gtest.h>

namespace {

TEST(FieldNamesTest, FormatsAreOfferedByTheNumbersOfTheirTexts)
{
    EXPECT_EQ(tables::formatChoices(),
        (QStringList { QStringLiteral("Testo"), QStringLiteral("Numerico"),
            QStringLiteral("Decimale"), QStringLiteral("Lista"), QStringLiteral("Si/No"),
            QStringLiteral("Data") }));
}

TEST(FieldNamesTest, SourcesAreOfferedByTheirValues)
{
    const QStringList names = tables::typeChoices();
    ASSERT_EQ(names.size(), 15);
    EXPECT_EQ(names.first(), QStringLiteral("Da Utente"));
    EXPECT_EQ(names.last(), QStringLiteral("Foto 5"));
    for (int value = 0; value < 15; ++value) {
        EXPECT_EQ(tables::typeName(static_cast<gis::FieldType>(value)), names[value]);
        EXPECT_EQ(static_cast<int>(tables::typeOf(names[value])), value);
    }
}

TEST(FieldNamesTest, NamesAndFormatsGoBothWaysAndOthersAreTheFirst)
{
    for (int value = 0; value < 6; ++value) {
        const auto format = static_cast<gis::FieldFormat>(value);
        EXPECT_EQ(tables::formatOf(tables::formatName(format)), format);
    }
    EXPECT_EQ(tables::formatName(static_cast<gis::FieldFormat>(6)), QString());
    EXPECT_EQ(tables::typeName(static_cast<gis::FieldType>(15)), QString());
    EXPECT_EQ(tables::formatOf(QStringLiteral("testo")), gis::FieldFormat::Text);
    EXPECT_EQ(tables::formatOf(QStringLiteral("Sì/No")), gis::FieldFormat::Text);
    EXPECT_EQ(tables::typeOf(QStringLiteral("area")), gis::FieldType::FromUser);
}

} // namespace
