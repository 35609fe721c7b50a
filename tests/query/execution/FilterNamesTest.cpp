// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/FilterNames.h"

#include "query/language/FilterParser.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// "Nome Date() Altro? Fun()?": calls with brackets, unknown names with a question mark.
std::string namesOf(const std::string& filter)
{
    const auto library
        = support::makeLibrary("table T (Nome text, Year integer); theme S: points on T");
    const auto outcome = query::parseFilter(filter, query::ErrorReport::Silent);
    if (!outcome.root)
        return "refused";
    std::string text;
    for (const auto& name : query::filterNames(*outcome.root, library.get(), library->GetTheme(0)))
        text += (text.empty() ? "" : " ") + name.name.Bytes() + (name.isFunction ? "()" : "")
            + (name.isKnown ? "" : "?");
    return text;
}

TEST(FilterNamesTest, NamesComeInOrderOfFirstUse)
{
    EXPECT_EQ(namesOf("Altro = 1 AND Nome = 'x' OR Altro = Terzo"), "Altro? Nome Terzo?");
}

TEST(FilterNamesTest, EveryNodeIsLookedAt)
{
    EXPECT_EQ(namesOf("NOT (a LIKE 'x') OR b IS NULL OR (c + d * -1) > f(g, h(i))"),
        "a? b? c? d? f()? g? h()? i?");
}

TEST(FilterNamesTest, CaseIsIgnoredAsInEvaluation)
{
    EXPECT_EQ(namesOf("nome = 'x' AND date(1,1,2000) < NOW()"), "nome date() NOW()");
}

TEST(FilterNamesTest, CallsKnowFunctionsOnly)
{
    EXPECT_EQ(namesOf("Year(Now) = Year AND Nome(1) = Month"), "Year() Now Year Nome()? Month");
}

TEST(FilterNamesTest, ConstantsHaveNoNames)
{
    EXPECT_EQ(namesOf("1 = 1"), "");
}

TEST(FilterNamesTest, LongChainsNeedNoDeepStack)
{
    std::string filter = "Nome = 'x'";
    for (int i = 0; i < 200000; ++i)
        filter += " OR Nome = 'x'";
    EXPECT_EQ(namesOf(filter), "Nome");
}

TEST(FilterNamesTest, WithoutLibraryOnlyFunctionsAreKnown)
{
    const auto outcome = query::parseFilter("Nome = Now()", query::ErrorReport::Silent);
    const auto names = query::filterNames(*outcome.root, nullptr, nullptr);

    ASSERT_EQ(names.size(), 2u);
    EXPECT_FALSE(names[0].isKnown);
    EXPECT_TRUE(names[1].isKnown);
}

} // namespace
