// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterHistory.h"

#include <gtest/gtest.h>

using query::CFilterHistory;

TEST(FilterHistoryTest, KeepsTheNewestFirstAndNoneTwice)
{
    CFilterHistory history;
    const orv::String theme("Un tema che altri non usano");

    history.remember(theme, QStringLiteral("A = 1"));
    history.remember(theme, QStringLiteral("B = 2"));
    history.remember(theme, QStringLiteral("A = 1"));

    EXPECT_EQ(history.filtersOf(theme),
        (QStringList { QStringLiteral("A = 1"), QStringLiteral("B = 2") }));
}

TEST(FilterHistoryTest, KeepsEveryCharacterOfNamesAndFilters)
{
    CFilterHistory history;
    const orv::String theme("Città [1] = ;x.y%");
    const QString filter
        = QStringLiteral(" Nome LIKE 'Niccolò%,;=[x]\"' AND [Data rilievo] >= Date(1,2,2015) ");

    history.remember(theme, filter);

    EXPECT_EQ(CFilterHistory().filtersOf(theme), QStringList { filter });
    EXPECT_TRUE(history.filtersOf(orv::String("Città")).isEmpty());
}

TEST(FilterHistoryTest, ForgetsTheOldestBeyondTheMost)
{
    CFilterHistory history;
    const orv::String theme("Alberi");

    for (int i = 0; i < CFilterHistory::MostFilters + 3; ++i)
        history.remember(theme, QStringLiteral("A = %1").arg(i));

    EXPECT_EQ(history.filtersOf(theme).size(), CFilterHistory::MostFilters);
    EXPECT_EQ(history.filtersOf(theme).constFirst(), QStringLiteral("A = 12"));
}

TEST(FilterHistoryTest, KeepsNoEmptyFilterAndNothingWithoutATheme)
{
    CFilterHistory history;

    history.remember(orv::String("Vuoto"), QStringLiteral("  "));
    history.remember(orv::String(), QStringLiteral("A = 1"));

    EXPECT_TRUE(history.filtersOf(orv::String("Vuoto")).isEmpty());
    EXPECT_TRUE(history.filtersOf(orv::String()).isEmpty());
}
