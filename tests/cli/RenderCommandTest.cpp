// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QImage>

#include <algorithm>
#include <filesystem>

using namespace cli_test;

namespace {

namespace fs = std::filesystem;

class RenderCommandTest : public testing::Test {
protected:
    Folder m_folder;
    std::string m_town = m_folder.library("town.gpkg", Town);
    std::string m_png = m_folder.path("map.png");

    /// The picture that was written; empty when it is none.
    [[nodiscard]] QImage drawn() const
    {
        QImage picture;
        picture.load(QString::fromStdString(m_png), "PNG");
        return picture;
    }
    /// Exit code 2, one sentence with these words, and no file changed, made or removed.
    void expectWrongCall(const std::vector<std::string>& words, const std::string& sentence)
    {
        SCOPED_TRACE(testing::PrintToString(words));
        const auto before = m_folder.bytes();
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_NE(outcome.err.find(sentence), std::string::npos) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_TRUE(m_folder.bytes() == before);
    }
};

TEST_F(RenderCommandTest, AMapIsAPictureOfTheAskedSize)
{
    const auto usual = run({ "render", m_town, "--output", m_png });
    ASSERT_EQ(usual.exitCode, 0) << usual.err;
    EXPECT_EQ(drawn().size(), QSize(1600, 1000));
    EXPECT_EQ(usual.err, "");

    const auto small = run({ "render", m_town, "--output", m_png, "--size", "320x200" });
    ASSERT_EQ(small.exitCode, 0) << small.err;
    EXPECT_EQ(drawn().size(), QSize(320, 200));
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

TEST_F(RenderCommandTest, ThemesThatAreNotVisibleAreDrawnWhereTheyAreNamed)
{
    const std::string roads = "table T (A text); rows T: ('x') ('y');"
                              "theme Vie: points 2d on T; ents Vie: 0 [1 2];"
                              "theme Case: polygons 2d on T%;"
                              "ents Case: 1 [0 0, 0 9, 9 9, 9 0, 0 0]";
    const auto picture = [&](const std::string& mark, std::vector<std::string> options) {
        std::string notation = roads;
        notation.replace(notation.find('%'), 1, mark);
        std::vector<std::string> words { "render", m_folder.library("roads.gpkg", notation),
            "--output", m_png, "--size", "200x200", "--bbox", "-5,-5,15,15" };
        words.insert(words.end(), options.begin(), options.end());
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return contents(m_png);
    };
    const std::string both = picture("", {});
    const std::string only = picture("", { "--theme", "Vie" });
    ASSERT_NE(both, only);
    EXPECT_EQ(picture(" hidden", {}), only);
    EXPECT_EQ(picture(" hidden", { "--theme", "Vie", "--theme", "Case" }), both);
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

    for (const char* size : { "0x10", "abc", "100", "30000x10", "1.5x2.5", "10x1e2", "-10x10" })
        EXPECT_EQ(run({ "render", m_town, "--output", m_png, "--size", size }).exitCode, 2) << size;
    EXPECT_EQ(run({ "render", m_town, "--output", m_png, "--bbox", "1,1,0,0" }).exitCode, 2);
    EXPECT_FALSE(fs::exists(m_png));
}

TEST_F(RenderCommandTest, ThePictureNeverReplacesTheFileThatIsDrawn)
{
    const auto library = m_folder.library("town.png", Town);
    fs::create_symlink(library, m_folder.path("link.png"));
    for (const auto& output : { library, m_folder.path("link.png") })
        expectWrongCall({ "render", library, "--output", output },
            output + ": the picture would take the place of the file that is drawn");
}

TEST_F(RenderCommandTest, OnlyPngIsWritten)
{
    for (const char* name : { "a.jpg", "a", ".png", "a.png.bmp" })
        expectWrongCall({ "render", m_town, "--output", name }, "only .png is written");
    m_png = m_folder.path("MAP.PNG");
    EXPECT_EQ(run({ "render", m_town, "--output", m_png }).exitCode, 0);
    EXPECT_FALSE(drawn().isNull());
}

TEST_F(RenderCommandTest, AFileWithoutThemesHasNoMap)
{
    const auto library = m_folder.library("tables.gpkg", "table T (A text); rows T: ('x')");

    const auto outcome = run({ "render", library, "--output", m_png });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "tematica: " + library + ": there is no theme in this file\n");
    EXPECT_FALSE(fs::exists(m_png));
}

TEST_F(RenderCommandTest, ABoxIsShownToItsEdges)
{
    const auto corners = m_folder.library("corners.gpkg",
        "table T (A integer); rows T: (1) (2) (3) (4) (5);"
        "theme T: points 2d on T;"
        "ents T: 0 [-20 -10], 1 [20 -10], 2 [20 10], 3 [-20 10], 4 [0 0]");
    const auto outcome = run(
        { "render", corners, "--output", m_png, "--size", "200x100", "--bbox", "-20,-10,20,10" });
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;

    const QImage picture = drawn();
    const QRgb ground = picture.pixel(50, 50);
    for (const QPoint& place : { QPoint(0, 0), QPoint(199, 0), QPoint(199, 99), QPoint(0, 99) }) {
        EXPECT_NE(picture.pixel(place), ground) << place.x() << " " << place.y();
    }
    EXPECT_NE(picture.pixel(100, 50), ground);

    // A part of it ten times as large: the point in the middle is at the lower left corner.
    ASSERT_EQ(
        run({ "render", corners, "--output", m_png, "--size", "200x100", "--bbox", "0,0,4,2" })
            .exitCode,
        0);
    const QImage part = drawn();
    EXPECT_NE(part.pixel(0, 99), ground);
    EXPECT_EQ(part.pixel(10, 89), ground);
    EXPECT_EQ(part.pixel(199, 0), ground);
}

} // namespace
