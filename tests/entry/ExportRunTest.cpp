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

/// What the host's export says of each theme, and what it was called with.
struct HostExport {
    struct Call {
        gis::CLibGis* library;
        gis::CTheme* theme;
        std::string folder;
        int maxTextBytes;
        int coordinates;
        IExportFileCallback* overwrite;
        int errorFlags;
        bool operator==(const Call&) const = default;
    };
    bool isDone = false;
    int errorFlags = 0;
    std::vector<Call> calls;

    [[nodiscard]] std::vector<std::string> folders() const
    {
        std::vector<std::string> all;
        for (const Call& call : calls)
            all.push_back(call.folder);
        return all;
    }
};
HostExport hostExport;

bool exportAsTold(gis::CLibGis* library, gis::CTheme* theme, const orv::String& folder,
    int maxTextBytes, int coordinates, IExportFileCallback* overwrite, int& errorFlags)
{
    hostExport.calls.push_back(
        { library, theme, folder.Bytes(), maxTextBytes, coordinates, overwrite, errorFlags });
    errorFlags = hostExport.errorFlags;
    return hostExport.isDone;
}

TEST_F(ExportRunTest, TheHostGetsWhatWasChosenForEachThemeInOrder)
{
    gis::CTheme* const first = theme("A");
    gis::CTheme* const second = theme("B");
    for (const auto& [maxTextBytes, coordinates] :
        { std::pair { 17, 2 }, { 254, 1 }, { 100, 0 } }) {
        hostExport = { true, 3, {} }; // flags that the next theme must not see
        exportThemes(
            m_library, { "out", { second, first }, maxTextBytes, coordinates }, m_overwrite,
            [](int, const orv::String&) { ADD_FAILURE() << "warned"; }, &exportAsTold);
        EXPECT_EQ(hostExport.calls,
            (std::vector<HostExport::Call> {
                { &m_library, second, "out", maxTextBytes, coordinates, &m_overwrite, 0 },
                { &m_library, first, "out", maxTextBytes, coordinates, &m_overwrite, 0 },
            }));
    }
}

TEST_F(ExportRunTest, WithoutAChoiceTextsHaveAHundredBytesAndCoordinatesAreTheThemes)
{
    hostExport = { true, 0, {} };
    ExportChoice choice;
    choice.folder = "out";
    choice.themes = { theme("A") };
    exportThemes(
        m_library, choice, m_overwrite, [](int, const orv::String&) {}, &exportAsTold);
    ASSERT_EQ(hostExport.calls.size(), 1u);
    EXPECT_EQ(hostExport.calls.front().maxTextBytes, 100);
    EXPECT_EQ(hostExport.calls.front().coordinates, 0);
}

TEST_F(ExportRunTest, EachFlagNamesItsFileAndTheChangedFolderGoesOn)
{
    struct Case {
        bool isDone;
        int flags;
        std::vector<std::string> warnings;
        std::vector<std::string> folders;
    };
    const Case cases[] = {
        { false, 1, { "14160 out/A.shp", "14160 out/B.shp" }, { "out", "out/" } },
        { false, 2, { "14161 out/A.dbf", "14161 out/B.dbf" }, { "out", "out/" } },
        { false, 0, {}, { "out", "out/" } },
        { true, 3, {}, { "out", "out" } },
    };
    const std::vector<gis::CTheme*> themes { theme("A"), theme("B") };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.flags);
        hostExport = { each.isDone, each.flags, {} };
        std::vector<std::string> warnings;
        exportThemes(
            m_library, { "out", themes }, m_overwrite,
            [&](int textId, const orv::String& argument) {
                warnings.push_back(orv::String::ValueOf(textId).Bytes() + " " + argument.Bytes());
            },
            &exportAsTold);
        EXPECT_EQ(warnings, each.warnings);
        EXPECT_EQ(hostExport.folders(), each.folders);
    }
}

class CUnusedMerger final : public gis::IGisMerger {
    void OnBeforeLoadTable(
        const orv::String&, gis::CLibGis*&, gis::CDBTable*&, gis::CDBTable*&) override
    {
    }
    void OnAfterLoadTable(gis::CLibGis*, gis::CDBTable*, gis::CDBTable*, std::vector<int>&) override
    {
    }
    void GetTable(int, gis::CDBTable*&, int&) override { }
    gis::CTheme* OnLoadTheme(
        const orv::String&, gis::CDBTable*, gis::EntType, gis::EntTypeCoords, std::int64_t) override
    {
        return nullptr;
    }
};

class ImportRunTest : public testing::Test {
protected:
    std::vector<std::string> warningsOf(ImportFunction import)
    {
        std::vector<std::string> warnings;
        importShapefile(
            m_library, nullptr, m_merger, { "/no/such/file.shp", {} },
            [&](int textId, const orv::String& argument) {
                warnings.push_back(orv::String::ValueOf(textId).Bytes() + " " + argument.Bytes());
            },
            import);
        return warnings;
    }
    gis::CLibGis m_library;
    CUnusedMerger m_merger;
};

TEST_F(ImportRunTest, AMissingFileIsWarnedOfByName)
{
    EXPECT_EQ(
        warningsOf(&FImportFileShape), std::vector<std::string> { "14169 /no/such/file.shp" });
    EXPECT_EQ(m_library.GetNumTables(), 0);
}

template <bool isDone, int code>
bool importAsTold(gis::CLibGis*, const orv::String&, orv::String& tableName, int* resultCode,
    gis::ILinkImportedEnt*, gis::IGisMerger*, TOpzImportShape&)
{
    tableName = "Strade (2)";
    *resultCode = code;
    return isDone;
}

TEST_F(ImportRunTest, OnlyARenamedTableAndAMissingFileAreTold)
{
    const std::vector<std::string> none;
    EXPECT_EQ(warningsOf(&importAsTold<true, 4>), std::vector<std::string> { "14167 Strade (2)" });
    EXPECT_EQ(warningsOf(&importAsTold<false, 1>), std::vector<std::string> { "14169 Strade (2)" });
    EXPECT_EQ(warningsOf(&importAsTold<false, 4>), none);
    EXPECT_EQ(warningsOf(&importAsTold<true, 1>), none);
    EXPECT_EQ(warningsOf(&importAsTold<true, 0>), none);
    EXPECT_EQ(warningsOf(&importAsTold<false, 7>), none);
}

class CUnusedLink final : public gis::ILinkImportedEnt {
    void OnEntImported(gis::CTheme*, gis::CEnt*) override { }
};

/// What the host's import was called with.
struct HostImport {
    gis::CLibGis* library = nullptr;
    std::string path;
    std::string tableName = "not asked";
    int resultCode = -1;
    gis::ILinkImportedEnt* link = nullptr;
    gis::IGisMerger* merger = nullptr;
    TOpzImportShape options;
};
HostImport hostImport;

bool importAndRemember(gis::CLibGis* library, const orv::String& path, orv::String& tableName,
    int* resultCode, gis::ILinkImportedEnt* link, gis::IGisMerger* merger, TOpzImportShape& options)
{
    hostImport = { library, path.Bytes(), tableName.Bytes(), *resultCode, link, merger, options };
    return true;
}

TEST_F(ImportRunTest, TheHostGetsWhatWasChosen)
{
    CUnusedLink link;
    const auto noWarning = [](int, const orv::String&) { ADD_FAILURE() << "warned"; };
    const auto import = [&](gis::ILinkImportedEnt* given, const TOpzImportShape& options) {
        hostImport = {};
        importShapefile(m_library, given, m_merger, { "/dati/Citt\xC3\xA0 %s.shp", options },
            noWarning, &importAndRemember);
    };
    import(&link, { true, 4, 9 });
    EXPECT_EQ(hostImport.library, &m_library);
    EXPECT_EQ(hostImport.path, "/dati/Citt\xC3\xA0 %s.shp");
    EXPECT_EQ(hostImport.tableName, "") << "is the host's answer";
    EXPECT_EQ(hostImport.resultCode, 0);
    EXPECT_EQ(hostImport.link, &link);
    EXPECT_EQ(hostImport.merger, &m_merger);
    EXPECT_TRUE(hostImport.options.createPoints);
    EXPECT_EQ(hostImport.options.nameField, 4);
    EXPECT_EQ(hostImport.options.codeField, 9);

    import(nullptr, { false, -2, -1 });
    EXPECT_EQ(hostImport.link, nullptr) << "a host may have none";
    EXPECT_EQ(hostImport.merger, &m_merger);
    EXPECT_FALSE(hostImport.options.createPoints);
    EXPECT_EQ(hostImport.options.nameField, -2);
    EXPECT_EQ(hostImport.options.codeField, -1);
}

} // namespace
