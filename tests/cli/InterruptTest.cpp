// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <filesystem>

using namespace cli_test;

namespace {

namespace fs = std::filesystem;

constexpr int Rows = 400'000;
constexpr int Interrupted = 128 + SIGINT;

struct PlannedTheme {
    const char* name;
    int rows;
};

/// A theme of points with a text each; many make its exchange take a while.
void addTheme(embedded::Library& library, const PlannedTheme& plan)
{
    gis::CDBTable* table = library.createTable(orv::String(plan.name));
    table->addField("Nome", gis::FieldFormat::Text);
    table->addRows(plan.rows);
    embedded::Column names(gis::ColumnKind::Dictionary);
    for (int row = 0; row < plan.rows; ++row)
        names.appendText("punto " + std::to_string(row));
    table->setColumn(0, std::move(names));
    gis::CTheme* theme = library.createTheme(
        table, orv::String(plan.name), gis::EntType::Points, gis::EntTypeCoords::XY, 0);
    for (int row = 0; row < plan.rows; ++row) {
        theme->entities().addEntity(table->row(row));
        double* place = theme->entities().addPart(1);
        place[0] = row % 1000;
        place[1] = row / 1000;
    }
}

void makeLibrary(const std::string& path, const std::vector<PlannedTheme>& themes)
{
    gis::CLibGis facade;
    for (const PlannedTheme& theme : themes)
        addTheme(*embedded::Library::of(&facade), theme);
    ASSERT_TRUE(embedded::saveLibraryAs(facade, path).ok());
}

class InterruptTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directory(m_out); }
    void makeLarge() { makeLibrary(m_library, { { "Punti", Rows } }); }
    /// Exports a library whose second theme takes a while, with these signals as soon as the first
    /// theme's file is there.
    Outcome exportSignalled(const std::vector<int>& signals)
    {
        makeLibrary(
            m_library, { { "Primo", 1 }, { "Punti", Rows }, { "Vuoto", 0 }, { "Fine", 1 } });
        Outcome outcome;
        for (int attempt = 0; attempt < 5; ++attempt) { // a busy machine may send it too late
            outcome = runSignalled(
                { "export", m_library, "--to", m_out, "--overwrite", "--report", m_report },
                m_out + "/Primo.shp", signals);
            if (outcome.exitCode != 0)
                break;
            for (const auto& file : filesOf(m_out))
                fs::remove(fs::path(m_out) / file);
        }
        return outcome;
    }
    [[nodiscard]] std::vector<std::string> filesOf(const std::string& folder) const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// The first theme is there whole, and nothing of the others.
    void expectOnlyTheFirstTheme(const Outcome& outcome)
    {
        EXPECT_EQ(outcome.out, m_out + "/Primo.shp\n");
        EXPECT_EQ(outcome.err,
            "tematica: Punti: stopped; this theme was not written\n"
            "tematica: Vuoto: stopped; this theme was not written\n"
            "tematica: Fine: stopped; this theme was not written\n");
        EXPECT_EQ(filesOf(m_out),
            (std::vector<std::string> { "Primo.cpg", "Primo.dbf", "Primo.shp", "Primo.shx" }));
        const auto first = run({ "query", m_out + "/Primo.shp", "1 = 1", "--format", "csv" });
        EXPECT_EQ(first.out, "#,Nome\r\n1,punto 0\r\n");
        EXPECT_EQ(first.err, "");
    }

    Folder m_folder;
    std::string m_library = m_folder.path("grande.gpkg");
    std::string m_report = m_folder.path("report.json");
    std::string m_out = m_folder.path("out");
};

TEST_F(InterruptTest, AnExportLeavesAllOrNothing)
{
    makeLarge();
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

TEST_F(InterruptTest, EachThemeThatAnInterruptedExportLeavesOutIsNamed)
{
    const auto outcome = exportSignalled({ SIGINT });

    EXPECT_EQ(outcome.exitCode, Interrupted);
    expectOnlyTheFirstTheme(outcome);
    const auto report = nlohmann::json::parse(contents(m_report));
    ASSERT_EQ(report.at("themes").size(), 4U) << "also what was not begun";
    for (const auto& theme : report.at("themes"))
        EXPECT_EQ(theme.at("written"), theme.at("theme") == "Primo") << theme;
}

TEST_F(InterruptTest, ImpatienceChangesNothing)
{
    const auto outcome = exportSignalled({ SIGINT, SIGINT, SIGINT });

    EXPECT_EQ(outcome.exitCode, Interrupted);
    expectOnlyTheFirstTheme(outcome);
}

TEST_F(InterruptTest, BeingAskedToEndIsObeyedTheSameWay)
{
    const auto outcome = exportSignalled({ SIGTERM });

    EXPECT_EQ(outcome.exitCode, 128 + SIGTERM);
    expectOnlyTheFirstTheme(outcome);
}

TEST_F(InterruptTest, AnImportLeavesNoLibraryOrTheOldOne)
{
    makeLarge();
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
