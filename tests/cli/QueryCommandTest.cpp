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

class QueryCommandTest : public testing::Test {
protected:
    Folder m_folder;
    std::string m_town = m_folder.library("town.gpkg", Town);
    std::string m_lamps = m_folder.library("lamps.gpkg", Lamps);

    /// Numbers of the entities found, as CSV gives them.
    std::string found(const std::string& filter)
    {
        const auto outcome = run({ "query", m_town, filter, "--theme", "Vie", "--fields", "Corsie",
            "--format", "json" });
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        std::string numbers;
        for (const auto& row : Json::parse(outcome.out))
            numbers += row.at("#").dump();
        return numbers;
    }
};

TEST_F(QueryCommandTest, EntitiesForWhichTheConditionIsTrueAreFound)
{
    const std::pair<const char*, const char*> cases[] = {
        { "Corsie = 2", "14" },
        { "-5 < Corsie", "124" },
        { "Nome LIKE 'C%'", "24" },
        { "Corsie IS NULL", "3" },
        { "Rilievo = Date(5,3,2016)", "14" },
        { "Larghezza = 3.46", "14" },
        { "Aperta = true AND Corsie > 1", "14" },
        { "1 = 1", "1234" },
        { "1 = 2", "" },
        { "AREA = 0 OR corsie < 0", "1234" },
    };
    for (const auto& [filter, expected] : cases)
        EXPECT_EQ(found(filter),
            std::string_view(filter) == "AREA = 0 OR corsie < 0" ? found("Area = 0 OR Corsie < 0")
                                                                 : expected)
            << filter;
}

TEST_F(QueryCommandTest, CsvIsQuotedAndShowsWhatPeopleRead)
{
    const auto outcome = run({ "query", m_town, "1 = 1", "--theme", "Vie", "--format", "csv",
        "--fields", "Nome,Tipo,Aperta,Corsie,Larghezza,Rilievo" });

    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out,
        "#,Nome,Tipo,Aperta,Corsie,Larghezza,Rilievo\r\n"
        "1,\"Via \"\"Roma\"\", 1\",Via,S\xC3\xAC,2,3.46,05/03/2016\r\n"
        "2,Citt\xC3\xA0,Strada,No,-3,10.00,31/12/1969\r\n"
        "3,,,,,,\r\n"
        "4,Corso,Strada,S\xC3\xAC,2,3.46,05/03/2016\r\n");
}

TEST_F(QueryCommandTest, JsonHasNativeTypesAndNullForNoValue)
{
    const auto outcome = run({ "query", m_town, "1 = 1", "--theme", "Vie", "--format", "json",
        "--fields", "Nome,Aperta,Corsie,Larghezza,Rilievo" });
    const auto rows = Json::parse(outcome.out);

    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0],
        Json::parse(R"({"#":1,"Nome":"Via \"Roma\", 1","Aperta":true,"Corsie":2,"Larghezza":3.456,
                        "Rilievo":"2016-03-05"})"));
    EXPECT_EQ(rows[1].at("Rilievo"), "1969-12-31");
    EXPECT_EQ(
        rows[2], Json::parse(R"({"#":3,"Nome":null,"Aperta":null,"Corsie":null,"Larghezza":null,
                        "Rilievo":null})"));
}

TEST_F(QueryCommandTest, NothingFoundIsAnEmptyAnswerInEachFormat)
{
    const std::vector<std::string> words { "query", m_lamps, "N > 9", "--fields", "N", "--format" };
    const auto as = [&](const char* format) {
        auto call = words;
        call.emplace_back(format);
        return run(call).out;
    };

    EXPECT_EQ(as("csv"), "#,N\r\n");
    EXPECT_EQ(as("json"), "[]\n");
    EXPECT_EQ(as("table"), "#  N\n-  -\n");
    EXPECT_EQ(Json::parse(as("geojson")).at("features").size(), 0u);
}

TEST_F(QueryCommandTest, TablesAreAlignedByWhatATerminalShows)
{
    const auto outcome
        = run({ "query", m_town, "1 = 1", "--theme", "Vie", "--fields", "Nome,Corsie" });

    EXPECT_EQ(outcome.out,
        "#  Nome           Corsie\n"
        "-  -------------  ------\n"
        "1  Via \"Roma\", 1       2\n"
        "2  Citt\xC3\xA0              -3\n"
        "3\n"
        "4  Corso               2\n");
}

TEST_F(QueryCommandTest, GeoJsonHasTheShapesAsTheStandardWantsThem)
{
    const auto points = Json::parse(
        run({ "query", m_town, "1 = 1", "--theme", "Vie", "--format", "geojson" }).out);
    EXPECT_EQ(points.at("type"), "FeatureCollection");
    ASSERT_EQ(points.at("features").size(), 4u);
    const auto geometry = [&](std::size_t i) { return points.at("features")[i].at("geometry"); };
    EXPECT_EQ(geometry(0), Json::parse(R"({"type":"Point","coordinates":[1,2]})"));
    EXPECT_EQ(geometry(1), Json::parse(R"({"type":"Point","coordinates":[3.5,-4]})"));
    EXPECT_TRUE(geometry(2).is_null());
    EXPECT_EQ(geometry(3), Json::parse(R"({"type":"MultiPoint","coordinates":[[5,6],[7,8]]})"));
    EXPECT_EQ(points.at("features")[1].at("id"), 2);
    EXPECT_EQ(points.at("features")[1].at("properties").at("Corsie"), -3);
}

TEST_F(QueryCommandTest, PolygonRingsRunCounterClockwiseOutsideAndHolesTheOtherWay)
{
    const auto polygons = Json::parse(
        run({ "query", m_town, "1 = 1", "--theme", "Edifici", "--format", "geojson" }).out);
    const auto geometry = [&](std::size_t i) { return polygons.at("features")[i].at("geometry"); };

    EXPECT_EQ(geometry(0), Json::parse(R"({"type":"Polygon","coordinates":[
        [[0,0,1],[10,0,1],[10,10,1],[0,10,1],[0,0,1]],
        [[2,2,1],[2,4,1],[4,4,1],[4,2,1],[2,2,1]]]})"));
    EXPECT_EQ(geometry(1).at("type"), "MultiPolygon");
    EXPECT_EQ(geometry(1).at("coordinates").size(), 2u);
}

TEST_F(QueryCommandTest, CountAndLimit)
{
    EXPECT_EQ(run({ "query", m_lamps, "Altezza > 1", "--count" }).out, "3\n");
    EXPECT_EQ(run({ "query", m_lamps, "Altezza > 1", "--count", "--limit", "1" }).out, "3\n");
    EXPECT_EQ(
        run({ "query", m_lamps, "N > 1", "--limit", "2", "--format", "csv", "--fields", "N" }).out,
        "#,N\r\n2,2\r\n3,3\r\n");
    EXPECT_EQ(run({ "query", m_lamps, "N > 1", "--limit", "0", "--format", "json" }).out, "[]\n");
}

TEST_F(QueryCommandTest, AThemeIsNeededOnlyAmongSeveral)
{
    const auto without = run({ "query", m_town, "1 = 1", "--count" });
    EXPECT_EQ(without.exitCode, 2);
    EXPECT_NE(without.err.find("--theme"), std::string::npos);
    EXPECT_EQ(without.out, "");

    const auto unknown = run({ "query", m_town, "1 = 1", "--theme", "Ponti" });
    EXPECT_EQ(unknown.exitCode, 1);
    EXPECT_EQ(unknown.err, "tematica: there is no theme named Ponti (themes: Vie, Edifici)\n");

    EXPECT_EQ(run({ "query", m_town, "1 = 1", "--theme", "vie", "--count" }).out, "4\n");
}

TEST_F(QueryCommandTest, UnknownFieldsOfTheOutputAreRefused)
{
    const auto outcome = run({ "query", m_lamps, "1 = 1", "--fields", "N,Quota" });

    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.err, "tematica: there is no field named Quota (table Lampioni)\n");
    EXPECT_EQ(outcome.out, "");
}

TEST_F(QueryCommandTest, ARefusedFilterEndsWithThree)
{
    const std::pair<const char*, const char*> refused[] = {
        { "", "1: it ends too early" },
        { "N", "2: it ends too early" },
        { "Altezza = 1,5", "12: \",\" cannot stand there" },
        { "N = 1 IN", "7: \"IN\" cannot stand there" },
        { "N = = 2", "5: \"=\" cannot stand there" },
    };
    for (const auto& [filter, place] : refused) {
        const auto outcome = run({ "query", m_lamps, filter, "--count" });
        EXPECT_EQ(outcome.exitCode, 3) << filter;
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err,
            std::string("Syntax error: parse error\ntematica: the filter is refused at position ")
                + place + "\n");
    }
}

TEST_F(QueryCommandTest, AFilterNestedTooDeepIsToldAsSuch)
{
    const std::string deep(12000, '(');
    const std::string slip
        = "it is nested too deep there; use fewer parentheses and calls one inside the other\n";

    const auto refused = run({ "query", m_lamps, deep + "N = 1" + std::string(12000, ')') });
    EXPECT_EQ(refused.exitCode, 3);
    EXPECT_EQ(refused.err,
        "Syntax error: parser stack overflow\n"
        "tematica: the filter is refused at position 9999: "
            + slip);

    const auto shortened = run({ "query", m_lamps, "(N = 1) AND " + deep, "--count" });
    EXPECT_EQ(shortened.exitCode, 0);
    EXPECT_EQ(shortened.out, "1\n");
    EXPECT_EQ(shortened.err.find("Syntax error: parser stack overflow\n"
                                 "tematica: only the condition before position "),
        0U)
        << shortened.err;
    EXPECT_NE(shortened.err.find("tematica: the rest is refused at position "), std::string::npos);
    EXPECT_NE(shortened.err.find(slip), std::string::npos) << shortened.err;
}

TEST_F(QueryCommandTest, ATextOrNameWithoutAnEndIsToldWhereItBegins)
{
    const std::string text = "the text that begins there has no end; close it with a quote (')\n";
    const std::string name = "the name that begins there has no end; close it with a bracket (])\n";
    const std::pair<const char*, std::string> refused[] = {
        { "Nome = 'x", "8: " + text },
        { "Nome = '", "8: " + text },
        { "Nome <> 'a' AND Nome = 'it''s' OR 'x", "28: \"'s'\" cannot stand there\n" },
        { "Nome = 'it''s'", "12: \"'s'\" cannot stand there\n" }, // two texts, both closed
        { "[abc", "1: " + name },
        { "N = 1 [abc = 'x]", "7: \"[abc = 'x]\" cannot stand there\n" },
        { "N = 1 OR [abc = 'x'", "10: " + name },
    };
    for (const auto& [filter, place] : refused) {
        const auto outcome = run({ "query", m_lamps, filter, "--count" });
        EXPECT_EQ(outcome.exitCode, 3) << filter;
        EXPECT_EQ(outcome.err,
            "Syntax error: parse error\ntematica: the filter is refused at position " + place)
            << filter;
    }

    EXPECT_EQ(run({ "query", m_lamps, "(N = 1) AND Nome = 'x", "--count" }).err,
        "Syntax error: parse error\n"
        "tematica: only the condition before position 20 was used\n"
        "tematica: the rest is refused at position 20: "
            + text);
}

TEST_F(QueryCommandTest, AShortenedFilterAnswersAndSaysWhere)
{
    const auto outcome = run({ "query", m_lamps, "(N = 1) AND", "--count" });

    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "1\n");
    EXPECT_EQ(outcome.err,
        "Syntax error: parse error\n"
        "tematica: only the condition before position 12 was used\n");
}

TEST_F(QueryCommandTest, AShortenedFilterThatIsNotWhatStandsThereIsShown)
{
    const auto outcome = run({ "query", m_lamps, "NOT (N = 1) OR", "--count" });

    EXPECT_EQ(outcome.out, "1\n") << "the last whole condition, without the NOT";
    EXPECT_EQ(outcome.err,
        "Syntax error: parse error\n"
        "tematica: only the condition before position 15 was used\n"
        "tematica: that is: N = 1\n");
}

TEST_F(QueryCommandTest, NamesThatAreNotThereAreToldOnceAndSelectNothing)
{
    const auto outcome = run(
        { "query", m_lamps, "Quota > 1 OR Quota IS NULL OR Metà(N) = 1 OR N = 2", "--count" });

    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "0\n") << "the first term cannot be computed, so no row is selected";
    EXPECT_EQ(outcome.err,
        "tematica: there is no field named Quota; terms that name it cannot be computed\n"
        "tematica: there is no function named Metà; terms that name it cannot be computed\n");
}

TEST_F(QueryCommandTest, AReaderThatGoesAwayEndsItQuietly)
{
    std::string rows = "table T (A text); rows T:";
    std::string ents = "; theme T: points on T; ents T:";
    for (int i = 0; i < 20000; ++i) {
        rows += " ('0123456789')";
        ents += (i > 0 ? ", " : " ") + std::to_string(i) + " [0 0]";
    }
    const auto large = m_folder.library("large.gpkg", rows + ents);
    const std::vector<std::string> words { "query", large, "1 = 1", "--format", "csv" };

    for (const bool isIgnored : { false, true }) {
        const auto outcome = runInto(words, 4, isIgnored);
        EXPECT_EQ(outcome.out, "#,A\r");
        EXPECT_EQ(outcome.err, "");
        EXPECT_NE(outcome.exitCode, 0);
    }
}

} // namespace
