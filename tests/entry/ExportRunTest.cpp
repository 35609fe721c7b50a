// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ExportRun.h"
#include "entry/ImportRun.h"

#include "host/gis/LibGis.h"
#include "host/gis/Merge.h"
#include "kit/texts/TextIds.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace entry;

namespace {

class CNeverAsked final : public IExportFileCallback {
public:
    bool AskOverwrite(const orv::String& path) override
    {
        ADD_FAILURE() << "asked about " << path.Bytes();
        return false;
    }
};

class ExportRunTest : public testing::Test {
protected:
    gis::CLibGis m_library;
    std::vector<std::string> m_warnings;
    CNeverAsked m_overwrite;

    gis::CTheme* theme(const char* name)
    {
        return m_library.CreateTheme(
            m_library.CreateTable(name), name, gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    }
    std::vector<std::string> exportTo(const char* folder, const std::vector<gis::CTheme*>& themes)
    {
        m_warnings.clear();
        exportThemes(m_library, { folder, themes }, m_overwrite,
            [this](int textId, const orv::String& argument) {
                m_warnings.push_back(orv::String::ValueOf(textId).Bytes() + " " + argument.Bytes());
            });
        return m_warnings;
    }
};

TEST_F(ExportRunTest, AFailingThemeIsWarnedOfTwiceWithItsPath)
{
    const std::vector<std::string> expected {
        "14160 C:\\out\\Strade.shp",
        "14161 C:\\out\\Strade.dbf",
    };

    EXPECT_EQ(exportTo("C:\\out", { theme("Strade") }), expected);
    EXPECT_EQ(exportTo("C:\\out\\", { m_library.FindTheme("Strade") }), expected);
}

TEST_F(ExportRunTest, AFailureDoesNotStopTheOthersAndTheSeparatorStays)
{
    const auto warnings = exportTo("/no/such/folder", { theme("Strade"), theme("Case") });

    EXPECT_EQ(warnings,
        (std::vector<std::string> {
            "14160 /no/such/folder/Strade.shp",
            "14161 /no/such/folder/Strade.dbf",
            "14160 /no/such/folder/Case.shp",
            "14161 /no/such/folder/Case.dbf",
        }));
}

TEST_F(ExportRunTest, AnEmptyFolderGetsNoSeparator)
{
    EXPECT_EQ(exportTo("", { theme("Strade") }),
        (std::vector<std::string> { "14160 Strade.shp", "14161 Strade.dbf" }));
}

TEST_F(ExportRunTest, NoThemesNoWarnings)
{
    EXPECT_TRUE(exportTo("/no/such/folder", {}).empty());
}

TEST(ExportFolderTest, TheSeparatorFollowsTheFoldersOwnStyle)
{
    const std::pair<const char*, const char*> cases[] = {
        { "/home/u/out", "/home/u/out/" },
        { "/home/u/out/", "/home/u/out/" },
        { "/home/u/out\\", "/home/u/out\\/" },
        { "out", "out/" },
        { "C:\\out", "C:\\out\\" },
        { "C:\\out\\", "C:\\out\\" },
        { "c:", "c:\\" },
        { "\\\\server\\share", "\\\\server\\share\\" },
        { "", "" },
    };

    for (const auto& [folder, expected] : cases)
        EXPECT_EQ(withSeparator(folder).Bytes(), expected) << folder;
}

TEST(ImportRunTest, AMissingFileIsWarnedOfByName)
{
    gis::CLibGis library;
    std::vector<std::string> warnings;
    class CUnusedMerger final : public gis::IGisMerger {
        void OnBeforeLoadTable(
            const orv::String&, gis::CLibGis*&, gis::CDBTable*&, gis::CDBTable*&) override
        {
        }
        void OnAfterLoadTable(
            gis::CLibGis*, gis::CDBTable*, gis::CDBTable*, std::vector<int>&) override
        {
        }
        void GetTable(int, gis::CDBTable*&, int&) override { }
        gis::CTheme* OnLoadTheme(const orv::String&, gis::CDBTable*, gis::EntType,
            gis::EntTypeCoords, std::int64_t) override
        {
            return nullptr;
        }
    } merger;

    importShapefile(library, nullptr, merger, { "/no/such/file.shp", {} },
        [&](int textId, const orv::String& argument) {
            warnings.push_back(orv::String::ValueOf(textId).Bytes() + " " + argument.Bytes());
        });

    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings.front(), "14169 /no/such/file.shp");
    EXPECT_EQ(library.GetNumTables(), 0);
}

} // namespace
