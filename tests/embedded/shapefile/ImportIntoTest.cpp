// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/embedded/shapefile/StopAt.h"
#include "tests/support/LibraryNotation.h"

#include "host/gis/Merge.h"

#include <gtest/gtest.h>

// Imports into themes and tables that are there, and what they leave when they fail.

using support::printLibrary;
using namespace shapetest;

namespace {

/// Gives the import a theme and table that are there already.
class IntoExisting final : public gis::IGisMerger {
public:
    IntoExisting(gis::CLibGis& library, gis::CTheme* theme)
        : m_library(library)
        , m_theme(theme)
    {
    }
    void OnBeforeLoadTable(const orv::String& name, gis::CLibGis*& target, gis::CDBTable*& existing,
        gis::CDBTable*& loaded) override
    {
        target = &m_library;
        existing = m_theme->table;
        loaded = m_loaded.CreateTable(name);
    }
    void OnAfterLoadTable(
        gis::CLibGis*, gis::CDBTable* existing, gis::CDBTable* loaded, std::vector<int>&) override
    {
        m_offset = existing->rowCount();
        existing->addRows(loaded->rowCount());
        embedded::Library::of(&m_library)->recordRowsAdded(existing, m_offset);
    }
    void GetTable(int, gis::CDBTable*& table, int& rowOffset) override
    {
        table = m_theme->table;
        rowOffset = m_offset;
    }
    gis::CTheme* OnLoadTheme(
        const orv::String&, gis::CDBTable*, gis::EntType, gis::EntTypeCoords, std::int64_t) override
    {
        return answered ? answered : m_theme;
    }
    gis::CTheme* answered = nullptr;

private:
    gis::CLibGis& m_library;
    gis::CLibGis m_loaded;
    gis::CTheme* m_theme;
    int m_offset = 0;
};

/// What an import may not touch when it fails.
std::string wholeState(gis::CLibGis& library)
{
    std::string text = printLibrary(library) + (library.GetModifiedFlag() ? "modified" : "saved");
    for (int i = 0; i < library.GetNumThemes(); ++i) {
        gis::CTheme* theme = library.GetTheme(i);
        text += "; " + std::to_string(library.GetNoEnts(theme)) + " "
            + theme->referenceSystem.definition + (theme->entities().hasM() ? " m" : "");
    }
    return text;
}

class ImportIntoTest : public testing::Test {
protected:
    TemporaryFolder folder;
    embedded::ShapefileImportOptions options;
    embedded::Report report;
};

TEST_F(ImportIntoTest, AStoppedImportIntoAThemeThatIsThereLeavesItAsItWas)
{
    const std::string path = writeShapefile(
        folder, "t", pointFile(200'000), textTable(std::vector<std::string>(200'000, "x")));
    writeFile(folder / "t.prj", "GEOGCS[\"WGS 84\"]");
    for (const char* rows : { "", "rows T: ('a'); ents P: 0 [1 2]" })
        for (const bool isRecorded : { true, false }) {
            SCOPED_TRACE(std::string(rows) + (isRecorded ? " recorded" : ""));
            orv::CChangeTransactionManager record;
            const auto target = support::makeLibrary(
                std::string("table T (a text); theme P: points 2d on T;") + rows,
                isRecorded ? &record : nullptr);
            const std::string before = wholeState(*target);
            IntoExisting merger(*target, target->GetTheme(0));
            int stopped = 0;
            for (int call = 1; call < 6; ++call) {
                StopAt progress(call);
                embedded::Library::of(target.get())->setProgress(&progress);
                const auto result
                    = embedded::importShapefile(*target, path, options, &merger, nullptr, report);
                embedded::Library::of(target.get())->setProgress(nullptr);
                if (!progress.wasAsked())
                    break;
                ++stopped;
                ASSERT_FALSE(result.ok());
                ASSERT_EQ(wholeState(*target), before);
                ASSERT_FALSE(record.CanUndo());
            }
            EXPECT_GE(stopped, 1);
        }
}

TEST_F(ImportIntoTest, AThemeOfAnotherTypeIsRefusedAndKeepsItsEntities)
{
    const std::string path
        = writeShapefile(folder, "t", pointFile(3), textTable({ "a", "b", "c" }));
    for (const bool isRecorded : { true, false }) {
        orv::CChangeTransactionManager record;
        const auto target = support::makeLibrary(
            "table T (a text); rows T: ('r'); theme P: points 2d on T; theme L: lines 2d on T;"
            "ents L: 0 [0 0, 1 1]",
            isRecorded ? &record : nullptr);
        const std::string before = wholeState(*target);
        IntoExisting merger(*target, target->GetTheme(0));
        merger.answered = target->GetTheme(1);

        EXPECT_FALSE(
            embedded::importShapefile(*target, path, options, &merger, nullptr, report).ok());

        EXPECT_EQ(wholeState(*target), before);
    }
}

TEST_F(ImportIntoTest, UndoTakesBackTheReferenceSystemToo)
{
    const std::string path = writeShapefile(folder, "t", pointFile(2), textTable({ "a", "b" }));
    writeFile(folder / "t.prj", "GEOGCS[\"WGS 84\"]");
    orv::CChangeTransactionManager record;
    const auto target = support::makeLibrary("table T (a text); theme P: points 2d on T", &record);
    IntoExisting merger(*target, target->GetTheme(0));
    ASSERT_TRUE(embedded::importShapefile(*target, path, options, &merger, nullptr, report).ok());
    ASSERT_FALSE(target->GetTheme(0)->referenceSystem.definition.empty());

    ASSERT_TRUE(record.Undo());
    EXPECT_TRUE(target->GetTheme(0)->referenceSystem.definition.empty());
    EXPECT_EQ(target->GetNoEnts(target->GetTheme(0)), 0);
    ASSERT_TRUE(record.Redo());
    EXPECT_FALSE(target->GetTheme(0)->referenceSystem.definition.empty());
    EXPECT_EQ(target->GetNoEnts(target->GetTheme(0)), 2);
}

} // namespace
