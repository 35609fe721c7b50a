// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

using namespace cli_test;

namespace {

using Json = nlohmann::json;

class InfoValuesCommandTest : public testing::Test {
protected:
    Folder m_folder;
    std::string m_town = m_folder.library("town.gpkg", Town);

    std::string values(const char* field, const char* format)
    {
        const auto outcome = run({ "values", m_town, field, "--theme", "Vie", "--format", format });
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        return outcome.out;
    }
};

TEST_F(InfoValuesCommandTest, InfoTellsProgramsWhatIsThere)
{
    const auto outcome = run({ "info", m_town, "--json" });

    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(Json::parse(outcome.out), Json::parse(R"({
        "tables": [
            { "name": "Strade", "rows": 4, "fields": [
                { "name": "Nome", "format": "text", "type": "user", "required": true },
                { "name": "Tipo", "format": "list", "type": "user", "required": false },
                { "name": "Aperta", "format": "boolean", "type": "user", "required": false },
                { "name": "Corsie", "format": "integer", "type": "user", "required": false },
                { "name": "Larghezza", "format": "decimal", "type": "user", "required": false },
                { "name": "Rilievo", "format": "date", "type": "user", "required": false },
                { "name": "Area", "format": "decimal", "type": "area", "required": false } ] },
            { "name": "Case", "rows": 2, "fields": [
                { "name": "Piani", "format": "integer", "type": "user", "required": false } ] } ],
        "themes": [
            { "name": "Vie", "table": "Strade", "entities": 4, "geometry": "points",
              "coordinates": "2d" },
            { "name": "Edifici", "table": "Case", "entities": 2, "geometry": "polygons",
              "coordinates": "3d" } ] })"));
}

TEST_F(InfoValuesCommandTest, InfoTellsPeopleTheSame)
{
    const auto outcome = run({ "info", m_town });

    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("  Tipo")),
        "theme Vie: 4 points, 2d, table Strade\n"
        "theme Edifici: 2 polygons, 3d, table Case\n"
        "table Strade: 4 rows\n"
        "  Nome: text, required\n");
}

TEST_F(InfoValuesCommandTest, ValuesAscendWithCountsAndNoValueLast)
{
    EXPECT_EQ(values("Corsie", "csv"), "value,count\r\n-3,1\r\n2,2\r\n,1\r\n");
    EXPECT_EQ(values("Tipo", "csv"), "value,count\r\nStrada,2\r\nVia,1\r\n,1\r\n");
    EXPECT_EQ(values("Rilievo", "csv"), "value,count\r\n31/12/1969,1\r\n05/03/2016,2\r\n,1\r\n");
    EXPECT_EQ(Json::parse(values("Aperta", "json")),
        Json::parse(R"([{"value":false,"count":1},{"value":true,"count":2},
                        {"value":null,"count":1}])"));
    EXPECT_EQ(values("Corsie", "table"),
        "value  count\n"
        "-----  -----\n"
        "   -3      1\n"
        "    2      2\n"
        "           1\n");
}

TEST_F(InfoValuesCommandTest, DecimalsThatAreWrittenAlikeShareALineButNotInJson)
{
    EXPECT_EQ(values("Larghezza", "csv"), "value,count\r\n3.46,2\r\n10.00,1\r\n,1\r\n");
    EXPECT_EQ(Json::parse(values("Larghezza", "json")),
        Json::parse(R"([{"value":3.456,"count":1},{"value":3.4561,"count":1},
                        {"value":10,"count":1},{"value":null,"count":1}])"));
}

TEST_F(InfoValuesCommandTest, AnUnknownFieldIsRefused)
{
    const auto outcome = run({ "values", m_town, "Quota", "--theme", "Vie" });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "tematica: there is no field named Quota (table Strade)\n");
}

TEST_F(InfoValuesCommandTest, FilesThatCannotBeReadAreRefusedInOneLine)
{
    const std::string files[] = { m_folder.path("missing.gpkg"), m_folder.path("missing.shp"),
        m_folder.path(), m_folder.file("empty.gpkg", ""), m_folder.file("empty.shp", ""),
        m_folder.file("text.gpkg", "no library"), m_folder.file("text.shp", "no shapefile") };
    for (const auto& file : files) {
        const auto outcome = run({ "info", file });
        EXPECT_EQ(outcome.exitCode, 1) << file;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.rfind("tematica: ", 0), 0u) << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
    }
}

TEST(HelpTest, HelpAndVersionGoToStandardOutput)
{
    const auto help = run({ "--help" });
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_EQ(help.err, "");
    for (const char* command : { "info", "query", "values", "import", "export" })
        EXPECT_NE(help.out.find(command), std::string::npos) << command;

    const auto version = run({ "--version" });
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.rfind("tematica ", 0), 0u);

    EXPECT_EQ(run({ "query", "--help" }).exitCode, 0);
}

} // namespace
