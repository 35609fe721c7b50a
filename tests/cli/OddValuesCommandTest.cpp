// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/cli/Program.h"
#include "tests/cli/Town.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <limits>
#include <map>

// Names, texts and coordinates that no format of the output has room for as they are.

using namespace cli_test;

namespace {

using Json = nlohmann::json;

#define REPLACEMENT "\xEF\xBF\xBD"

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

using Vertices = std::vector<std::array<double, 3>>;

/// A library of one theme with heights, one part an entity.
void makeShapes(const std::string& path, gis::EntType type, const std::vector<Vertices>& shapes)
{
    gis::CLibGis facade;
    embedded::Library& library = *embedded::Library::of(&facade);
    gis::CDBTable* table = library.createTable(orv::String("Rilievo"));
    table->addField("N", gis::FieldFormat::Integer);
    table->addRows(static_cast<int>(shapes.size()));
    gis::CTheme* theme
        = library.createTheme(table, orv::String("Rilievo"), type, gis::EntTypeCoords::XYZ, 0);
    for (int row = 0; row < table->rowCount(); ++row) {
        const Vertices& vertices = shapes[static_cast<std::size_t>(row)];
        theme->entities().addEntity(table->row(row));
        double* place = theme->entities().addPart(static_cast<int>(vertices.size()));
        for (const auto& vertex : vertices)
            place = std::copy(vertex.begin(), vertex.end(), place);
    }
    ASSERT_TRUE(embedded::saveLibraryAs(facade, path).ok());
}

class OddValuesCommandTest : public testing::Test {
protected:
    /// The features' shapes; what is no JSON fails the test.
    std::vector<Json> geometries()
    {
        const auto outcome = run({ "query", m_shapes, "1 = 1", "--format", "geojson" });
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        EXPECT_TRUE(Json::accept(outcome.out)) << outcome.out;
        std::vector<Json> found;
        const Json collection = Json::parse(outcome.out);
        for (const auto& feature : collection.at("features"))
            found.push_back(feature.at("geometry"));
        return found;
    }

    Folder m_folder;
    std::string m_shapes = m_folder.path("shapes.gpkg");
    std::string m_texts = m_folder.library("texts.gpkg",
        "table T (\"Citt\xE0\" text, N integer);"
        "rows T: ('caff\xE8', 1) ('caff\xC3\xA8', 2) ('\xF0\x9F', 3) ('due\nrighe', 4);"
        "theme T: points 2d on T; ents T: 0 [0 0], 1 [1 1], 2 [2 2], 3 [3 3]");
};

TEST_F(OddValuesCommandTest, AHeightThatIsNoNumberIsLeftOut)
{
    makeShapes(m_shapes, gis::EntType::Lines,
        { { { 0, 0, 5 }, { 1, 1, NoNumber } }, { { 0, 0, Infinite }, { 1, 1, 6 } } });

    const auto found = geometries();

    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].at("coordinates"), Json::parse("[[0,0,5],[1,1]]"));
    EXPECT_EQ(found[1].at("coordinates"), Json::parse("[[0,0],[1,1,6]]"));
}

TEST_F(OddValuesCommandTest, AShapeWithoutAPlaceHasNoGeometry)
{
    makeShapes(m_shapes, gis::EntType::Lines,
        { { { 0, 0, 5 }, { NoNumber, 1, 5 } }, { { 0, -Infinite, 5 }, { 1, 1, 5 } },
            { { 2, 3, 4 }, { 5, 6, 7 } } });

    const auto found = geometries();

    ASSERT_EQ(found.size(), 3U) << "their values are answered all the same";
    EXPECT_TRUE(found[0].is_null()) << found[0];
    EXPECT_TRUE(found[1].is_null()) << found[1];
    EXPECT_EQ(found[2].at("coordinates"), Json::parse("[[2,3,4],[5,6,7]]"));
}

TEST_F(OddValuesCommandTest, PointsAndPolygonsAreToldTheSameWay)
{
    makeShapes(m_shapes, gis::EntType::Points, { { { 1, 2, NoNumber } }, { { 1, NoNumber, 3 } } });
    const auto points = geometries();
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].at("coordinates"), Json::parse("[1,2]"));
    EXPECT_TRUE(points[1].is_null());

    makeShapes(m_shapes, gis::EntType::Polygons,
        { { { 0, 0, 1 }, { 0, 4, 1 }, { 4, Infinite, 1 }, { 0, 0, 1 } } });
    const auto polygons = geometries();
    ASSERT_EQ(polygons.size(), 1U);
    EXPECT_TRUE(polygons[0].is_null());
}

TEST_F(OddValuesCommandTest, CsvShowsBytesThatAreNoTextAsSuch)
{
    const auto outcome = run({ "query", m_texts, "1 = 1", "--format", "csv" });

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
        "#,Citt" REPLACEMENT ",N\r\n"
        "1,caff" REPLACEMENT ",1\r\n"
        "2,caff\xC3\xA8,2\r\n"
        "3," REPLACEMENT REPLACEMENT ",3\r\n"
        "4,\"due\nrighe\",4\r\n");
}

TEST_F(OddValuesCommandTest, ATableShowsThemToo)
{
    const auto outcome = run({ "query", m_texts, "N <> 4" });

    EXPECT_EQ(outcome.out,
        "#  Citt" REPLACEMENT "  N\n"
        "-  -----  -\n"
        "1  caff" REPLACEMENT "  1\n"
        "2  caff\xC3\xA8  2\n"
        "3  " REPLACEMENT REPLACEMENT "     3\n");
}

TEST_F(OddValuesCommandTest, ValuesShowThemToo)
{
    const auto outcome = run({ "values", m_texts, "Citt\xE0", "--format", "csv" });

    EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("caff" REPLACEMENT ",1\r\n"), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find('\xE0'), std::string::npos);
    for (const char* format : { "json", "geojson" })
        EXPECT_TRUE(Json::accept(run({ "query", m_texts, "1 = 1", "--format", format }).out))
            << format;
}

TEST_F(OddValuesCommandTest, InfoShowsANameOnOneLineWithoutCommandsForTheTerminal)
{
    const auto named = m_folder.library("named.gpkg",
        "table \"Tab\tella\" (\"Cam\npo\" text); theme \"Vie\n\x1B[31mrosse\x7F\": points 2d on "
        "\"Tab\tella\"");

    const auto outcome = run({ "info", named });

    EXPECT_EQ(outcome.out,
        "theme Vie  [31mrosse : 0 points, 2d, table Tab ella\n"
        "table Tab ella: 0 rows\n"
        "  Cam po: text\n");
    EXPECT_EQ(Json::parse(run({ "info", named, "--json" }).out).at("themes").at(0).at("name"),
        "Vie\n\x1B[31mrosse\x7F")
        << "programs get the name itself";
}

TEST_F(OddValuesCommandTest, ErrorsShowNamesAsText)
{
    const auto named = m_folder.library("named.gpkg",
        "table T (A text); theme \"Citt\xE0\x1B[31m\": points 2d on T;"
        "theme \"Vie\": points 2d on T");

    EXPECT_EQ(run({ "query", named, "1 = 1", "--theme", "zz\xFF" }).err,
        "tematica: there is no theme named zz" REPLACEMENT " (themes: Citt" REPLACEMENT
        " [31m, Vie)\n");
    EXPECT_EQ(run({ "query", m_texts, "caff\xE8 = 1", "--count" }).err,
        "tematica: there is no field named caff" REPLACEMENT
        "; terms that name it cannot be computed\n");
}

TEST_F(OddValuesCommandTest, AnExportSaysWhatAShapefileCannotHold)
{
    const auto report = m_folder.path("report.json");
    const auto codes = [&](const std::string& library) {
        const auto outcome
            = run({ "export", library, "--to", m_folder.path(), "--report", report });
        EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
        const Json written = Json::parse(contents(report)).at("themes").at(0);
        std::map<std::string, int> counts;
        for (const auto& finding : written.at("findings"))
            if (finding.at("warning") == true)
                counts[finding.at("code")] = finding.at("count");
        return counts;
    };

    makeShapes(m_shapes, gis::EntType::Lines,
        { { { 0, 0, NoNumber }, { 1, 1, 5 } }, { { 2, 3, 4 }, { 5, 6, 7 } } });
    EXPECT_EQ(codes(m_shapes), (std::map<std::string, int> { { "shapes-not-written", 1 } }));
    const auto shapes
        = run({ "query", m_folder.path("Rilievo.shp"), "1 = 1", "--format", "geojson" });
    const Json features = Json::parse(shapes.out).at("features");
    ASSERT_EQ(features.size(), 2U) << "its row is kept";
    EXPECT_TRUE(features[0].at("geometry").is_null());

    EXPECT_EQ(codes(m_texts).at("text-replaced"), 2);
    EXPECT_EQ(run({ "values", m_folder.path("T.shp"), "N" }).err, "") << "a file without fault";
}

TEST_F(OddValuesCommandTest, ALimitBeyondAllRowsGivesAllRows)
{
    const auto all = run({ "query", m_texts, "1 = 1", "--format", "json" });
    for (const char* limit :
        { "3000000000", "2147483648", "99999999999999999999999999", "000000000000000000004" }) {
        const auto limited
            = run({ "query", m_texts, "1 = 1", "--format", "json", "--limit", limit });
        EXPECT_EQ(limited.exitCode, 0) << limit << ": " << limited.err;
        EXPECT_EQ(limited.out, all.out) << limit;
    }
    EXPECT_EQ(
        Json::parse(
            run({ "query", m_texts, "1 = 1", "--format", "json", "--limit", "0000000000003" }).out)
            .size(),
        3U)
        << "noughts before a number change nothing";
}

} // namespace
