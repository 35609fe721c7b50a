// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

// Files of one call that would take each other's place, and reports of what was refused.

using namespace cli_test;

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

class PathsCommandTest : public testing::Test {
protected:
    void SetUp() override
    {
        fs::create_directory(m_out);
        ASSERT_EQ(run({ "export", m_lamps, "--to", m_out }).exitCode, 0);
        ASSERT_TRUE(fs::exists(m_shape));
    }
    /// One sentence about a path, and every file as it was.
    void expectWrongCall(const std::vector<std::string>& words, const std::string& about)
    {
        SCOPED_TRACE(testing::PrintToString(words));
        const auto before = m_folder.bytes();
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.rfind("tematica: " + about, 0), 0U) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
        EXPECT_TRUE(m_folder.bytes() == before) << "a file was changed, made or removed";
    }
    [[nodiscard]] Outcome exportWith(const std::string& report) const
    {
        return run({ "export", m_lamps, "--to", m_out, "--overwrite", "--report", report });
    }
    /// The only entry of a report, which says that nothing was written.
    Json refusedIn(const std::string& report)
    {
        const auto themes = Json::parse(contents(report)).at("themes");
        EXPECT_EQ(themes.size(), 1U);
        EXPECT_EQ(themes.at(0).at("written"), false);
        EXPECT_EQ(themes.at(0).at("file"), m_shape);
        return themes.at(0);
    }

    Folder m_folder;
    std::string m_lamps = m_folder.library("lamps.gpkg", Lamps);
    std::string m_out = m_folder.path("out");
    std::string m_shape = m_out + "/Lampioni.shp";
    std::string m_new = m_folder.path("new.gpkg");
    std::string m_report = m_folder.path("report.json");
};

TEST_F(PathsCommandTest, AnImportsReportNeverReplacesAFileOfTheShapefile)
{
    const std::string link = m_folder.path("link.json");
    fs::create_symlink(m_out + "/Lampioni.dbf", link);
    const std::string reports[] = { m_shape, m_out + "/Lampioni.dbf", m_out + "/Lampioni.shx",
        m_out + "/Lampioni.cpg", m_out + "/Lampioni.prj", m_out + "/Lampioni.DBF",
        m_out + "/../out/Lampioni.dbf", link };
    for (const std::string& report : reports)
        expectWrongCall({ "import", m_shape, "--into", m_new, "--report", report },
            report + ": the report would take the place of a file of the import");
}

TEST_F(PathsCommandTest, AReportThroughALinkNeverReplacesAFileThatIsStillToBeMade)
{
    const std::string toLibrary = m_folder.path("library.json");
    const std::string toShape = m_folder.path("shape.json");
    fs::create_symlink("new.gpkg", toLibrary);
    const std::string empty = m_folder.path("empty");
    fs::create_directory(empty);
    fs::create_symlink("empty/Lampioni.dbf", toShape);

    expectWrongCall({ "import", m_shape, "--into", m_new, "--report", toLibrary }, toLibrary);
    expectWrongCall({ "export", m_lamps, "--to", empty, "--report", toShape }, toShape);
}

TEST_F(PathsCommandTest, AnImportsReportNeverReplacesTheLibrary)
{
    const std::string roundabout = m_folder.path("out/../lamps.gpkg");
    const std::pair<std::string, std::string> pairs[] = { { m_new, m_new }, { m_lamps, m_lamps },
        { m_lamps, roundabout }, { roundabout, m_lamps } };
    for (const auto& [library, report] : pairs)
        expectWrongCall(
            { "import", m_shape, "--into", library, "--on-conflict", "rename", "--report", report },
            report + ": the report would take the place of a file of the import");
}

TEST_F(PathsCommandTest, ALibraryNeverReplacesAFileOfAShapefile)
{
    for (const std::string& name : { m_shape, m_out + "/other.shp", m_out + "/OTHER.SHP" })
        expectWrongCall(
            { "import", m_shape, "--into", name }, name + ": a library is no shapefile");
    for (const std::string& name : { m_out + "/Lampioni.dbf", m_out + "/Lampioni.prj" })
        expectWrongCall({ "import", m_shape, "--into", name },
            name + ": the library would take the place of the file that is imported");
}

TEST_F(PathsCommandTest, AnEmptyEncodingIsAWrongCall)
{
    expectWrongCall({ "import", m_shape, "--into", m_new, "--encoding", "" }, "--encoding");
}

TEST_F(PathsCommandTest, AnExportsReportNeverReplacesTheLibraryOrWhatIsExported)
{
    const std::string reports[] = { m_lamps, m_shape, m_out + "/Lampioni.dbf", m_out + "/other.dbf",
        m_out + "/../out/Lampioni.SHX" };
    for (const std::string& report : reports)
        expectWrongCall({ "export", m_lamps, "--to", m_out, "--overwrite", "--report", report },
            report + ": the report would take the place of a file of the export");

    const auto beside = run(
        { "export", m_lamps, "--to", m_out, "--overwrite", "--report", m_out + "/Lampioni.json" });
    EXPECT_EQ(beside.exitCode, 0) << beside.err;
    EXPECT_EQ(Json::parse(contents(m_out + "/Lampioni.json")).at("themes").size(), 1U);
}

TEST_F(PathsCommandTest, WhatTheUserHasBesideTheReportStays)
{
    m_folder.file("report.json.part", "my own");
    m_folder.file("report.json", "an old report");
    const auto names = m_folder.names();

    EXPECT_EQ(
        run({ "export", m_lamps, "--to", m_out, "--overwrite", "--report", m_report }).exitCode, 0);

    EXPECT_EQ(contents(m_report + ".part"), "my own");
    EXPECT_TRUE(Json::accept(contents(m_report)));
    EXPECT_EQ(m_folder.names(), names) << "no passing file is left";
}

TEST_F(PathsCommandTest, AReportThatCannotTakeItsPlaceLeavesNoPassingFile)
{
    fs::create_directory(m_report);
    const auto names = m_folder.names();

    const auto outcome
        = run({ "export", m_lamps, "--to", m_out, "--overwrite", "--report", m_report });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.err.find(m_report + ": this is a folder"), std::string::npos) << outcome.err;
    EXPECT_EQ(m_folder.names(), names);
}

TEST_F(PathsCommandTest, AReportGoesWhereALinkLeads)
{
    const std::string old = m_folder.file("old.json", "an old report");
    const std::string links[] = { m_folder.path("link.json"), m_folder.path("waiting.json") };
    fs::create_symlink("old.json", links[0]);
    fs::create_symlink(m_report, links[1]); // to what is not there yet

    for (const std::string& link : links) {
        EXPECT_EQ(exportWith(link).exitCode, 0) << link;
        EXPECT_TRUE(fs::is_symlink(link)) << link;
    }

    EXPECT_TRUE(Json::accept(contents(old))) << contents(old);
    EXPECT_TRUE(Json::accept(contents(m_report)));
    EXPECT_FALSE(fs::is_symlink(m_report));
}

TEST_F(PathsCommandTest, AReportLeavesAFileItsRightsAndWhatLiesBesideIt)
{
    m_folder.file("report.json", "an old report");
    m_folder.file("report.json-journal", "my own");
    ASSERT_EQ(::chmod(m_report.c_str(), 0600), 0);

    EXPECT_EQ(exportWith(m_report).exitCode, 0);

    struct stat written { };
    ASSERT_EQ(::stat(m_report.c_str(), &written), 0);
    EXPECT_EQ(written.st_mode & 07777u, 0600u);
    EXPECT_TRUE(Json::accept(contents(m_report)));
    EXPECT_EQ(contents(m_report + "-journal"), "my own");
}

TEST_F(PathsCommandTest, APipeGetsTheReportAndStaysAPipe)
{
    ASSERT_EQ(::mkfifo(m_report.c_str(), 0600), 0);
    const int reader = ::open(m_report.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);
    const auto names = m_folder.names();

    EXPECT_EQ(exportWith(m_report).exitCode, 0);

    std::string text(4096, ' ');
    text.resize(
        static_cast<std::size_t>(std::max<ssize_t>(0, ::read(reader, text.data(), text.size()))));
    ::close(reader);
    EXPECT_TRUE(Json::accept(text)) << text;
    EXPECT_TRUE(fs::is_fifo(m_report));
    EXPECT_EQ(m_folder.names(), names) << "no passing file is left";
}

TEST_F(PathsCommandTest, AReportToStandardOutputFollowsTheAnswer)
{
    const auto outcome = exportWith("/dev/stdout"); // a file here, which must not be replaced

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    ASSERT_EQ(outcome.out.rfind(m_shape + "\n", 0), 0U) << outcome.out;
    EXPECT_TRUE(Json::accept(outcome.out.substr(m_shape.size() + 1))) << outcome.out;
}

TEST_F(PathsCommandTest, AnImportIntoWhatIsNoLibraryIsReported)
{
    const auto text = m_folder.file("notes.gpkg", "my notes");

    const auto outcome = run({ "import", m_shape, "--into", text, "--report", m_report });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(
        "tematica: " + refusedIn(m_report).at("error").get<std::string>() + "\n", outcome.err);
    EXPECT_NE(outcome.err.find(text), std::string::npos);
    EXPECT_EQ(contents(text), "my notes");
}

TEST_F(PathsCommandTest, AnImportIntoAnotherProgramsFileIsReported)
{
    const auto foreign = m_folder.path("foreign.gpkg");
    const auto command = "ogr2ogr -f GPKG '" + foreign + "' '" + m_shape + "' 2>/dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const auto before = contents(foreign);

    const auto outcome = run({ "import", m_shape, "--into", foreign, "--report", m_report });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(refusedIn(m_report).at("error").get<std::string>().find("another program made"),
        std::string::npos);
    EXPECT_EQ(contents(foreign), before);
}

TEST_F(PathsCommandTest, AnImportOfAnUnknownPointNameIsReported)
{
    const auto outcome = run(
        { "import", m_shape, "--into", m_new, "--point-name", "Quota", "--report", m_report });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(refusedIn(m_report).at("error"), "there is no field named Quota");
    EXPECT_FALSE(fs::exists(m_new));
}

} // namespace
