// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <filesystem>

// Shapefiles that are joined with a table of their name.

using namespace cli_test;

namespace {

namespace fs = std::filesystem;

class MergeCommandTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directory(m_out); }
    /// The only theme of a library as a shapefile.
    std::string shapefileOf(const std::string& notation)
    {
        const auto library = m_folder.library("source.gpkg", notation);
        const auto outcome = run({ "export", library, "--to", m_out, "--overwrite" });
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return outcome.out.substr(0, outcome.out.find('\n'));
    }
    Outcome merge(const std::string& shapefile)
    {
        return run({ "import", shapefile, "--into", m_target, "--on-conflict", "merge" });
    }
    std::string rowsOf(const std::string& theme)
    {
        return run({ "query", m_target, "1 = 1", "--theme", theme, "--format", "csv" }).out;
    }

    Folder m_folder;
    std::string m_out = m_folder.path("out");
    std::string m_target = m_folder.library("lamps.gpkg", Lamps);
};

TEST_F(MergeCommandTest, FieldsThatAreNewAreAddedAndOldRowsHaveNoValueThere)
{
    const auto shapefile
        = shapefileOf("table Lampioni (N integer, Altezza decimal 1, Tipo text, Posa date);"
                      "rows Lampioni: (5, 7.5, 'LED', 05/03/2016), (6, -, -, -);"
                      "theme Lampioni: points 2d on Lampioni; ents Lampioni: 0 [8 9], 1 [9 9]");

    const auto outcome = merge(shapefile);

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "table Lampioni\ntheme Lampioni\n");
    EXPECT_EQ(rowsOf("Lampioni"),
        "#,N,Altezza,Tipo,Posa\r\n"
        "1,1,4.5,,\r\n"
        "2,2,6.0,,\r\n"
        "3,3,4.5,,\r\n"
        "4,4,,,\r\n"
        "5,5,7.5,LED,05/03/2016\r\n"
        "6,6,,,\r\n");
    EXPECT_EQ(run({ "query", m_target, "Tipo IS NULL", "--count" }).out, "5\n");
}

TEST_F(MergeCommandTest, FieldsInAnotherOrderFindTheirOwn)
{
    const auto shapefile
        = shapefileOf("table Lampioni (Tipo text, ALTEZZA decimal 1, n integer);"
                      "rows Lampioni: ('LED', 7.5, 5);"
                      "theme Lampioni: points 2d on Lampioni; ents Lampioni: 0 [8 9]");

    const auto outcome = merge(shapefile);

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    const auto rows = rowsOf("Lampioni");
    EXPECT_EQ(rows.substr(0, rows.find('\r')), "#,N,Altezza,Tipo");
    EXPECT_EQ(rows.substr(rows.find("\r\n5,") + 2), "5,5,7.5,LED\r\n");
}

TEST_F(MergeCommandTest, AThemeOfAnotherGeometryIsRenamedAndSharesTheTable)
{
    const char* const Wires = "table Lampioni (N integer, Altezza decimal 1);"
                              "rows Lampioni: (5, 7.5);"
                              "theme Lampioni: lines 2d on Lampioni; ents Lampioni: 0 [0 0, 1 1]";
    const auto shapefile = shapefileOf(Wires);

    const auto outcome = merge(shapefile);

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "table Lampioni\ntheme Lampioni (2)\n");
    EXPECT_EQ(rowsOf("Lampioni"), "#,N,Altezza\r\n1,1,4.5\r\n2,2,6.0\r\n3,3,4.5\r\n4,4,\r\n");
    EXPECT_EQ(rowsOf("Lampioni (2)"), "#,N,Altezza\r\n1,5,7.5\r\n");
    const auto info = run({ "info", m_target }).out;
    EXPECT_EQ(info.substr(0, info.find("\n  ") + 1),
        "theme Lampioni: 4 points, 2d, table Lampioni\n"
        "theme Lampioni (2): 1 lines, 2d, table Lampioni\n"
        "table Lampioni: 5 rows\n");

    EXPECT_EQ(merge(shapefile).out, "table Lampioni\ntheme Lampioni (3)\n")
        << "a name that was given is not taken for the file's";
}

TEST_F(MergeCommandTest, HeightsAreAnotherGeometryToo)
{
    const auto shapefile = shapefileOf("table Lampioni (N integer, Altezza decimal 1);"
                                       "rows Lampioni: (5, 7.5);"
                                       "theme Lampioni: points 3d on Lampioni;"
                                       "ents Lampioni: 0 [0 0 7]");

    EXPECT_EQ(merge(shapefile).out, "table Lampioni\ntheme Lampioni (2)\n");
}

} // namespace
