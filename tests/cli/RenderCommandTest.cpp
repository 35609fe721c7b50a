// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace cli_test;

namespace {

namespace fs = std::filesystem;

/// Width and height as a PNG's header says; 0 for anything else.
std::pair<unsigned, unsigned> sizeOfPng(const std::string& path)
{
    const std::string bytes = contents(path);
    if (bytes.size() < 24 || bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0)
        return {};
    const auto number = [&bytes](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
        return value;
    };
    return { number(16), number(20) };
}

class RenderCommandTest : public testing::Test {
protected:
    Folder m_folder;
    std::string m_town = m_folder.library("town.gpkg", Town);
    std::string m_png = m_folder.path("map.png");
};

TEST_F(RenderCommandTest, AMapIsAPictureOfTheAskedSize)
{
    const auto usual = run({ "render", m_town, "--output", m_png });
    ASSERT_EQ(usual.exitCode, 0) << usual.err;
    EXPECT_EQ(sizeOfPng(m_png), std::make_pair(1600U, 1000U));
    EXPECT_EQ(usual.err, "");

    const auto small = run({ "render", m_town, "--output", m_png, "--size", "320x200" });
    ASSERT_EQ(small.exitCode, 0) << small.err;
    EXPECT_EQ(sizeOfPng(m_png), std::make_pair(320U, 200U));
}

TEST_F(RenderCommandTest, ThemesABoxAndALegendChangeThePicture)
{
    const auto picture = [this](const std::vector<std::string>& options) {
        std::vector<std::string> words { "render", m_town, "--output", m_png, "--size", "300x300" };
        words.insert(words.end(), options.begin(), options.end());
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return contents(m_png);
    };
    const std::string all = picture({});
    EXPECT_NE(picture({ "--theme", "Edifici" }), all);
    EXPECT_NE(picture({ "--legend" }), all);
    EXPECT_NE(picture({ "--bbox", "0,0,1,1" }), all);
    EXPECT_EQ(picture({}), all) << "the same map is the same picture";
}

TEST_F(RenderCommandTest, WhatCannotBeDrawnIsSaidAndNothingIsWritten)
{
    const auto theme = run({ "render", m_town, "--output", m_png, "--theme", "Boschi" });
    EXPECT_EQ(theme.exitCode, 1);
    EXPECT_NE(theme.err.find("there is no theme named Boschi"), std::string::npos) << theme.err;
    EXPECT_FALSE(fs::exists(m_png));

    const auto folder = run({ "render", m_town, "--output", m_folder.path("nowhere/map.png") });
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_NE(folder.err.find("could not be written"), std::string::npos) << folder.err;

    for (const char* size : { "0x10", "abc", "100", "30000x10" })
        EXPECT_EQ(run({ "render", m_town, "--output", m_png, "--size", size }).exitCode, 2) << size;
    EXPECT_EQ(run({ "render", m_town, "--output", m_png, "--bbox", "1,1,0,0" }).exitCode, 2);
    EXPECT_FALSE(fs::exists(m_png));
}

} // namespace
