// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

using namespace cli_test;

namespace {

namespace fs = std::filesystem;

constexpr int Rows = 400'000;
constexpr int Interrupted = 128 + SIGINT;

/// A library of many points with a text each, so that its exchange takes a while.
void makeLargeLibrary(const std::string& path)
{
    gis::CLibGis facade;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Punti"));
    table->addField("Nome", gis::FieldFormat::Text);
    table->addRows(Rows);
    embedded::Column names(gis::ColumnKind::Dictionary);
    for (int row = 0; row < Rows; ++row)
        names.appendText("punto " + std::to_string(row));
    table->setColumn(0, std::move(names));
    gis::CTheme* theme = library.createTheme(
        table, orv::String("Punti"), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    for (int row = 0; row < Rows; ++row) {
        theme->entities().addEntity(table->row(row));
        double* place = theme->entities().addPart(1);
        place[0] = row % 1000;
        place[1] = row / 1000;
    }
    ASSERT_TRUE(embedded::saveLibraryAs(facade, path).ok());
}

class InterruptTest : public testing::Test {
protected:
    void SetUp() override
    {
        makeLargeLibrary(m_library);
        fs::create_directory(m_out);
    }
    [[nodiscard]] std::vector<std::string> filesOf(const std::string& folder) const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        return names;
    }

    Folder m_folder;
    std::string m_library = m_folder.path("grande.gpkg");
    std::string m_out = m_folder.path("out");
};

TEST_F(InterruptTest, AnExportLeavesAllOrNothing)
{
    int stopped = 0;
    for (const int afterMs : { 30, 60, 100, 150, 250, 400 }) {
        const auto outcome = runInterrupted({ "export", m_library, "--to", m_out }, afterMs);
        if (outcome.exitCode == 0) {
            EXPECT_GE(filesOf(m_out).size(), 3U);
            for (const auto& file : filesOf(m_out))
                fs::remove(fs::path(m_out) / file);
            continue;
        }
        ++stopped;
        EXPECT_EQ(outcome.exitCode, Interrupted) << afterMs << " ms: " << outcome.err;
        EXPECT_TRUE(filesOf(m_out).empty()) << afterMs << " ms: " << filesOf(m_out).front();
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_GT(stopped, 0) << "no interrupt came in time";
}

TEST_F(InterruptTest, AnImportLeavesNoLibraryOrTheOldOne)
{
    ASSERT_EQ(run({ "export", m_library, "--to", m_out }).exitCode, 0);
    const std::string shapefile = m_out + "/Punti.shp";
    const auto small = m_folder.library("vecchia.gpkg", "table T (a text); rows T: ('x');");
    const std::string before = contents(small);
    int stopped = 0;
    for (const int afterMs : { 30, 60, 100, 150, 250, 400 }) {
        const std::string fresh = m_folder.path("nuova.gpkg");
        const auto outcome = runInterrupted({ "import", shapefile, "--into", fresh }, afterMs);
        if (outcome.exitCode != 0) {
            ++stopped;
            EXPECT_EQ(outcome.exitCode, Interrupted) << outcome.err;
            for (const auto& name : m_folder.names())
                EXPECT_EQ(name.find("nuova"), std::string::npos) << name << " is left";
        }
        fs::remove(fresh);
        const auto added = runInterrupted({ "import", shapefile, "--into", small }, afterMs);
        if (added.exitCode == 0)
            fs::remove(small);
        else
            EXPECT_EQ(contents(small), before) << "after " << afterMs << " ms";
        if (!fs::exists(small))
            break;
    }
    EXPECT_GT(stopped, 0) << "no interrupt came in time";
}

} // namespace
