// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace storetest;
using embedded::FindingCode;
using embedded::OpenMode;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* Town = R"(
table Lampioni (nome text, watt integer, posa date);
rows Lampioni: ('a', 60, 01/01/2020), ('b', 100, -), ('c', -, -), ('senza', 5, -);
theme Lampioni: points 2d on Lampioni active;
ents Lampioni: 0 [1 1], 1 [2 2], 2 [3 3]
)";

/// A library of ours that another program changed with plain SQL while nobody had it open.
class OtherProgramsTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(embedded::saveLibraryAs(*support::makeLibrary(Town), path).ok());
    }
    std::string changedBy(const std::string& sql)
    {
        library.reset();
        runSql(path, sql);
        return reopened();
    }
    std::string reopened()
    {
        report = {};
        library.reset();
        library = opened(path, OpenMode::Write, &report);
        return library ? support::printTable(*library->GetTable(0)) : "";
    }
    bool says(FindingCode code)
    {
        for (const auto& finding : report.findings)
            if (finding.code == code)
                return true;
        return false;
    }
    /// Why layers were left out, as "name: reason", in the order in which it is said.
    std::vector<std::string> skipped()
    {
        std::vector<std::string> layers;
        for (const auto& finding : report.findings)
            if (finding.code == FindingCode::LayerSkipped) {
                EXPECT_EQ(finding.severity, embedded::FindingSeverity::Warning);
                layers.push_back(finding.subject + ": " + finding.detail);
            }
        return layers;
    }
    void expectSavedWell()
    {
        orv::CPolyValue value("toccato");
        library->SetRowValue(library->GetRow(library->GetTable(0), 0), 0, value);
        const auto saved = embedded::saveLibrary(*library);
        ASSERT_TRUE(saved.ok()) << saved.error().detail;
        const std::string before = imageOf(*library);
        reopened();
        EXPECT_EQ(imageOf(*library), before);
        EXPECT_TRUE(report.findings.empty());
        EXPECT_EQ(sqlAnswer(path, "SELECT rtreecheck('rtree_Lampioni_geom')"), "ok");
    }

    CTemporaryFolder folder;
    std::string path = folder.file("citta.gpkg");
    embedded::Report report;
    std::unique_ptr<gis::CLibGis> library;
};

} // namespace

TEST_F(OtherProgramsTest, AnUntouchedFileSaysNothing)
{
    reopened();
    EXPECT_TRUE(report.findings.empty());
}

TEST_F(OtherProgramsTest, RowsAddedAreEntitiesWithTheirValues)
{
    const std::string text
        = changedBy("INSERT INTO Lampioni (nome, geom) SELECT 'nuovo', geom FROM Lampioni WHERE "
                    "fid = 2");

    EXPECT_THAT(text, HasSubstr("('nuovo', -, -)"));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 4);
    EXPECT_TRUE(says(FindingCode::RowsTakenOver));
    expectSavedWell();
}

TEST_F(OtherProgramsTest, RowsDeletedAreGone)
{
    const std::string text = changedBy("DELETE FROM Lampioni WHERE nome = 'b'");

    EXPECT_THAT(text, Not(HasSubstr("'b'")));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 2);
    EXPECT_EQ(library->GetTheme(0)->geometry().part(1, 0).x(0), 3);
    EXPECT_TRUE(says(FindingCode::RowsTakenOver));
    expectSavedWell();
}

TEST_F(OtherProgramsTest, RowsRenumberedKeepTheirValues)
{
    const std::string text = changedBy("UPDATE Lampioni SET fid = 50 WHERE nome = 'a'");

    EXPECT_THAT(text, HasSubstr("('a', 60, 01/01/2020)"));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 3);
    expectSavedWell();
}

TEST_F(OtherProgramsTest, ColumnsAddedAreFields)
{
    const std::string text = changedBy("ALTER TABLE Lampioni ADD COLUMN altezza REAL;"
                                       "UPDATE Lampioni SET altezza = 4.25 WHERE nome = 'b'");

    EXPECT_THAT(text, HasSubstr("altezza decimal 2"));
    EXPECT_THAT(text, HasSubstr("('b', 100, -, 4.25)"));
    EXPECT_THAT(text, HasSubstr("('senza', 5, -, -)"));
    EXPECT_TRUE(says(FindingCode::ColumnTakenOver));
    expectSavedWell();
}

TEST_F(OtherProgramsTest, ColumnsRemovedFromAllTablesAreGone)
{
    const std::string text
        = changedBy("ALTER TABLE Lampioni DROP COLUMN watt; ALTER TABLE Lampioni_2 DROP COLUMN "
                    "watt");

    EXPECT_THAT(text, Not(HasSubstr("watt")));
    EXPECT_THAT(text, HasSubstr("('a', 01/01/2020)"));
    EXPECT_TRUE(says(FindingCode::ColumnGone));
    expectSavedWell();
}

TEST_F(OtherProgramsTest, AColumnRemovedFromTheLayerOnlyIsEmptyThere)
{
    const std::string text = changedBy("ALTER TABLE Lampioni DROP COLUMN watt");

    EXPECT_THAT(text, HasSubstr("('a', -, 01/01/2020)"));
    EXPECT_THAT(text, HasSubstr("('senza', 5, -)"));
    expectSavedWell();
}

TEST_F(OtherProgramsTest, ValuesOfOtherTypesAreConvertedOrEmptyAndSaid)
{
    const std::string text = changedBy("UPDATE Lampioni SET watt = 'tanti' WHERE nome = 'a';"
                                       "UPDATE Lampioni SET watt = 75.0 WHERE nome = 'b';"
                                       "UPDATE Lampioni SET posa = 'ieri' WHERE nome = 'c';"
                                       "UPDATE Lampioni SET nome = 12 WHERE nome = 'c'");

    EXPECT_THAT(text, HasSubstr("('a', -, 01/01/2020)"));
    EXPECT_THAT(text, HasSubstr("('b', 75, -)"));
    EXPECT_THAT(text, HasSubstr("('12', -, -)"));
    EXPECT_TRUE(says(FindingCode::CellsEmptied));
}

TEST_F(OtherProgramsTest, DaysThatAreNotAndNumbersBeyondAllAreSaid)
{
    std::string text = changedBy("UPDATE Lampioni SET posa = '2016-02-31' WHERE nome = 'a'");
    EXPECT_THAT(text, HasSubstr("('a', 60, -)"));
    EXPECT_TRUE(says(FindingCode::CellsEmptied));

    text = changedBy("UPDATE Lampioni SET posa = '2016-02-29' WHERE nome = 'a'");
    EXPECT_THAT(text, HasSubstr("('a', 60, 29/02/2016)"));
    EXPECT_FALSE(says(FindingCode::CellsEmptied));

    text = changedBy("UPDATE Lampioni SET watt = -9223372036854775808 WHERE nome = 'a'");
    EXPECT_THAT(text, HasSubstr("('a', -, 29/02/2016)"));
    EXPECT_TRUE(says(FindingCode::CellsEmptied));
}

TEST_F(OtherProgramsTest, ShapesMovedGiveTheNewExtent)
{
    changedBy("UPDATE Lampioni SET geom = (SELECT geom FROM Lampioni WHERE fid = 3) WHERE fid = 1");

    const embedded::Box box = library->GetTheme(0)->extent();
    EXPECT_EQ(box.minX, 2);
    EXPECT_EQ(box.maxX, 3);
}

TEST_F(OtherProgramsTest, ALayerRemovedIsSaidAndTheRestOpens)
{
    const std::string text
        = changedBy("DROP TABLE rtree_Lampioni_geom; DROP TABLE Lampioni; DELETE FROM "
                    "gpkg_geometry_columns; DELETE FROM gpkg_contents WHERE table_name = "
                    "'Lampioni'");

    EXPECT_EQ(library->GetNumThemes(), 0);
    EXPECT_THAT(text, HasSubstr("('senza', 5, -)"));
    EXPECT_TRUE(says(FindingCode::LayerSkipped));
}

TEST_F(OtherProgramsTest, ATableMadeAnewWithoutOurTriggersIsReadAsItIs)
{
    const std::string text = changedBy(
        "CREATE TABLE temporary AS SELECT * FROM Lampioni; DROP TABLE Lampioni;"
        "CREATE TABLE Lampioni (fid INTEGER PRIMARY KEY, nome TEXT, watt MEDIUMINT, posa DATE, "
        "geom POINT); INSERT INTO Lampioni SELECT fid + 10, nome, watt, posa, geom FROM temporary; "
        "DROP TABLE temporary");

    EXPECT_THAT(text, HasSubstr("('a', 60, 01/01/2020)"));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 3);
}

TEST_F(OtherProgramsTest, AnotherReferenceSystemIsTaken)
{
    changedBy("INSERT INTO gpkg_spatial_ref_sys VALUES ('x', 3003, 'EPSG', 3003, 'WKT', NULL);"
              "UPDATE gpkg_geometry_columns SET srs_id = 3003");

    EXPECT_EQ(library->GetTheme(0)->referenceSystem.code, 3003);
    EXPECT_EQ(library->GetTheme(0)->referenceSystem.definition, "WKT");
}

TEST_F(OtherProgramsTest, ALayerAddedIsSaidAndStaysInTheFile)
{
    const char* const AddLayer
        = "CREATE TABLE Panchine (fid INTEGER PRIMARY KEY, posti INTEGER, geom POINT);"
          "INSERT INTO Panchine SELECT fid, 3, geom FROM Lampioni;"
          "INSERT INTO gpkg_contents (table_name, data_type, identifier, srs_id) "
          "VALUES ('Panchine', 'features', 'Panchine', -1);"
          "INSERT INTO gpkg_geometry_columns VALUES ('Panchine', 'geom', 'POINT', -1, 0, 0);"
          "CREATE TABLE Elenco (fid INTEGER PRIMARY KEY, voce TEXT);"
          "INSERT INTO gpkg_contents (table_name, data_type, identifier) "
          "VALUES ('Elenco', 'Attributes', 'Elenco');"
          "INSERT INTO gpkg_contents (table_name, data_type, identifier) "
          "VALUES ('Foto', 'tiles', 'Foto')";

    const std::string text = changedBy(AddLayer);

    EXPECT_THAT(skipped(),
        testing::ElementsAre(
            "Panchine: added by another program", "Elenco: added by another program"))
        << "pictures are nobody's layer";
    EXPECT_EQ(library->GetNumTables(), 1);
    EXPECT_EQ(library->GetNumThemes(), 1);
    EXPECT_THAT(text, HasSubstr("('a', 60, 01/01/2020)"));

    orv::CPolyValue value("toccato");
    library->SetRowValue(library->GetRow(library->GetTable(0), 0), 0, value);
    ASSERT_TRUE(embedded::saveLibrary(*library).ok());
    library.reset();
    EXPECT_EQ(sqlAnswer(path, "SELECT count(*), sum(posti) FROM Panchine"), "3|9");
    EXPECT_EQ(sqlAnswer(path,
                  "SELECT count(*) FROM gpkg_contents WHERE table_name IN "
                  "('Panchine', 'Elenco', 'Foto')"),
        "3");
}

TEST_F(OtherProgramsTest, ALayerThatGdalAddsIsSaid)
{
    ASSERT_TRUE(isInstalled("ogr2ogr")) << "install gdal-bin, or run ./test, which does";
    library.reset();
    const std::string other = folder.file("altro.geojson");
    writeBytes(other,
        R"({"type":"FeatureCollection","features":[{"type":"Feature","properties":{"n":1},)"
        R"("geometry":{"type":"Point","coordinates":[1,2]}}]})");
    programOutput("ogr2ogr -f GPKG -update '" + path + "' '" + other + "' -nln Panchine");
    ASSERT_EQ(sqlAnswer(path, "SELECT count(*) FROM Panchine"), "1");

    const std::string text = reopened();

    EXPECT_THAT(skipped(), testing::ElementsAre("Panchine: added by another program"));
    EXPECT_THAT(text, HasSubstr("('a', 60, 01/01/2020)"));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 3);
}

TEST_F(OtherProgramsTest, ALayerRenamedIsToldByBothNames)
{
    const std::string text = changedBy("PRAGMA legacy_alter_table = ON;"
                                       "ALTER TABLE Lampioni RENAME TO Fari;"
                                       "UPDATE gpkg_contents SET table_name = 'Fari' "
                                       "WHERE table_name = 'Lampioni';"
                                       "UPDATE gpkg_geometry_columns SET table_name = 'Fari' "
                                       "WHERE table_name = 'Lampioni'");

    EXPECT_THAT(skipped(),
        testing::ElementsAre(
            "Lampioni: removed by another program", "Fari: added by another program"));
    EXPECT_EQ(library->GetNumThemes(), 0);
    EXPECT_THAT(text, HasSubstr("('senza', 5, -)"));
}

TEST_F(OtherProgramsTest, ALayerWhoseNameOnlyChangedItsCaseIsTheSame)
{
    const std::string text = changedBy(
        "UPDATE gpkg_contents SET table_name = 'LAMPIONI' WHERE table_name = 'Lampioni'");

    EXPECT_THAT(skipped(), testing::IsEmpty());
    EXPECT_THAT(text, HasSubstr("('a', 60, 01/01/2020)"));
    EXPECT_EQ(library->GetNoEnts(library->GetTheme(0)), 3);
}
