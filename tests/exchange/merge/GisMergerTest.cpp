// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tematica/GisMerger.h"

#include "exchange/merge/MergeDecider.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/RecordingLibrary.h"

#include <gtest/gtest.h>

namespace {

using support::CRecordingLibrary;
using Calls = std::vector<std::string>;

constexpr const char* Roads
    = "table Strade (codice text, larghezza decimal 2);"
      "rows Strade: ('S1', 3.5), ('S2', -); theme Vie: lines on Strade at 4";

/// Decides as the test says and remembers what it was asked.
class CScriptedDecider final : public exchange::IMergeDecider {
public:
    void decideTable(gis::CLibGis&, gis::CMergeTable& merge, gis::ResultCompare compare,
        std::vector<int>& mapping) override
    {
        compares.push_back(compare);
        if (renameTo.Length() > 0)
            merge.RenameTable(renameTo);
        else if (merges)
            merge.Merge(mapping);
    }
    gis::CTheme* decideTheme(gis::CLibGis&, const exchange::ThemeConflict& asked) override
    {
        conflicts.push_back(asked);
        return theme;
    }

    orv::String renameTo;
    bool merges = false;
    gis::CTheme* theme = nullptr;
    std::vector<gis::ResultCompare> compares;
    std::vector<exchange::ThemeConflict> conflicts;
};

/// What the importer does with one table: asks where to load it, fills it, tells that it is full.
struct TableLoad {
    TableLoad(gis::IGisMerger& merger, const char* name, const char* content)
    {
        merger.OnBeforeLoadTable(name, library, existing, loaded);
        support::fillTable(*loaded, support::planFrom(content).tables.at(0));
    }
    void finish(gis::IGisMerger& merger)
    {
        merger.OnAfterLoadTable(library, existing, loaded, mapping);
    }

    gis::CLibGis* library = nullptr;
    gis::CDBTable* existing = nullptr;
    gis::CDBTable* loaded = nullptr;
    std::vector<int> mapping;
};

struct ResultTable {
    ResultTable(gis::IGisMerger& merger, int index) { merger.GetTable(index, table, rowOffset); }
    gis::CDBTable* table = nullptr;
    int rowOffset = -1;
};

TEST(GisMergerTest, ATableOfAFreeNameGoesStraightIntoTheLibrary)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);

    TableLoad load(merger, "Edifici", "table Edifici (piani integer); rows Edifici: (2)");
    load.finish(merger);
    const ResultTable result(merger, 0);

    EXPECT_EQ(load.library, &library);
    EXPECT_EQ(load.existing, nullptr);
    EXPECT_EQ(result.table, library.FindTable("Edifici"));
    EXPECT_EQ(result.rowOffset, 0);
    EXPECT_TRUE(load.mapping.empty());
}

TEST(GisMergerTest, ATableOfAUsedNameIsLoadedAside)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    library.clearCalls();

    const TableLoad load(merger, "strade", "table strade (codice text)");

    EXPECT_NE(load.library, &library);
    EXPECT_EQ(load.existing, library.FindTable("Strade"));
    EXPECT_EQ(load.library->GetTableName(load.loaded), orv::String("strade"));
    EXPECT_EQ(library.changes(), Calls {});
}

TEST(GisMergerTest, AnEqualTableIsAppendedWithoutAsking)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    const auto decider = std::make_shared<CScriptedDecider>();
    exchange::setMergeDecider(merger, decider);

    TableLoad load(merger, "Strade",
        "table Strade (codice text, larghezza decimal 2); rows Strade: ('S3', 7)");
    load.finish(merger);
    const ResultTable result(merger, 0);

    EXPECT_TRUE(decider->compares.empty());
    EXPECT_EQ(result.table, library.FindTable("Strade"));
    EXPECT_EQ(result.rowOffset, 2);
    EXPECT_EQ(load.mapping, (std::vector<int> { 0, 1 }));
    EXPECT_EQ(support::printRows(*result.table), "('S1', 3.5)\n('S2', -)\n('S3', 7)\n");
}

TEST(GisMergerTest, ADifferentTableIsTheDecidersToRename)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    const auto decider = std::make_shared<CScriptedDecider>();
    decider->renameTo = "Strade nuove";
    exchange::setMergeDecider(merger, decider);

    TableLoad load(merger, "Strade", "table Strade (codice integer); rows Strade: (9)");
    load.finish(merger);
    const ResultTable result(merger, 0);

    EXPECT_EQ(decider->compares, std::vector { gis::ResultCompare::Conflicts });
    EXPECT_EQ(result.table, library.FindTable("Strade nuove"));
    EXPECT_EQ(result.rowOffset, 0);
    EXPECT_EQ(support::printRows(*result.table), "(9)\n");
    EXPECT_EQ(library.GetNumRows(library.FindTable("Strade")), 2);
}

TEST(GisMergerTest, ADifferentTableIsTheDecidersToMerge)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    const auto decider = std::make_shared<CScriptedDecider>();
    decider->merges = true;
    exchange::setMergeDecider(merger, decider);

    TableLoad load(merger, "Strade",
        "table Strade (larghezza decimal 2, codice text); rows Strade: (1, 'S9')");
    load.finish(merger);
    const ResultTable result(merger, 0);

    EXPECT_EQ(decider->compares, std::vector { gis::ResultCompare::OtherOrder });
    EXPECT_EQ(result.table, load.existing);
    EXPECT_EQ(result.rowOffset, 2);
    EXPECT_EQ(load.mapping, (std::vector<int> { 1, 0 }));
    EXPECT_EQ(support::printRows(*result.table), "('S1', 3.5)\n('S2', -)\n('S9', 1)\n");
}

TEST(GisMergerTest, UndecidedTablesAreMissingInTheResults)
{
    CRecordingLibrary library(Roads);
    const std::string before = support::printLibrary(library);
    gis::CGisMerger merger(&library);

    TableLoad load(merger, "Strade", "table Strade (codice integer); rows Strade: (9)");
    load.finish(merger);
    const ResultTable result(merger, 0);

    EXPECT_EQ(result.table, nullptr);
    EXPECT_EQ(result.rowOffset, 0);
    EXPECT_TRUE(load.mapping.empty());
    EXPECT_EQ(support::printLibrary(library), before);
}

TEST(GisMergerTest, RowOffsetsAreThoseFromBeforeTheImport)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    const char* more = "table Strade (codice text, larghezza decimal 2); rows Strade: ('S3', 7)";

    TableLoad first(merger, "Strade", more);
    first.finish(merger);
    TableLoad second(merger, "Strade", more);
    second.finish(merger);

    EXPECT_EQ(ResultTable(merger, 0).rowOffset, 2);
    EXPECT_EQ(ResultTable(merger, 1).rowOffset, 2);
    EXPECT_EQ(library.GetNumRows(first.existing), 4);
}

TEST(GisMergerTest, ResultsOutOfRangeAreNoTable)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);

    EXPECT_EQ(ResultTable(merger, 0).table, nullptr);
    EXPECT_EQ(ResultTable(merger, -1).table, nullptr);
    EXPECT_EQ(ResultTable(merger, 0).rowOffset, 0);
}

TEST(GisMergerTest, ThemesOfAFreeNameAreMadeInTheGivenDrawing)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    gis::CDBTable* table = library.FindTable("Strade");

    gis::CTheme* theme
        = merger.OnLoadTheme("Nuovo", table, gis::EntType::Points, gis::EntTypeCoords::XYZ, 7);

    EXPECT_EQ(theme, library.FindTheme("Nuovo"));
    EXPECT_EQ(library.changes(), Calls { "CreateTheme(Strade, 'Nuovo', points, 3d, 7)" });
}

TEST(GisMergerTest, AThemeThatAgreesIsTakenAgainAndFollowsTheDrawing)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    gis::CDBTable* table = library.FindTable("Strade");
    gis::CTheme* existing = library.FindTheme("Vie");
    library.clearCalls();

    for (const std::int64_t drawing : { 0, 4, 9 })
        EXPECT_EQ(
            merger.OnLoadTheme("Vie", table, gis::EntType::Lines, gis::EntTypeCoords::XY, drawing),
            existing);

    EXPECT_EQ(library.changes(), Calls { "SetThemeTargetDrawing(Vie, 9)" });
}

TEST(GisMergerTest, AThemeThatDiffersIsTheDecidersAndStillFollowsTheDrawing)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);
    const auto decider = std::make_shared<CScriptedDecider>();
    exchange::setMergeDecider(merger, decider);
    gis::CDBTable* table = library.FindTable("Strade");
    decider->theme = library.FindTheme("Vie");

    gis::CTheme* theme
        = merger.OnLoadTheme("Vie", table, gis::EntType::Polygons, gis::EntTypeCoords::XYM, 9);

    EXPECT_EQ(theme, decider->theme);
    ASSERT_EQ(decider->conflicts.size(), 1u);
    EXPECT_EQ(decider->conflicts[0].name, orv::String("Vie"));
    EXPECT_EQ(decider->conflicts[0].table, table);
    EXPECT_EQ(decider->conflicts[0].type, gis::EntType::Polygons);
    EXPECT_EQ(decider->conflicts[0].coords, gis::EntTypeCoords::XYM);
    EXPECT_EQ(library.changes(), Calls { "SetThemeTargetDrawing(Vie, 9)" });
}

TEST(GisMergerTest, EachDifferenceOfAThemeIsAConflict)
{
    CRecordingLibrary library(
        "table Strade (a text); table Altra (a text); theme Vie: lines on Strade");
    gis::CGisMerger merger(&library);
    const auto decider = std::make_shared<CScriptedDecider>();
    exchange::setMergeDecider(merger, decider);
    gis::CDBTable* table = library.FindTable("Strade");

    merger.OnLoadTheme(
        "Vie", library.FindTable("Altra"), gis::EntType::Lines, gis::EntTypeCoords::XY, 0);
    merger.OnLoadTheme("Vie", table, gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    merger.OnLoadTheme("Vie", table, gis::EntType::Lines, gis::EntTypeCoords::XYZ, 0);

    EXPECT_EQ(decider->conflicts.size(), 3u);
}

TEST(GisMergerTest, WithoutADeciderAThemeThatDiffersIsNone)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger merger(&library);

    EXPECT_EQ(merger.OnLoadTheme("Vie", library.FindTable("Strade"), gis::EntType::Points,
                  gis::EntTypeCoords::XY, 0),
        nullptr);
}

TEST(GisMergerTest, CopiesShareTheScratchLibraryUntilOneTakesAnother)
{
    CRecordingLibrary library(Roads);
    auto original = std::make_unique<gis::CGisMerger>(&library);
    TableLoad load(*original, "Strade",
        "table Strade (codice text, larghezza decimal 2); rows Strade: ('S3', 7)");

    gis::CGisMerger copy(*original);
    TableLoad other(*original, "Strade", "table Strade (codice text)");
    original.reset();
    load.finish(copy);

    EXPECT_NE(other.library, load.library);
    EXPECT_EQ(ResultTable(copy, 0).table, library.FindTable("Strade"));
    EXPECT_EQ(library.GetNumRows(library.FindTable("Strade")), 3);
}

TEST(GisMergerTest, CopiesKeepTheirOwnResults)
{
    CRecordingLibrary library(Roads);
    gis::CGisMerger original(&library);
    gis::CGisMerger copy(&library);
    copy = original;

    TableLoad load(original, "Nuova", "table Nuova (a text)");
    load.finish(original);

    EXPECT_NE(ResultTable(original, 0).table, nullptr);
    EXPECT_EQ(ResultTable(copy, 0).table, nullptr);
}

TEST(GisMergerTest, WithoutALibraryNothingHappens)
{
    gis::CGisMerger merger(nullptr);
    gis::CLibGis* library = nullptr;
    gis::CDBTable* existing = nullptr;
    gis::CDBTable* loaded = nullptr;
    std::vector<int> mapping;

    merger.OnBeforeLoadTable("Strade", library, existing, loaded);
    merger.OnAfterLoadTable(library, existing, loaded, mapping);

    EXPECT_EQ(loaded, nullptr);
    EXPECT_EQ(ResultTable(merger, 0).table, nullptr);
    EXPECT_EQ(merger.OnLoadTheme("Vie", nullptr, gis::EntType::Lines, gis::EntTypeCoords::XY, 0),
        nullptr);
}

} // namespace
