// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "exchange/merge/RuleMergeDecider.h"

#include "exchange/merge/MergeTables.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

namespace {

using exchange::ConflictRule;
using exchange::CRuleMergeDecider;
using support::CRecordingLibrary;
using support::makeLibrary;

constexpr const char* Roads
    = "table Strade (codice text, larghezza decimal 2); rows Strade: ('S1', 3.5)";
constexpr const char* OtherRoads = "table Strade (larghezza text, codice text, nota text);"
                                   "rows Strade: ('4.25', 'S2', 'stretta'), ('larga', 'S3', -)";

struct Merging {
    Merging(ConflictRule rule, const char* existing, const char* incoming)
        : library(existing)
        , scratch(makeLibrary(incoming))
        , decider(rule)
    {
        result = exchange::mergeTables(
            library, library.GetTable(0), scratch.get(), scratch->GetTable(0), mapping, &decider);
    }
    CRecordingLibrary library;
    std::unique_ptr<gis::CLibGis> scratch;
    CRuleMergeDecider decider;
    std::vector<int> mapping;
    gis::MergeResult result {};
};

TEST(RuleMergeDeciderTest, FailLeavesAClashOfTablesUndecidedAndNamesIt)
{
    Merging merging(ConflictRule::Fail, Roads, OtherRoads);

    EXPECT_EQ(merging.result, gis::MergeResult::Undecided);
    EXPECT_EQ(support::printLibrary(merging.library), support::printLibrary(*makeLibrary(Roads)));
    ASSERT_TRUE(merging.decider.undecided());
    EXPECT_FALSE(merging.decider.undecided()->isTheme);
    EXPECT_EQ(merging.decider.undecided()->name, orv::String("Strade"));
}

TEST(RuleMergeDeciderTest, FailIsNotAskedAboutTablesThatAgree)
{
    Merging merging(ConflictRule::Fail, Roads, Roads);

    EXPECT_EQ(merging.result, gis::MergeResult::Merged);
    EXPECT_FALSE(merging.decider.undecided());
    EXPECT_EQ(merging.library.GetNumRows(merging.library.GetTable(0)), 2);
}

TEST(RuleMergeDeciderTest, RenameTakesTheFirstFreeNumber)
{
    const std::string existing
        = std::string(Roads) + "; table \"Strade (2)\" (); table \"STRADE (3)\" ()";
    Merging merging(ConflictRule::Rename, existing.c_str(), OtherRoads);

    EXPECT_EQ(merging.result, gis::MergeResult::Renamed);
    EXPECT_EQ(
        merging.scratch->GetTableName(merging.scratch->GetTable(0)), orv::String("Strade (4)"));
    EXPECT_FALSE(merging.decider.undecided());
}

TEST(RuleMergeDeciderTest, MergeAddsNewFieldsAndConvertsOthersToTheExistingFormat)
{
    Merging merging(ConflictRule::Merge, Roads, OtherRoads);

    EXPECT_EQ(merging.result, gis::MergeResult::Merged);
    EXPECT_EQ(merging.mapping, (std::vector<int> { 1, 0, 2 }));
    EXPECT_EQ(support::printLibrary(merging.library),
        "table Strade (codice text, larghezza decimal 2, nota text);\n"
        "rows Strade:\n"
        "('S1', 3.5, -)\n"
        "('S2', 4.25, 'stretta')\n"
        "('S3', -, -)\n"
        ";\n");
}

TEST(RuleMergeDeciderTest, ThemesAreRenamedUnlessTheRuleIsFail)
{
    for (const auto rule : { ConflictRule::Rename, ConflictRule::Merge }) {
        CRecordingLibrary library("table Strade (a text); theme Vie: lines on Strade;"
                                  "theme \"vie (2)\": lines on Strade",
            nullptr, 8);
        CRuleMergeDecider decider(rule);

        gis::CTheme* theme = decider.decideTheme(library,
            { "Vie", library.FindTable("Strade"), gis::EntType::Points, gis::EntTypeCoords::XYZ });

        ASSERT_NE(theme, nullptr);
        EXPECT_EQ(library.changes(),
            std::vector<std::string> { "CreateTheme(Strade, 'Vie (3)', points, 3d, 8)" });
        EXPECT_FALSE(decider.undecided());
    }
}

TEST(RuleMergeDeciderTest, FailMakesNoThemeAndNamesTheClash)
{
    CRecordingLibrary library("table Strade (a text); theme Vie: lines on Strade");
    CRuleMergeDecider decider(ConflictRule::Fail);

    gis::CTheme* theme = decider.decideTheme(library,
        { "Vie", library.FindTable("Strade"), gis::EntType::Points, gis::EntTypeCoords::XY });

    EXPECT_EQ(theme, nullptr);
    EXPECT_EQ(library.changes(), std::vector<std::string> {});
    ASSERT_TRUE(decider.undecided());
    EXPECT_TRUE(decider.undecided()->isTheme);
    EXPECT_EQ(decider.undecided()->name, orv::String("Vie"));
}

} // namespace
