// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

#include "host/gis/Exchange.h"
#include "host/gis/Merge.h"

#include <fstream>

namespace {

namespace fs = std::filesystem;

/// A folder of the test's own, removed with it.
class ExchangeContract : public contract::ContractTest {
protected:
    void SetUp() override
    {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        m_folder = contract::temporaryPath(test->name());
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
    }
    void TearDown() override { fs::remove_all(m_folder); }
    [[nodiscard]] orv::String folder() const { return m_folder.c_str(); }
    [[nodiscard]] orv::String path(const char* name) const { return (m_folder / name).c_str(); }
    [[nodiscard]] bool exists(const char* name) const { return fs::exists(m_folder / name); }

private:
    fs::path m_folder;
};
INSTANTIATE_TEST_SUITE_P(
    Host, ExchangeContract, testing::ValuesIn(contract::hosts()), contract::hostName);

constexpr const char* Lamps
    = "table Lampioni (codice text, altezza decimal 2, accesa boolean, posa date, numero integer);"
      "rows Lampioni: ('L1', 4.25, yes, 05/03/2016, 7), ('citt\xC3\xA0', -, -, -, -);"
      "theme Lampioni: points on Lampioni; ents Lampioni: 0 [10 20], 1 [30 40]";

class CAnswer final : public IExportFileCallback {
public:
    explicit CAnswer(bool overwrite)
        : m_overwrite(overwrite)
    {
    }
    bool AskOverwrite(const orv::String& path) override
    {
        asked.push_back(path);
        return m_overwrite;
    }
    std::vector<orv::String> asked;

private:
    bool m_overwrite;
};

/// Loads everything under its own name.
class CPlainMerger final : public gis::IGisMerger {
public:
    explicit CPlainMerger(gis::CLibGis& library)
        : m_library(library)
    {
    }
    void OnBeforeLoadTable(const orv::String& name, gis::CLibGis*& library,
        gis::CDBTable*& existing, gis::CDBTable*& loaded) override
    {
        library = &m_library;
        existing = nullptr;
        loaded = m_library.CreateTable(name);
    }
    void OnAfterLoadTable(
        gis::CLibGis*, gis::CDBTable*, gis::CDBTable* loaded, std::vector<int>&) override
    {
        if (isDecided)
            m_loaded.push_back(loaded);
    }
    void GetTable(int index, gis::CDBTable*& table, int& rowOffset) override
    {
        const bool isKnown = index >= 0 && index < static_cast<int>(m_loaded.size());
        table = isKnown ? m_loaded[static_cast<std::size_t>(index)] : nullptr;
        rowOffset = 0;
    }
    gis::CTheme* OnLoadTheme(const orv::String& name, gis::CDBTable* table, gis::EntType type,
        gis::EntTypeCoords coords, std::int64_t drawing) override
    {
        return m_library.CreateTheme(table, name, type, coords, drawing);
    }
    bool isDecided = true;

private:
    gis::CLibGis& m_library;
    std::vector<gis::CDBTable*> m_loaded;
};

TEST_P(ExchangeContract, WhatIsExportedImportsAgain)
{
    gis::CLibGis& library = make(Lamps);
    gis::CLibGis& other = make("");
    CAnswer answer(false);
    CPlainMerger merger(other);
    TOpzImportShape options;
    orv::String tableName;
    int flags = -1;
    int code = -1;

    ASSERT_TRUE(FExportFileShape(&library, library.GetTheme(0), folder(), 254, 0, &answer, flags));
    EXPECT_EQ(flags, 0);
    EXPECT_TRUE(answer.asked.empty());
    ASSERT_TRUE(exists("Lampioni.shp") && exists("Lampioni.dbf"));
    EXPECT_EQ(FGetEntTypeFromFileShp(path("Lampioni.shp")), 1);
    ASSERT_TRUE(FImportFileShape(
        &other, path("Lampioni.shp"), tableName, &code, nullptr, &merger, options));

    EXPECT_EQ(tableName, orv::String("Lampioni"));
    ASSERT_EQ(other.GetNumThemes(), 1);
    EXPECT_EQ(other.GetNoEnts(other.GetTheme(0)), 2);
    EXPECT_EQ(rows(other, other.GetTable(0)), rows(library, library.GetTable(0)));
    EXPECT_EQ(gis::FCalcXCentPredef(other.GetEnt(other.GetTheme(0), 1)), 30.0);
    EXPECT_TRUE(other.GetModifiedFlag());
}

TEST_P(ExchangeContract, NoToOverwritingSkipsTheThemeWithoutAnError)
{
    gis::CLibGis& library = make(Lamps);
    std::ofstream(fs::path(path("Lampioni.shp").Data())) << "mio";
    CAnswer no(false);
    CAnswer yes(true);
    int flags = -1;

    EXPECT_TRUE(FExportFileShape(&library, library.GetTheme(0), folder(), 254, 0, &no, flags));
    EXPECT_EQ(flags, 0);
    ASSERT_EQ(no.asked.size(), 1u);
    EXPECT_EQ(no.asked[0], path("Lampioni")) << "the path without extension";
    EXPECT_EQ(fs::file_size(path("Lampioni.shp").Data()), 3u);

    EXPECT_TRUE(FExportFileShape(&library, library.GetTheme(0), folder(), 254, 0, &yes, flags));
    EXPECT_GT(fs::file_size(path("Lampioni.shp").Data()), 3u);
}

TEST_P(ExchangeContract, FoldersThatAreNotAbsoluteOrMissingAreRefused)
{
    gis::CLibGis& library = make(Lamps);
    for (const orv::String& wrong :
        { orv::String("C:\\"), orv::String("relativa"), orv::String(), path("non c'e") }) {
        int flags = 0;
        EXPECT_FALSE(
            FExportFileShape(&library, library.GetTheme(0), wrong, 254, 0, nullptr, flags));
        EXPECT_EQ(flags, ExportShpNotWritten | ExportDbfNotWritten) << wrong.Data();
    }
}

TEST_P(ExchangeContract, AMissingFileIsCodeOneAndNothingIsMade)
{
    gis::CLibGis& library = make("");
    CPlainMerger merger(library);
    TOpzImportShape options;
    orv::String tableName;
    int code = 0;

    EXPECT_FALSE(
        FImportFileShape(&library, path("manca.shp"), tableName, &code, nullptr, &merger, options));

    EXPECT_EQ(code, ImportFileNotFound);
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_FALSE(library.GetModifiedFlag());
}

TEST_P(ExchangeContract, AnUndecidedTableStopsTheImportSilently)
{
    gis::CLibGis& library = make(Lamps);
    gis::CLibGis& other = make("");
    CPlainMerger merger(other);
    merger.isDecided = false;
    TOpzImportShape options;
    orv::String tableName;
    int flags = 0;
    int code = 0;
    ASSERT_TRUE(FExportFileShape(&library, library.GetTheme(0), folder(), 254, 0, nullptr, flags));

    EXPECT_FALSE(FImportFileShape(
        &other, path("Lampioni.shp"), tableName, &code, nullptr, &merger, options));

    EXPECT_NE(code, ImportFileNotFound);
    EXPECT_NE(code, ImportTableRenamed);
    EXPECT_EQ(other.GetNumTables(), 0) << "what was made is removed";
    EXPECT_EQ(other.GetNumThemes(), 0);
}

TEST_P(ExchangeContract, FieldNamesOfAFileAreListed)
{
    gis::CLibGis& library = make(Lamps);
    int flags = 0;
    ASSERT_TRUE(FExportFileShape(&library, library.GetTheme(0), folder(), 254, 0, nullptr, flags));
    std::vector<orv::String> names;

    EXPECT_TRUE(FGetFieldFromFileDbf(&library, path("Lampioni.dbf"), names));
    EXPECT_EQ(
        names, (std::vector<orv::String> { "codice", "altezza", "accesa", "posa", "numero" }));
    EXPECT_FALSE(FGetFieldFromFileDbf(&library, path("manca.dbf"), names));
    EXPECT_EQ(FGetEntTypeFromFileShp(path("manca.shp")), -1);
}

} // namespace
