// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/Exchange.h"

#include "embedded/model/Library.h"
#include "exchange/merge/RuleMergeDecider.h"
#include "tematica/GisMerger.h"
#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/LibGis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace shapetest;

namespace {

class ExchangeTest : public testing::Test {
protected:
    bool import(const std::string& path, gis::IGisMerger* merger = nullptr)
    {
        return FImportFileShape(&library, orv::String(std::string_view(path)), tableName, &code,
            &link, merger, options);
    }
    bool importBy(const std::string& path, exchange::ConflictRule rule)
    {
        gis::CGisMerger merger(&library);
        exchange::setMergeDecider(merger, std::make_shared<exchange::CRuleMergeDecider>(rule));
        return import(path, &merger);
    }
    std::string printed()
    {
        std::string text = support::printLibrary(library);
        std::replace(text.begin(), text.end(), '\n', ' ');
        return text;
    }

    struct Link final : gis::ILinkImportedEnt {
        void OnEntImported(gis::CTheme* theme, gis::CEnt* ent) override
        {
            EXPECT_EQ(gis::CLibGis::GetTheme(ent), theme);
            ++count;
        }
        int count = 0;
    };

    TemporaryFolder folder;
    orv::CChangeTransactionManager changes;
    gis::CLibGis library { &changes };
    Link link;
    orv::String tableName;
    int code = -1;
    TOpzImportShape options;
};

TEST_F(ExchangeTest, ImportsGiveTheTableAndTellEachEntity)
{
    EXPECT_TRUE(import(writeShapefile(folder, "Vie", pointFile(3), textTable({ "a", "b", "c" }))));

    EXPECT_EQ(tableName, orv::String("Vie"));
    EXPECT_EQ(code, 0);
    EXPECT_EQ(link.count, 3);
}

TEST_F(ExchangeTest, AMissingFileIsNamedWithItsOwnCode)
{
    EXPECT_FALSE(import(folder / "none.shp"));
    EXPECT_EQ(code, ImportFileNotFound);
    EXPECT_EQ(tableName.View(), folder / "none.shp");

    writeFile(folder / "lone.shp", pointFile(1).shp());
    EXPECT_FALSE(import(folder / "lone.shp"));
    EXPECT_EQ(code, ImportFileNotFound);
    EXPECT_EQ(tableName.View(), folder / "lone.dbf");
}

TEST_F(ExchangeTest, OtherFailuresHaveNeitherCode)
{
    writeFile(folder / "a.shp", "no shapefile");
    EXPECT_FALSE(import(folder / "a.shp"));
    EXPECT_NE(code, ImportFileNotFound);
    EXPECT_NE(code, ImportTableRenamed);
    EXPECT_FALSE(FImportFileShape(nullptr, "x", tableName, nullptr, nullptr, nullptr, options));
}

TEST_F(ExchangeTest, ATableThatIsNotThereGoesStraightIn)
{
    EXPECT_TRUE(importBy(writeShapefile(folder, "Vie", pointFile(2), textTable({ "a", "b" })),
        exchange::ConflictRule::Fail));

    EXPECT_EQ(printed(),
        "table Vie (NOME text); rows Vie: ('a') ('b') ; theme Vie: points 2d on Vie active; ents "
        "Vie: 0 [0 0], 1 [1 10]; ");
}

TEST_F(ExchangeTest, AgreeingTablesGrowAndTheirThemeGoesOn)
{
    const std::string path = writeShapefile(folder, "Vie", pointFile(2), textTable({ "a", "b" }));
    ASSERT_TRUE(importBy(path, exchange::ConflictRule::Fail));
    const std::string before = printed();

    EXPECT_TRUE(importBy(path, exchange::ConflictRule::Fail));

    EXPECT_EQ(code, 0);
    EXPECT_EQ(printed(),
        "table Vie (NOME text); rows Vie: ('a') ('b') ('a') ('b') ; theme Vie: points 2d on Vie "
        "active; "
        "ents Vie: 0 [0 0], 1 [1 10], 2 [0 0], 3 [1 10]; ");
    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(printed(), before);
    ASSERT_TRUE(changes.Redo());
    EXPECT_THAT(printed(), testing::HasSubstr("3 [1 10]"));
}

TEST_F(ExchangeTest, AClashIsSettledByRenaming)
{
    support::fillLibrary(library,
        "table Vie (larghezza decimal 2); rows Vie: (3.5); theme Vie: lines 2d on Vie active");
    const std::string before = printed();

    EXPECT_TRUE(importBy(writeShapefile(folder, "Vie", pointFile(1), textTable({ "a" })),
        exchange::ConflictRule::Rename));

    EXPECT_EQ(code, ImportTableRenamed);
    EXPECT_EQ(tableName, orv::String("Vie (2)"));
    EXPECT_THAT(printed(), testing::HasSubstr("rows \"Vie (2)\": ('a')"));
    EXPECT_THAT(printed(), testing::HasSubstr("theme \"Vie (2)\": points 2d on \"Vie (2)\""));
    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(printed(), before);
}

TEST_F(ExchangeTest, AClashIsSettledByMerging)
{
    support::fillLibrary(library,
        "table Vie (nome text, larghezza decimal 2); rows Vie: ('x', 3.5); theme Vie: points 2d on "
        "Vie active");
    const std::string before = printed();

    EXPECT_TRUE(importBy(writeShapefile(folder, "Vie", pointFile(1), textTable({ "a" })),
        exchange::ConflictRule::Merge));

    EXPECT_EQ(code, 0);
    EXPECT_THAT(printed(), testing::HasSubstr("rows Vie: ('x', 3.5) ('a', -) ;"));
    EXPECT_THAT(printed(), testing::HasSubstr("ents Vie: 1 [0 0];"));
    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(printed(), before);
}

TEST_F(ExchangeTest, AnUndecidedClashLeavesEverythingAsItWas)
{
    support::fillLibrary(library,
        "table Vie (larghezza decimal 2); rows Vie: (3.5); theme Vie: lines 2d on Vie active;"
        "table Case (NOME text); theme Alberi: lines 2d on Case");
    const std::string before = printed();
    const auto position = changes.Position();

    EXPECT_FALSE(importBy(writeShapefile(folder, "Vie", pointFile(1), textTable({ "a" })),
        exchange::ConflictRule::Fail));
    EXPECT_EQ(code, 2);
    EXPECT_EQ(printed(), before);
    // Here no table clashes, but a theme of lines has the name.
    EXPECT_FALSE(importBy(writeShapefile(folder, "Alberi", pointFile(1), textTable({ "a" })),
        exchange::ConflictRule::Fail));
    EXPECT_EQ(code, 2);
    EXPECT_EQ(printed(), before);
    EXPECT_EQ(changes.Position(), position);
    EXPECT_EQ(link.count, 0);
}

TEST_F(ExchangeTest, AFailureInsideAnOpenStepKeepsWhatTheStepHeld)
{
    support::fillLibrary(library, "table Vie (larghezza decimal 2)");
    changes.BeginStep("dialog");
    library.CreateTable("Prima");
    EXPECT_FALSE(importBy(writeShapefile(folder, "Vie", pointFile(1), textTable({ "a" })),
        exchange::ConflictRule::Fail));
    changes.EndStep();

    EXPECT_NE(library.FindTable("Prima"), nullptr);
    EXPECT_EQ(library.GetNumTables(), 2);
    ASSERT_TRUE(changes.Undo());
    EXPECT_EQ(library.GetNumTables(), 1);
}

TEST_F(ExchangeTest, PredefinedFieldsOfTheTableAreFilled)
{
    support::fillLibrary(
        library, "table Vie (NOME text, X decimal 2 from x); theme Vie: points 2d on Vie active");

    EXPECT_TRUE(importBy(writeShapefile(folder, "Vie", pointFile(2), textTable({ "a", "b" })),
        exchange::ConflictRule::Merge));

    EXPECT_THAT(printed(), testing::HasSubstr("rows Vie: ('a', 0) ('b', 1) ;"));
}

TEST_F(ExchangeTest, EntityTypesAreThoseOfTheModule)
{
    RawShp shp = pointFile(0);
    const auto typeOf = [&](std::int32_t type) {
        shp.type = type;
        writeFile(folder / "a.shp", shp.shp());
        return FGetEntTypeFromFileShp(orv::String(std::string_view(folder / "a.shp")));
    };
    for (const std::int32_t type : { 1, 11, 21, 8, 18, 28 })
        EXPECT_EQ(typeOf(type), 1);
    for (const std::int32_t type : { 3, 13, 23 })
        EXPECT_EQ(typeOf(type), 3);
    for (const std::int32_t type : { 5, 15, 25 })
        EXPECT_EQ(typeOf(type), 5);
    for (const std::int32_t type : { 0, 31, 2, 99, -1, 41 })
        EXPECT_EQ(typeOf(type), -1);
    EXPECT_EQ(FGetEntTypeFromFileShp("/none.shp"), -1);
    EXPECT_EQ(FGetEntTypeFromFileShp(""), -1);
}

TEST_F(ExchangeTest, FieldNamesAreThoseOfTheFileInItsOrder)
{
    RawDbf dbf;
    dbf.fields = { { "NOME", 'C', 3 }, { "Citt\xE0", 'C', 3 }, { "", 'N', 3 }, { "nome", 'N', 3 } };
    dbf.languageByte = 0x57;
    writeFile(folder / "Vie.DBF", dbf.bytes());
    std::vector<orv::String> names { orv::String("before") };

    EXPECT_TRUE(
        FGetFieldFromFileDbf(&library, orv::String(std::string_view(folder / "Vie.dbf")), names));

    EXPECT_THAT(names,
        testing::ElementsAre(
            orv::String("NOME"), orv::String("Città"), orv::String(), orv::String("nome")));
    EXPECT_FALSE(FGetFieldFromFileDbf(&library, ".dbf", names));
    EXPECT_FALSE(FGetFieldFromFileDbf(nullptr, "", names));
    EXPECT_TRUE(names.empty());
}

struct Answer final : IExportFileCallback {
    explicit Answer(bool yes)
        : answer(yes)
    {
    }
    bool AskOverwrite(const orv::String& path) override
    {
        asked.push_back(path.Bytes());
        return answer;
    }
    bool answer;
    std::vector<std::string> asked;
};

TEST_F(ExchangeTest, TheCallbackIsAskedOnlyForWhatIsThere)
{
    support::fillLibrary(
        library, "table t (a text); rows t: ('x'); theme t: points 2d on t; ents t: 0 [0 0]");
    const orv::String target(std::string_view(folder.path()));
    Answer no(false);
    Answer yes(true);
    int flags = 7;

    EXPECT_TRUE(FExportFileShape(&library, library.GetTheme(0), target, 100, 0, &no, flags));
    EXPECT_EQ(flags, 0);
    EXPECT_TRUE(no.asked.empty());
    EXPECT_TRUE(std::filesystem::exists(folder / "t.shp"));

    writeFile(folder / "t.shp", "old");
    EXPECT_TRUE(FExportFileShape(&library, library.GetTheme(0), target, 100, 0, &no, flags));
    EXPECT_EQ(flags, 0);
    EXPECT_THAT(no.asked, testing::ElementsAre(folder / "t"));
    EXPECT_EQ(readFile(folder / "t.shp"), "old");

    EXPECT_TRUE(FExportFileShape(&library, library.GetTheme(0), target, 100, 0, &yes, flags));
    EXPECT_NE(readFile(folder / "t.shp"), "old");
}

TEST_F(ExchangeTest, FoldersThatAreNoneGiveBothFlagsUnasked)
{
    support::fillLibrary(library, "table t (a text); theme t: points 2d on t");
    Answer yes(true);
    int flags = 0;

    EXPECT_FALSE(FExportFileShape(&library, library.GetTheme(0), "C:\\", 100, 0, &yes, flags));
    EXPECT_EQ(flags, ExportShpNotWritten | ExportDbfNotWritten);
    EXPECT_TRUE(yes.asked.empty());
    EXPECT_FALSE(FExportFileShape(&library, nullptr, "/tmp", 100, 0, &yes, flags));
    EXPECT_EQ(flags, 0);
}

} // namespace
