// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

// A library of which a page in the middle was overwritten: what it held must not pass for cells
// without a value.

using namespace cli_test;

namespace {

constexpr int Rows = 20'000;
constexpr std::size_t PageBytes = 4096;

class DamageCommandTest : public testing::Test {
protected:
    /// Overwrites the page in whose middle these bytes are.
    void damagePageOf(std::string_view bytes)
    {
        std::string file = contents(m_library);
        const std::size_t at = file.find(bytes);
        ASSERT_NE(at, std::string::npos);
        ASSERT_GE(at, PageBytes) << "the file could not even be opened";
        std::fill_n(
            file.begin() + static_cast<std::ptrdiff_t>(at / PageBytes * PageBytes), PageBytes, 'U');
        m_folder.file("grande.gpkg", file);
    }
    void expectDamageIsTold(std::vector<std::string> words)
    {
        words.insert(words.begin() + 1, m_library);
        SCOPED_TRACE(testing::PrintToString(words));
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.rfind("tematica: " + m_library + ": the file is damaged", 0), 0U)
            << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }

    /// Tables Case and Punti, a theme each; a page of Punti's texts is overwritten.
    void saveTwoAndDamageOne()
    {
        gis::CLibGis facade;
        embedded::Library& library = *embedded::Library::of(&facade);
        for (const char* name : { "Case", "Punti" }) {
            gis::CDBTable* table = library.createTable(orv::String(name));
            table->addField("Nome", gis::FieldFormat::Text);
            table->addRows(Rows);
            for (int row = 0; row < Rows; ++row)
                table->columnForWriting(0).setText(
                    row, std::string(name) + " numero " + std::to_string(row));
            library.createTheme(
                table, orv::String(name), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
        }
        ASSERT_TRUE(embedded::saveLibraryAs(facade, m_library).ok());
        damagePageOf("Punti numero 10000");
    }

    Folder m_folder;
    std::string m_library = m_folder.path("grande.gpkg");
};

TEST_F(DamageCommandTest, AQueryOfADamagedColumnIsRefused)
{
    gis::CLibGis facade;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Punti"));
    table->addField("Nome", gis::FieldFormat::Text);
    table->addRows(Rows);
    gis::CTheme* theme = library.createTheme(
        table, orv::String("Punti"), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    for (int row = 0; row < Rows; ++row) {
        table->columnForWriting(0).setText(row, "punto numero " + std::to_string(row));
        theme->entities().addEntity(table->row(row));
        double* place = theme->entities().addPart(1);
        place[0] = place[1] = row;
    }
    ASSERT_TRUE(embedded::saveLibraryAs(facade, m_library).ok());
    ASSERT_EQ(run({ "query", m_library, "Nome = 'punto numero 7'", "--count" }).out, "1\n");
    damagePageOf("punto numero 10000");

    expectDamageIsTold({ "query", "Nome = 'punto numero 7'", "--count" });
    expectDamageIsTold({ "query", "1 = 1" });
    expectDamageIsTold({ "query", "1 = 1", "--format", "csv", "--limit", "1" });
    expectDamageIsTold({ "query", "1 = 1", "--format", "geojson" });
    expectDamageIsTold({ "values", "Nome" });
}

TEST_F(DamageCommandTest, AShapeWhoseBytesAreGoneIsNotToldAsNone)
{
    // Each line fills many pages, which its number stands before.
    std::string notation = "table Linee (N integer); rows Linee: (0) (1) (2);"
                           "theme Linee: lines 2d on Linee; ents Linee: ";
    for (int row = 0; row < 3; ++row) {
        notation += (row > 0 ? ", " : "") + std::to_string(row) + " [0 0";
        for (int i = 1; i < 4000; ++i)
            notation += ", " + std::to_string(i) + (row == 1 && i == 2000 ? " 123456.75" : " 0");
        notation += "]";
    }
    ASSERT_EQ(m_folder.library("grande.gpkg", notation), m_library);
    const double sought = 123456.75;
    damagePageOf({ reinterpret_cast<const char*>(&sought), sizeof sought });

    expectDamageIsTold({ "query", "1 = 1", "--format", "geojson" });
    expectDamageIsTold({ "render", "--output", m_folder.path("map.png") });
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("map.png")));
    EXPECT_EQ(run({ "query", m_library, "N = 1", "--format", "csv" }).out, "#,N\r\n2,1\r\n")
        << "the numbers are whole";
}

TEST_F(DamageCommandTest, ADamagedThemeStandsInNoOthersWayWhenAllAreExported)
{
    saveTwoAndDamageOne();
    std::filesystem::create_directory(m_folder.path("out"));

    const auto outcome = run({ "export", m_library, "--to", m_folder.path("out") });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err.rfind("tematica: " + m_library + ": the file is damaged", 0), 0U)
        << outcome.err;
    EXPECT_TRUE(std::filesystem::exists(m_folder.path("out/Case.shp")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("out/Punti.shp")));
    EXPECT_FALSE(std::filesystem::exists(m_folder.path("out/Punti.dbf")));
}

TEST_F(DamageCommandTest, AnImportIntoADamagedTableSaysSo)
{
    saveTwoAndDamageOne();
    gis::CLibGis facade;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Punti"));
    table->addField("Nome", gis::FieldFormat::Text);
    table->addRows(1);
    library.createTheme(
        table, orv::String("Punti"), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    const std::string other = m_folder.path("other.gpkg");
    ASSERT_TRUE(embedded::saveLibraryAs(facade, other).ok());
    std::filesystem::create_directory(m_folder.path("shapes"));
    ASSERT_EQ(run({ "export", other, "--to", m_folder.path("shapes") }).exitCode, 0);
    const std::string before = contents(m_library);

    const auto outcome = run({ "import", m_folder.path("shapes/Punti.shp"), "--into", m_library,
        "--on-conflict", "merge" });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err.rfind("tematica: " + m_library + ": the file is damaged", 0), 0U)
        << outcome.err;
    EXPECT_EQ(contents(m_library), before);
}

} // namespace
