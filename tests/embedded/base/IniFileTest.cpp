// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/base/IniFile.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using orv::String;

class IniFileTest : public testing::Test {
protected:
    IniFileTest()
    {
        std::string name = (fs::temp_directory_path() / "tematica-ini-XXXXXX").string();
        folder = mkdtemp(name.data());
        path = folder / "settings.ini";
    }
    ~IniFileTest() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    [[nodiscard]] CIniFile open() const { return CIniFile(String(path.c_str())); }
    void put(const std::string& text) const { std::ofstream(path) << text; }
    [[nodiscard]] std::string content() const
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }
    [[nodiscard]] long filesInFolder() const
    {
        return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    }
    fs::path folder;
    fs::path path;
};

/// An environment variable for a scope.
class VariableScope {
public:
    VariableScope(const char* name, const char* value)
        : m_name(name)
    {
        if (const char* before = std::getenv(name))
            m_before = before;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    VariableScope(const VariableScope&) = delete;
    VariableScope& operator=(const VariableScope&) = delete;
    ~VariableScope() { m_before.empty() ? unsetenv(m_name) : setenv(m_name, m_before.c_str(), 1); }

private:
    const char* m_name;
    std::string m_before;
};

TEST_F(IniFileTest, AMissingFileGivesTheDefaults)
{
    const CIniFile file = open();

    EXPECT_EQ(file.GetLong("DatiDlgGIS", "DlgCompileTableWidth", 300), 300);
    EXPECT_EQ(file.GetString("ExportGis", "FilePath", "C:\\").View(), "C:\\");
    EXPECT_FALSE(fs::exists(path));
}

TEST_F(IniFileTest, ValuesReadBackFromAnotherObject)
{
    EXPECT_TRUE(open().WriteLong("DatiDlgGIS", "DlgCompileTableWidth", 640));
    EXPECT_TRUE(open().WriteLong("DatiDlgGIS", "DlgCompileTableHeight", -480));
    EXPECT_TRUE(open().WriteString("ExportGis", "FilePath", "C:\\dati\\nuova\\"));

    const CIniFile file = open();
    EXPECT_EQ(file.GetLong("DatiDlgGIS", "DlgCompileTableWidth", 0), 640);
    EXPECT_EQ(file.GetLong("DatiDlgGIS", "DlgCompileTableHeight", 0), -480);
    EXPECT_EQ(file.GetString("ExportGis", "FilePath", "").View(), "C:\\dati\\nuova\\");
    EXPECT_NE(content().find("FilePath=C:\\dati\\nuova\\\n"), std::string::npos);
}

TEST_F(IniFileTest, TextsAreWrittenAsTheyAre)
{
    for (const char* text : { "", "/home/città/È", "a=b", "a;b#c", "\"quoted\"", "100%s %1", "[x]",
             "\\t\\n", "a.b/c", "; no comment" }) {
        EXPECT_TRUE(open().WriteString("Sezione", "chiave", text)) << text;
        EXPECT_EQ(open().GetString("Sezione", "chiave", "default").View(), text);
    }
}

TEST_F(IniFileTest, NamesMayHoldPointsAndSlashes)
{
    EXPECT_TRUE(open().WriteString("Sezione 1.2", "chiave.con/punto", "a"));
    EXPECT_TRUE(open().WriteString("Sezione 1", "2", "b"));

    EXPECT_EQ(open().GetString("Sezione 1.2", "chiave.con/punto", "").View(), "a");
    EXPECT_EQ(open().GetString("Sezione 1", "2", "").View(), "b");
}

TEST_F(IniFileTest, WhatCannotBeReadBackIsNotWritten)
{
    put("[s]\nk=before\n");
    CIniFile file = open();
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } cases[] = { { "s", "k", "two\nlines" }, { "s", "k", "carriage\r" }, { "s", "", "v" },
        { "", "k", "v" }, { "s", "a=b", "v" }, { "s]", "k", "v" }, { "s\n", "k", "v" },
        { "s", "k\n", "v" }, { "s", "[k", "v" }, { "s", ";k", "v" }, { "s", "#k", "v" },
        { "s", " k", "v" }, { "s ", "k", "v" }, { "s", "k", " v" }, { "s", "k", "v\t" } };
    for (const auto& [section, key, value] : cases)
        EXPECT_FALSE(file.WriteString(section, key, value)) << section << key << value;
    EXPECT_FALSE(file.WriteString("s", "k", String("a\0b", 0, 3)));

    EXPECT_EQ(content(), "[s]\nk=before\n");
}

TEST_F(IniFileTest, NumbersThatAreNoneGiveTheDefault)
{
    put("[n]\na=12x\nb=\nc=1.5\nd=99999999999999999999\ne=+7\nf= -8 \ng=2147483648\n");
    const CIniFile file = open();

    for (const char* key : { "a", "b", "c", "d", "missing" })
        EXPECT_EQ(file.GetLong("n", key, 5), 5) << key;
    EXPECT_EQ(file.GetLong("n", "e", 5), 7);
    EXPECT_EQ(file.GetLong("n", "f", 5), -8);
    EXPECT_EQ(file.GetLong("n", "g", 5), 2147483648);
    EXPECT_TRUE(open().WriteLong("n", "h", LONG_MIN));
    EXPECT_EQ(file.GetLong("n", "h", 5), LONG_MIN);
}

TEST_F(IniFileTest, OtherSectionsAndKeysStay)
{
    put("; a note\ntop=1\n[a]\nx=1\ny=2\n[b]\nx=3\n");

    EXPECT_TRUE(open().WriteLong("a", "x", 9));
    EXPECT_TRUE(open().WriteLong("c", "z", 4));

    const CIniFile file = open();
    EXPECT_EQ(file.GetLong("a", "x", 0), 9);
    EXPECT_EQ(file.GetLong("a", "y", 0), 2);
    EXPECT_EQ(file.GetLong("b", "x", 0), 3);
    EXPECT_EQ(file.GetLong("c", "z", 0), 4);
    EXPECT_NE(content().find("top=1"), std::string::npos);
}

TEST_F(IniFileTest, AFileThatIsNoIniGivesTheDefaultsAndIsNotOverwritten)
{
    for (const char* text : { "no line of an ini file", "[open", "[a]\nx=1\n[a]\nx=2\n" }) {
        put(text);
        EXPECT_EQ(open().GetLong("a", "x", 5), 5) << text;
        EXPECT_FALSE(open().WriteLong("a", "y", 1)) << text;
        EXPECT_EQ(content(), text);
    }
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(IniFileTest, AFailedWriteLeavesTheFileAndNothingElse)
{
    fs::create_directory(path); // a folder of the file's name cannot be replaced
    EXPECT_FALSE(open().WriteLong("a", "x", 1));
    EXPECT_EQ(open().GetLong("a", "x", 5), 5);
    EXPECT_EQ(filesInFolder(), 1);

    CIniFile inNowhere(String("/proc/nowhere/settings.ini"));
    EXPECT_FALSE(inNowhere.WriteLong("a", "x", 1));
    CIniFile unnamed { String() };
    EXPECT_FALSE(unnamed.WriteLong("a", "x", 1));
    EXPECT_EQ(unnamed.GetLong("a", "x", 5), 5);
}

TEST_F(IniFileTest, WritingMakesTheFolderAndLeavesNoTemporaryFile)
{
    path = folder / "new" / "deep" / "settings.ini";

    EXPECT_TRUE(open().WriteLong("a", "x", 1));
    EXPECT_TRUE(open().WriteLong("a", "x", 2));

    EXPECT_EQ(
        std::distance(fs::directory_iterator(path.parent_path()), fs::directory_iterator()), 1);
}

TEST_F(IniFileTest, RightsAndLinksOfTheFileStay)
{
    put("[a]\nx=1\n");
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
    const fs::path link = folder / "link.ini";
    fs::create_symlink(path, link);

    EXPECT_TRUE(CIniFile(String(link.c_str())).WriteLong("a", "x", 2));

    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(open().GetLong("a", "x", 0), 2);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(IniFileTest, TheHostsFileIsFoundByTheEnvironment)
{
    const fs::path config = folder / "config";
    const fs::path home = folder / "home";
    {
        const VariableScope given("TEMATICA_INI", path.c_str());
        EXPECT_TRUE(CIniFile().WriteLong("a", "x", 1));
        EXPECT_TRUE(fs::exists(path));
    }
    const VariableScope notGiven("TEMATICA_INI", nullptr);
    const VariableScope homeFolder("HOME", home.c_str());
    {
        const VariableScope configFolder("XDG_CONFIG_HOME", config.c_str());
        EXPECT_TRUE(CIniFile().WriteLong("a", "x", 2));
        EXPECT_TRUE(fs::exists(config / "tematica" / "tematica.ini"));
    }
    const VariableScope noConfigFolder("XDG_CONFIG_HOME", nullptr);
    EXPECT_EQ(CIniFile().GetLong("a", "x", 7), 7);
    EXPECT_TRUE(CIniFile().WriteLong("a", "x", 3));
    EXPECT_TRUE(fs::exists(home / ".config" / "tematica" / "tematica.ini"));
}

} // namespace
