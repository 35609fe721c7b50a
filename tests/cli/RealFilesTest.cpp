// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/support/TestData.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>

using namespace cli_test;

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

/// All files of the shared data with this ending, ASCII case ignored, sorted.
std::vector<std::string> filesEnding(const std::string& ending)
{
    std::vector<std::string> paths;
    for (const auto& entry : fs::recursive_directory_iterator(support::testDataFolder())) {
        std::string extension = entry.path().extension().string();
        for (char& c : extension)
            c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
        if (entry.is_regular_file() && extension == ending)
            paths.push_back(entry.path().string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// The number of features that GDAL's own tool counts; -1 where it cannot.
long countByGdal(const std::string& path)
{
    const std::string command = "ogrinfo -ro -so -al \"" + path + "\" 2>/dev/null";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    long count = -1;
    std::array<char, 4096> line {};
    while (pipe && std::fgets(line.data(), static_cast<int>(line.size()), pipe.get())) {
        long found = 0;
        if (std::sscanf(line.data(), "Feature Count: %ld", &found) == 1)
            count = (count < 0 ? 0 : count) + found;
    }
    return count;
}

long entitiesIn(const std::string& json)
{
    long count = 0;
    const auto info = Json::parse(json);
    for (const auto& theme : info.at("themes"))
        count += theme.at("entities").get<long>();
    return count;
}

class RealFilesTest : public testing::Test {
protected:
    void SetUp() override { TEMATICA_NEEDS_TEST_DATA(); }
};

/// Every line on standard error is one of ours.
void expectOwnLines(const Outcome& outcome, const std::string& path)
{
    std::size_t start = 0;
    while (start < outcome.err.size()) {
        EXPECT_EQ(outcome.err.compare(start, 10, "tematica: "), 0) << path << "\n" << outcome.err;
        start = outcome.err.find('\n', start) + 1;
    }
}

TEST_F(RealFilesTest, EveryShapefileIsReadWithGdalsCountOrRefusedInOneLine)
{
    for (const auto& path : filesEnding(".shp")) {
        const auto outcome = run({ "info", path, "--json" });
        expectOwnLines(outcome, path);
        if (outcome.exitCode == 0 && outcome.err.empty()) {
            const long expected = countByGdal(path);
            EXPECT_TRUE(expected < 0 || entitiesIn(outcome.out) == expected)
                << path << ": " << entitiesIn(outcome.out) << " entities, GDAL says " << expected;
        } else if (outcome.exitCode != 0) {
            EXPECT_EQ(outcome.exitCode, 1) << path;
            EXPECT_EQ(outcome.out, "") << path;
            EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << path;
        }
    }
}

TEST_F(RealFilesTest, EveryGeoPackageOfAnotherProgramAnswers)
{
    for (const auto& path : filesEnding(".gpkg")) {
        const auto outcome = run({ "info", path, "--json" });
        EXPECT_EQ(outcome.exitCode, 0) << path << "\n" << outcome.err;
        if (outcome.exitCode != 0)
            continue;
        const auto info = Json::parse(outcome.out);
        for (const auto& theme : info.at("themes")) {
            const auto name = theme.at("name").get<std::string>();
            const auto counted = run({ "query", path, "1 = 1", "--theme", name, "--count" });
            EXPECT_EQ(counted.out, theme.at("entities").dump() + "\n") << path << " " << name;
        }
    }
}

TEST_F(RealFilesTest, StrictRefusesExactlyTheFilesThatGiveWarnings)
{
    const Folder folder;
    int number = 0;
    for (const auto& path : filesEnding(".shp")) {
        const auto library = folder.path(std::to_string(++number) + ".gpkg");
        const auto plain = run({ "info", path });
        const auto strict = run({ "import", path, "--into", library, "--strict" });
        const bool isClean = plain.exitCode == 0 && plain.err.empty();
        EXPECT_EQ(strict.exitCode, isClean ? 0 : 1) << path << "\n" << strict.err;
        EXPECT_EQ(fs::exists(library), isClean) << path;
    }
}

TEST_F(RealFilesTest, AnApostropheInAValueIsFoundByLike)
{
    const std::string path = support::testDataFolder() / "dpc-aggregati/Belforte-all-Isauro.shp";

    EXPECT_EQ(run({ "query", path, "Comune LIKE 'Belforte all%Isauro'", "--count" }).out, "324\n");
    EXPECT_EQ(run({ "query", path, "Comune IS NULL", "--count" }).out, "0\n");
}

TEST_F(RealFilesTest, ATableWhoseHeaderCountsTooFewRecordsSaysSo)
{
    const std::string path = support::testDataFolder() / "malformed-derived/dbf_count_small.shp";

    EXPECT_EQ(run({ "info", path }).err,
        "tematica: " + path
            + ": 5 shapes have no record in the .dbf (the header says 4 rows, the file holds 9); "
              "kept without values\n");
}

} // namespace
