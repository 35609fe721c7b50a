// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

#include <filesystem>

using namespace cli_test;

namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

class ExchangeCommandTest : public testing::Test {
protected:
    Folder m_folder;
    std::string m_town = m_folder.library("town.gpkg", Town);
    std::string m_out = m_folder.path("out");

    void SetUp() override { fs::create_directory(m_out); }

    std::vector<std::string> written() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_out))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }
    /// A shapefile of four lamps.
    std::string lamps()
    {
        const auto library = m_folder.library("lamps.gpkg", Lamps);
        EXPECT_EQ(run({ "export", library, "--to", m_out }).exitCode, 0);
        return m_out + "/Lampioni.shp";
    }
    static std::string counts(const std::string& library)
    {
        std::string text;
        const auto info = Json::parse(run({ "info", library, "--json" }).out);
        for (const auto& theme : info.at("themes"))
            text += theme.at("name").get<std::string>() + "/" + theme.at("table").get<std::string>()
                + ":" + theme.at("entities").dump() + " ";
        return text;
    }
};

TEST_F(ExchangeCommandTest, ChoicesAreNamesAndPathsAreNotEmpty)
{
    const std::string file = lamps();
    const std::string library = m_folder.path("lamps.gpkg");
    const std::vector<std::vector<std::string>> wrong = {
        { "import", file, "--into", library, "--on-conflict", "2" },
        { "import", file, "--into", library, "--on-conflict", "7" },
        { "import", file, "--into", "" },
        { "export", library, "--to", m_out, "--coords", "1" },
        { "export", library, "--to", "" },
        { "query", library, "N = 1", "--format", "1" },
        { "values", library, "N", "--format", "3" },
        { "info", "" },
    };
    for (const auto& words : wrong) {
        const auto outcome = run(words);
        EXPECT_EQ(outcome.exitCode, 2) << words[0] << " " << words.back();
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
    EXPECT_EQ(counts(library), "Lampioni/Lampioni:4 ");
}

TEST_F(ExchangeCommandTest, AReportThatCannotBeWrittenLeavesTheAnswerThere)
{
    const auto outcome
        = run({ "export", m_town, "--to", m_out, "--report", "/no/such/folder/r.json" });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.out.find(".shp\n"), std::string::npos);
    EXPECT_NE(outcome.err.find("/no/such/folder: there is no such folder"), std::string::npos);
    EXPECT_FALSE(written().empty());
}

TEST_F(ExchangeCommandTest, WhatAMergeEmptiesIsToldAndStrictlyRefused)
{
    const auto texts = m_folder.library("testi.gpkg",
        "table Pali (N text); rows Pali: ('1'), ('due'), ('tre'); theme Pali: points 2d on Pali;"
        "ents Pali: 0 [0 0], 1 [1 1], 2 [2 2]");
    EXPECT_EQ(run({ "export", texts, "--to", m_out }).exitCode, 0);
    const auto target = m_folder.library("pali.gpkg",
        "table Pali (N integer); rows Pali: (7); theme Pali: points 2d on Pali; ents Pali: 0 [0 "
        "0]");

    const auto strict = run(
        { "import", m_out + "/Pali.shp", "--into", target, "--on-conflict", "merge", "--strict" });
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_EQ(counts(target), "Pali/Pali:1 ");

    const auto merged
        = run({ "import", m_out + "/Pali.shp", "--into", target, "--on-conflict", "merge" });
    EXPECT_EQ(merged.exitCode, 0);
    EXPECT_NE(merged.err.find("field N: 2 values could not be converted and were emptied"),
        std::string::npos)
        << merged.err;
    EXPECT_EQ(counts(target), "Pali/Pali:4 ");
}

TEST_F(ExchangeCommandTest, ThemesBecomeShapefilesWhosePathsArePrinted)
{
    const auto outcome = run({ "export", m_town, "--to", m_out });

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, m_out + "/Vie.shp\n" + m_out + "/Edifici.shp\n");
    for (const char* name : { "Vie.shp", "Vie.shx", "Vie.dbf", "Vie.cpg", "Edifici.shp" })
        EXPECT_TRUE(fs::exists(m_out + "/" + name)) << name;
}

TEST_F(ExchangeCommandTest, WhatIsExportedReadsBackTheSame)
{
    ASSERT_EQ(run({ "export", m_town, "--to", m_out, "--theme", "Vie" }).exitCode, 0);

    const auto fields = "Nome,Aperta,Corsie,Larghezza,Rilievo";
    const auto before = run(
        { "query", m_town, "1 = 1", "--theme", "Vie", "--format", "csv", "--fields", fields });
    const auto after
        = run({ "query", m_out + "/Vie.shp", "1 = 1", "--format", "csv", "--fields", fields });

    EXPECT_EQ(after.out, before.out);
}

TEST_F(ExchangeCommandTest, FilesThatAreThereStayUnlessAsked)
{
    ASSERT_EQ(run({ "export", m_town, "--to", m_out, "--theme", "Edifici" }).exitCode, 0);
    const auto names = written();
    const auto bytes = contents(m_out + "/Edifici.shp");

    const auto refused = run({ "export", m_town, "--to", m_out });
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_NE(refused.err.find("--overwrite"), std::string::npos);
    EXPECT_EQ(written(), names) << "nothing is written when one file is in the way";

    EXPECT_EQ(run({ "export", m_town, "--to", m_out, "--overwrite" }).exitCode, 0);
    EXPECT_EQ(contents(m_out + "/Edifici.shp"), bytes);
}

TEST_F(ExchangeCommandTest, FoldersThatAreNotThereAreRefused)
{
    const auto outcome = run({ "export", m_town, "--to", m_folder.path("nowhere") });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.err.find("there is no such folder"), std::string::npos) << outcome.err;
    EXPECT_FALSE(fs::exists(m_folder.path("nowhere")));
}

TEST_F(ExchangeCommandTest, WhatADbfCannotHoldIsToldAndReported)
{
    const auto library = m_folder.library("wide.gpkg",
        "table T (\"Nome molto lungo\" text, \"Nome molto largo\" text);"
        "rows T: ('abcdefghij', 'x'); theme T: points 3d on T; ents T: 0 [0 0 7]");
    const auto report = m_folder.path("report.json");

    const auto outcome = run({ "export", library, "--to", m_out, "--max-chars", "5", "--coords",
        "2d", "--report", report });

    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.err.find("is named"), std::string::npos) << outcome.err;
    const auto theme = Json::parse(contents(report)).at("themes").at(0);
    EXPECT_EQ(theme.at("theme"), "T");
    EXPECT_EQ(theme.at("written"), true);
    std::set<std::string> codes;
    for (const auto& finding : theme.at("findings"))
        codes.insert(finding.at("code").get<std::string>());
    for (const char* code : { "field-name-cut", "text-cut", "coordinate-dropped" })
        EXPECT_TRUE(codes.contains(code)) << code;
}

TEST_F(ExchangeCommandTest, AnImportMakesTheLibraryAndPrintsTableAndTheme)
{
    const auto shapefile = lamps();
    const auto library = m_folder.path("new.gpkg");

    const auto outcome = run({ "import", shapefile, "--into", library });

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "table Lampioni\ntheme Lampioni\n");
    EXPECT_EQ(counts(library), "Lampioni/Lampioni:4 ");
    EXPECT_EQ(run({ "query", library, "Altezza = 4.5", "--count" }).out, "2\n");
}

TEST_F(ExchangeCommandTest, ATakenNameFailsIsRenamedOrIsMerged)
{
    const auto shapefile = lamps();
    const auto library = m_folder.path("new.gpkg");
    ASSERT_EQ(run({ "import", shapefile, "--into", library }).exitCode, 0);
    const auto bytes = contents(library);

    const auto refused = run({ "import", shapefile, "--into", library });
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_NE(refused.err.find("--on-conflict"), std::string::npos) << refused.err;
    EXPECT_EQ(contents(library), bytes) << "nothing was written";

    const auto renamed = run({ "import", shapefile, "--into", library, "--on-conflict", "rename" });
    EXPECT_EQ(renamed.exitCode, 0) << renamed.err;
    EXPECT_EQ(renamed.out, "table Lampioni (2)\ntheme Lampioni (2)\n");
    EXPECT_EQ(counts(library), "Lampioni/Lampioni:4 Lampioni (2)/Lampioni (2):4 ");

    const auto merged = run({ "import", shapefile, "--into", library, "--on-conflict", "merge" });
    EXPECT_EQ(merged.exitCode, 0) << merged.err;
    EXPECT_EQ(merged.out, "table Lampioni\ntheme Lampioni\n");
    EXPECT_EQ(counts(library), "Lampioni/Lampioni:8 Lampioni (2)/Lampioni (2):4 ");
    EXPECT_EQ(
        run({ "query", library, "Altezza = 4.5", "--theme", "Lampioni", "--count" }).out, "4\n");
}

TEST_F(ExchangeCommandTest, ARefusedImportMakesNoLibrary)
{
    const auto library = m_folder.path("new.gpkg");
    const auto names = m_folder.names();

    EXPECT_EQ(run({ "import", m_folder.path("none.shp"), "--into", library }).exitCode, 1);
    EXPECT_EQ(m_folder.names(), names);
    EXPECT_EQ(run({ "import", lamps(), "--into", library, "--point-name", "Quota" }).exitCode, 1);
    EXPECT_FALSE(fs::exists(library));
}

TEST_F(ExchangeCommandTest, PointsAreNamedByAField)
{
    const auto library = m_folder.path("new.gpkg");

    const auto outcome = run({ "import", lamps(), "--into", library, "--point-name", "n" });

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
}

TEST_F(ExchangeCommandTest, AFileThatIsNoLibraryIsNotWrittenTo)
{
    const auto shapefile = lamps();
    const auto text = m_folder.file("notes.gpkg", "my notes");

    const auto outcome = run({ "import", shapefile, "--into", text });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(contents(text), "my notes");
}

TEST_F(ExchangeCommandTest, DamagedFilesAreTakenWithALineEachOrRefusedWhenStrict)
{
    const auto shapefile = lamps();
    fs::remove(m_out + "/Lampioni.shx");
    const auto library = m_folder.path("new.gpkg");

    const auto strict = run({ "import", shapefile, "--into", library, "--strict" });
    EXPECT_EQ(strict.exitCode, 1);
    EXPECT_FALSE(fs::exists(library));

    const auto taken = run({ "import", shapefile, "--into", library });
    EXPECT_EQ(taken.exitCode, 0);
    EXPECT_EQ(taken.err,
        "tematica: " + shapefile
            + ": the .shx file is missing; the shapes were found in the .shp itself\n");
    EXPECT_EQ(counts(library), "Lampioni/Lampioni:4 ");
}

TEST_F(ExchangeCommandTest, AnImportsReportNamesTheEncodingAndWhyItWasTaken)
{
    const auto shapefile = lamps();
    const auto report = m_folder.path("report.json");

    const auto outcome
        = run({ "import", shapefile, "--into", m_folder.path("new.gpkg"), "--report", report });

    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "") << "notes are no warnings";
    const auto json = Json::parse(contents(report));
    const auto& theme = json.at("themes").at(0);
    EXPECT_EQ(theme.at("theme"), "Lampioni");
    EXPECT_EQ(theme.at("written"), true);
    const auto& finding = theme.at("findings").at(0);
    EXPECT_EQ(finding.at("code"), "encoding-chosen");
    EXPECT_EQ(finding.at("subject"), "UTF-8");
    EXPECT_EQ(finding.at("detail"), ".cpg");
    EXPECT_EQ(finding.at("warning"), false);
}

TEST_F(ExchangeCommandTest, ARefusedImportReportsWhy)
{
    const auto shapefile = lamps();
    fs::remove(m_out + "/Lampioni.shx");
    const auto report = m_folder.path("report.json");

    const auto outcome = run({ "import", shapefile, "--into", m_folder.path("new.gpkg"), "--strict",
        "--report", report });

    EXPECT_EQ(outcome.exitCode, 1);
    const auto theme = Json::parse(contents(report)).at("themes").at(0);
    EXPECT_TRUE(theme.at("theme").is_null());
    EXPECT_EQ(theme.at("written"), false);
    EXPECT_NE(theme.at("error").get<std::string>().find("--strict"), std::string::npos);
}

TEST_F(ExchangeCommandTest, PointOptionsReadNamesInTheEncodingAskedForAndSayWhatIsMissing)
{
    const auto shapefile = lamps();
    const auto library = m_folder.path("new.gpkg");

    const auto encoding = run(
        { "import", shapefile, "--into", library, "--encoding", "EBCDIC-9", "--point-name", "n" });
    EXPECT_EQ(encoding.exitCode, 1);
    EXPECT_EQ(encoding.err, "tematica: EBCDIC-9: no encoding of this name is known\n");

    const auto field
        = run({ "import", shapefile, "--into", library, "--point-description", "Targa" });
    EXPECT_EQ(field.exitCode, 1);
    EXPECT_EQ(field.err, "tematica: there is no field named Targa\n");

    const auto gone = m_out + "/Nessuno.shp";
    const auto missing = run({ "import", gone, "--into", library, "--point-name", "n" });
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "tematica: " + gone + ": there is no such file\n");

    fs::remove(m_out + "/Lampioni.dbf");
    const auto withoutDbf = run({ "import", shapefile, "--into", library, "--point-name", "n" });
    EXPECT_EQ(withoutDbf.exitCode, 1);
    EXPECT_EQ(withoutDbf.err,
        "tematica: " + shapefile + ": the .dbf file with the attributes is missing\n");
    EXPECT_FALSE(fs::exists(library));
}

TEST_F(ExchangeCommandTest, AThemeNamedTwiceIsWrittenOnceAndAMissingFolderIsToldOnce)
{
    const auto twice
        = run({ "export", m_town, "--to", m_out, "--theme", "Edifici", "--theme", "Edifici" });
    EXPECT_EQ(twice.exitCode, 0) << twice.err;
    EXPECT_EQ(twice.out, m_out + "/Edifici.shp\n");

    const auto gone = m_folder.path("gone");
    const auto missing = run({ "export", m_town, "--to", gone });
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_EQ(missing.err, "tematica: " + gone + ": there is no such folder\n");
}

TEST_F(ExchangeCommandTest, AnotherProgramsGeoPackageIsNoTargetAndStaysByteForByte)
{
    const auto shapefile = lamps();
    const auto foreign = m_folder.path("foreign.gpkg");
    ASSERT_EQ(
        std::system(("ogr2ogr -f GPKG '" + foreign + "' '" + shapefile + "' 2>/dev/null").c_str()),
        0);
    const auto before = contents(foreign);

    const auto outcome = run({ "import", shapefile, "--into", foreign, "--on-conflict", "rename" });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err,
        "tematica: " + foreign
            + ": another program made this file, so nothing is added to it; choose a library of "
              "your own, or a new one\n");
    EXPECT_EQ(contents(foreign), before);
}

} // namespace
