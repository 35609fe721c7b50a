// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Arguments.h"

#include "cli/Output.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Words = std::vector<std::string>;

template <typename T> T parsed(Words words)
{
    auto arguments = cli::parseArguments(std::move(words));
    EXPECT_TRUE(std::holds_alternative<T>(arguments));
    return std::holds_alternative<T>(arguments) ? std::get<T>(arguments) : T {};
}

/// What is told of a wrong call; empty when it was taken.
std::string complaint(Words words)
{
    testing::internal::CaptureStderr();
    const auto arguments = cli::parseArguments(std::move(words));
    const auto text = testing::internal::GetCapturedStderr();
    const auto* ended = std::get_if<cli::Ended>(&arguments);
    EXPECT_EQ(ended ? ended->exitCode : 0, text.empty() ? 0 : cli::WrongUsage);
    return text;
}

TEST(ArgumentsTest, TheFilterIsTheSecondWordWhateverItBeginsWith)
{
    const Words calls[] = {
        { "query", "f.gpkg", "-5 < Corsie" },
        { "query", "f.gpkg", "-5 < Corsie", "--count" },
        { "query", "--theme", "Vie", "f.gpkg", "--count", "-5 < Corsie" },
        { "query", "f.gpkg", "--", "-5 < Corsie" },
        { "query", "--format", "csv", "--", "f.gpkg", "-5 < Corsie" },
        { "query", "--theme=Vie", "f.gpkg", "-5 < Corsie", "--limit=3" },
    };
    for (const auto& call : calls) {
        const auto arguments = parsed<cli::QueryArguments>(call);
        EXPECT_EQ(arguments.file, "f.gpkg");
        EXPECT_EQ(arguments.filter, "-5 < Corsie");
    }
    EXPECT_EQ(
        parsed<cli::QueryArguments>({ "query", "f.gpkg", "--", "--count" }).filter, "--count");
    EXPECT_EQ(parsed<cli::QueryArguments>({ "query", "f.gpkg", "" }).filter, "");
}

TEST(ArgumentsTest, OptionsOfAQueryAreRead)
{
    const auto arguments = parsed<cli::QueryArguments>({ "query", "f.shp", "a = 1", "--theme",
        "Le vie", "--fields", "A,B", "--limit", "7", "--format", "geojson", "--count" });

    EXPECT_EQ(arguments.theme, "Le vie");
    EXPECT_EQ(arguments.fields, "A,B");
    EXPECT_EQ(arguments.limit, 7);
    EXPECT_EQ(arguments.format, cli::Format::GeoJson);
    EXPECT_TRUE(arguments.isCountOnly);
}

TEST(ArgumentsTest, WhatIsLeftOutHasItsDefault)
{
    const auto query = parsed<cli::QueryArguments>({ "query", "f", "a = 1" });
    EXPECT_EQ(query.format, cli::Format::Table);
    EXPECT_FALSE(query.theme || query.fields || query.limit || query.isCountOnly);

    const auto import = parsed<cli::ImportArguments>({ "import", "a.shp", "--into", "b.gpkg" });
    EXPECT_EQ(import.onConflict, cli::OnConflict::Fail);
    EXPECT_FALSE(import.isStrict);

    const auto exports = parsed<cli::ExportArguments>({ "export", "b.gpkg", "--to", "out" });
    EXPECT_EQ(exports.options.maxTextBytes, 254);
    EXPECT_EQ(exports.options.coordinates, embedded::ExportCoordinates::AsTheme);
    EXPECT_TRUE(exports.themes.empty());
}

TEST(ArgumentsTest, AThemeOfAnExportMayComeSeveralTimes)
{
    const auto arguments = parsed<cli::ExportArguments>(
        { "export", "b.gpkg", "--theme", "Vie", "--to", "out", "--theme", "-Case", "--coords", "3d",
            "--max-chars", "80", "--overwrite", "--report", "r.json" });

    EXPECT_EQ(arguments.themes, (Words { "Vie", "-Case" }));
    EXPECT_EQ(arguments.options.coordinates, embedded::ExportCoordinates::XYZ);
    EXPECT_EQ(arguments.options.maxTextBytes, 80);
    EXPECT_TRUE(arguments.isOverwriting);
    EXPECT_EQ(arguments.report, "r.json");
}

TEST(ArgumentsTest, WrongCallsAreOneLineAndExitTwo)
{
    const Words calls[] = {
        {},
        { "frobnicate" },
        { "info" },
        { "info", "a", "b" },
        { "query", "f" },
        { "query", "f", "a = 1", "extra" },
        { "query", "f", "a = 1", "--format", "xml" },
        { "query", "f", "a = 1", "--limit", "-1" },
        { "query", "f", "a = 1", "--limit", "many" },
        { "query", "f", "--cuont", "a = 1" },
        { "query", "f", "a = 1", "--theme", "A", "--theme", "B" },
        { "values", "f", "A", "--format", "geojson" },
        { "import", "a.shp" },
        { "import", "a.shp", "--into", "b.gpkg", "--on-conflict", "ask" },
        { "export", "b.gpkg" },
        { "export", "b.gpkg", "--to", "out", "--max-chars", "0" },
        { "export", "b.gpkg", "--to", "out", "--max-chars", "255" },
        { "export", "b.gpkg", "--to", "out", "--coords", "4d" },
    };
    for (const auto& call : calls) {
        const auto text = complaint(call);
        EXPECT_EQ(text.rfind("tematica: ", 0), 0u) << testing::PrintToString(call);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    }
}

TEST(ArgumentsTest, AnUnknownCommandAndACountBelowZeroAreNamed)
{
    EXPECT_EQ(complaint({ "ask", "f.gpkg" }),
        "tematica: there is no command 'ask'; give info, query, values, import, export or render "
        "(see: tematica --help)\n");
    const auto text = complaint({ "query", "f.gpkg", "a = 1", "--limit", "-1" });
    EXPECT_NE(text.find("'-1' is no number of rows: give 0 or more"), std::string::npos) << text;
}

} // namespace
