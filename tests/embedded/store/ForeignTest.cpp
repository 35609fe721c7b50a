// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/TestData.h"

#include "host/base/Numbers.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <regex>

using namespace storetest;
using embedded::FindingCode;
using embedded::Library;

namespace {

constexpr const char* Base = R"(
CREATE TABLE gpkg_spatial_ref_sys (srs_name TEXT, srs_id INTEGER PRIMARY KEY, organization TEXT,
  organization_coordsys_id INTEGER, definition TEXT, description TEXT);
INSERT INTO gpkg_spatial_ref_sys VALUES ('Monte Mario', 3003, 'epsg', 3003, 'PROJCS["x"]', NULL);
CREATE TABLE gpkg_contents (table_name TEXT PRIMARY KEY, data_type TEXT, identifier TEXT,
  srs_id INTEGER);
CREATE TABLE gpkg_geometry_columns (table_name TEXT, column_name TEXT, geometry_type_name TEXT,
  srs_id INTEGER, z TINYINT, m TINYINT);
)";

/// A GeoPackage made with plain SQL, as any program might.
class ForeignTest : public testing::Test {
protected:
    void make(const std::string& sql)
    {
        sqlite3* database = nullptr;
        ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
        char* message = nullptr;
        const int code = sqlite3_exec(database, (Base + sql).c_str(), nullptr, nullptr, &message);
        EXPECT_EQ(code, SQLITE_OK) << message;
        sqlite3_close(database);
    }
    void makeTable(const std::string& columns, const std::string& values)
    {
        make("INSERT INTO gpkg_contents VALUES ('t', 'attributes', 't', 0);"
             "CREATE TABLE t (id INTEGER PRIMARY KEY, "
            + columns + "); INSERT INTO t VALUES " + values);
    }
    std::string printed()
    {
        library = opened(path, embedded::OpenMode::Write, &report);
        if (!library)
            return "";
        return support::printTable(*library->GetTable(0));
    }
    std::int64_t counted(FindingCode code)
    {
        std::int64_t count = 0;
        for (const auto& finding : report.findings)
            if (finding.code == code)
                count += std::max<std::int64_t>(finding.count, 1);
        return count;
    }
    gis::FieldFormat format(int field)
    {
        return Library::of(library.get())->tables()[0]->field(field)->format;
    }

    CTemporaryFolder folder;
    std::string path = folder.file("altro.gpkg");
    embedded::Report report;
    std::unique_ptr<gis::CLibGis> library;
};

// Little-endian WKB with GeoPackage's head, as SQL: kind, then the rest as hexadecimal digits.
std::string shape(const std::string& wkb)
{
    return "x'4750000100000000" + wkb + "'";
}
const std::string PointWkb = "0101000000000000000000F03F0000000000000040"; // 1 2
const std::string PointZWkb = "01E9030000000000000000F03F00000000000000400000000000000840"; // 1 2 3
const std::string LineWkb
    = "010200000002000000000000000000F03F00000000000000400000000000000840000000000000F03F";
const std::string CurveWkb = "0108000000"
                             "00000000";

} // namespace

TEST_F(ForeignTest, DeclaredTypesBecomeFormats)
{
    makeTable("a TEXT(10), b BOOLEAN, c MEDIUMINT, d DOUBLE, e DATE, f DATETIME, g VARCHAR(5)",
        "(1, 'x', 1, 7, 2.5, '2020-02-29', '2020-02-29T10:00:00Z', 'y')");

    const std::string text = printed();

    using gis::FieldFormat;
    const std::vector<FieldFormat> wanted
        = { FieldFormat::Text, FieldFormat::Boolean, FieldFormat::Integer, FieldFormat::Decimal,
              FieldFormat::Date, FieldFormat::Date, FieldFormat::Text };
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(format(i), wanted[static_cast<std::size_t>(i)]) << i;
    EXPECT_NE(text.find("('x', yes, 7, 2.5, 29/02/2020, 29/02/2020, 'y')"), std::string::npos)
        << text;
    EXPECT_EQ(counted(FindingCode::TimeDropped), 1);
}

TEST_F(ForeignTest, WholeNumbersTakeTheFormatThatHoldsThemAll)
{
    makeTable("a INTEGER, b INTEGER, c INTEGER, d INTEGER",
        "(1, 2147483647, 2147483648, 9007199254740992, 9007199254740993), "
        "(2, -2147483648, 1, -9007199254740992, 1)");

    const std::string text = printed();

    EXPECT_EQ(format(0), gis::FieldFormat::Integer);
    EXPECT_EQ(format(1), gis::FieldFormat::Decimal);
    EXPECT_EQ(format(2), gis::FieldFormat::Decimal);
    EXPECT_EQ(format(3), gis::FieldFormat::Text);
    EXPECT_NE(text.find("'9007199254740993'"), std::string::npos) << text;
}

TEST_F(ForeignTest, DecimalsHaveTheFewestDigitsThatShowThemAll)
{
    makeTable("a REAL, b REAL, c REAL",
        "(1, 1.5, 3, 0.1234567890123), (2, 0.25, -7, 2), (3, NULL, 1e15, NULL)");
    printed();

    const auto& table = *Library::of(library.get())->tables()[0];
    EXPECT_EQ(table.field(0)->decimalDigits(), 2);
    EXPECT_EQ(table.field(1)->decimalDigits(), 0);
    EXPECT_EQ(table.field(2)->decimalDigits(), 10);
}

TEST_F(ForeignTest, BytesAreLeftOutAndOddCellsCounted)
{
    makeTable("a BLOB, b INTEGER, c DATE, d TEXT",
        "(1, x'00', 5, '2020-01-01', x'41'), (2, x'01', 'tre', 'ieri', 'ok')");

    const std::string text = printed();

    EXPECT_EQ(counted(FindingCode::FieldLeftOut), 1);
    EXPECT_EQ(counted(FindingCode::DateUnreadable), 1);
    EXPECT_EQ(counted(FindingCode::CellsEmptied), 1);
    EXPECT_NE(text.find("('5', 01/01/2020, -)"), std::string::npos) << text;
    EXPECT_NE(text.find("('tre', -, 'ok')"), std::string::npos) << text;
}

TEST_F(ForeignTest, TextsThatAreNeitherYesNorNoAndNumbersThatAreNoDatesAreCounted)
{
    makeTable(
        "a BOOLEAN, b DATE", "(1, 'forse', 20200101), (2, 'true', '2020-01-01'), (3, 0, NULL)");

    const std::string text = printed();

    EXPECT_EQ(counted(FindingCode::LogicalUnreadable), 1);
    EXPECT_EQ(counted(FindingCode::DateUnreadable), 1);
    EXPECT_NE(text.find("(-, -)"), std::string::npos) << text;
    EXPECT_NE(text.find("(yes, 01/01/2020)"), std::string::npos) << text;
}

TEST_F(ForeignTest, ALayerOfAnyGeometryTakesTheKindOfMost)
{
    make("INSERT INTO gpkg_contents VALUES ('l', 'features', 'l', 3003);"
         "INSERT INTO gpkg_geometry_columns VALUES ('l', 'g', 'GEOMETRY', 3003, 0, 0);"
         "CREATE TABLE l (k INTEGER PRIMARY KEY, g GEOMETRY, n TEXT);"
         "INSERT INTO l VALUES (5, "
        + shape(PointWkb) + ", 'a'), (9, " + shape(PointZWkb) + ", 'b'), (10, " + shape(LineWkb)
        + ", 'c'), (11, " + shape(CurveWkb) + ", 'd'), (12, NULL, 'e'), (13, x'00', 'f')");
    printed();

    ASSERT_EQ(library->GetNumThemes(), 1);
    gis::CTheme* theme = library->GetTheme(0);
    EXPECT_EQ(gis::CLibGis::GetEntType(theme), gis::EntType::Points);
    EXPECT_EQ(library->GetEntCoords(theme), gis::EntTypeCoords::XYZ);
    EXPECT_EQ(library->GetNoEnts(theme), 6);
    EXPECT_EQ(counted(FindingCode::GeometryUnsupported), 3);
    embedded::EntityStore& shapes = theme->geometry();
    EXPECT_EQ(shapes.partCount(0), 1);
    EXPECT_EQ(shapes.part(1, 0).y(0), 2);
    EXPECT_EQ(shapes.partCount(2), 0);
    EXPECT_EQ(shapes.partCount(4), 0);
    EXPECT_EQ(theme->referenceSystem.authority, "EPSG");
    EXPECT_EQ(theme->referenceSystem.code, 3003);
}

TEST_F(ForeignTest, HeightsAreKeptAlsoWhereTheLayerIsRegisteredWithout)
{
    make("INSERT INTO gpkg_contents VALUES ('l', 'features', 'l', 3003);"
         "INSERT INTO gpkg_geometry_columns VALUES ('l', 'g', 'POINT', 3003, 0, 0);"
         "CREATE TABLE l (k INTEGER PRIMARY KEY, g POINT); INSERT INTO l VALUES (5, "
        + shape(PointWkb) + "), (9, " + shape(PointZWkb) + ")");
    printed();

    gis::CTheme* theme = library->GetTheme(0);
    EXPECT_EQ(library->GetEntCoords(theme), gis::EntTypeCoords::XYZ);
    EXPECT_EQ(counted(FindingCode::GeometryUnsupported), 0);
    EXPECT_EQ(theme->geometry().part(0, 0).coordinates[2], 0);
    EXPECT_EQ(theme->geometry().part(1, 0).coordinates[2], 3);
}

TEST_F(ForeignTest, HeightsOfShapesThatTheThemeCannotTakeDoNotCount)
{
    const std::string lineZ = "01EA03000000000000";
    make("INSERT INTO gpkg_contents VALUES ('l', 'features', 'l', 3003);"
         "INSERT INTO gpkg_geometry_columns VALUES ('l', 'g', 'POINT', 3003, 2, 0);"
         "CREATE TABLE l (k INTEGER PRIMARY KEY, g POINT); INSERT INTO l VALUES (5, "
        + shape(PointWkb) + "), (9, " + shape(lineZ) + ")");
    printed();

    EXPECT_EQ(library->GetEntCoords(library->GetTheme(0)), gis::EntTypeCoords::XY);
    EXPECT_EQ(counted(FindingCode::GeometryUnsupported), 1);
}

TEST_F(ForeignTest, ViewsAndTablesWithoutKeyAreReadInTheirOrder)
{
    make(
        "INSERT INTO gpkg_contents VALUES ('v', 'attributes', 'v', 0), ('u', 'attributes', 'u', 0);"
        "CREATE TABLE u (a TEXT); INSERT INTO u VALUES ('z'), ('y'), ('x'); DELETE FROM u WHERE "
        "a = 'y'; CREATE INDEX byText ON u (a);"
        "CREATE VIEW v AS SELECT a || a AS b FROM u ORDER BY a");
    library = opened(path);

    ASSERT_TRUE(library);
    EXPECT_NE(support::printTable(*library->FindTable("v")).find("'xx'"), std::string::npos);
    const std::string rows = support::printTable(*library->FindTable("u"));
    EXPECT_LT(rows.find("'z'"), rows.find("'x'")) << rows;
}

TEST_F(ForeignTest, WhatIsRegisteredButAbsentIsSaidAndTheRestOpens)
{
    make("INSERT INTO gpkg_contents VALUES ('gone', 'features', 'gone', 0), ('t', 'attributes', "
         "'t', 0), ('pictures', 'tiles', 'pictures', 0); CREATE TABLE t (a TEXT)");
    printed();

    EXPECT_EQ(library->GetNumTables(), 1);
    EXPECT_EQ(counted(FindingCode::LayerSkipped), 1);
}

TEST_F(ForeignTest, SuchAFileIsNeverWritten)
{
    makeTable("a TEXT", "(1, 'x')");
    const std::string before = bytesOf(path);
    printed();
    orv::CPolyValue value("y");
    library->SetRowValue(library->GetRow(library->GetTable(0), 0), 0, value);

    const auto saved = embedded::saveLibrary(*library);

    EXPECT_EQ(embedded::libraryPath(*library), "");
    ASSERT_FALSE(saved.ok());
    EXPECT_EQ(saved.error().code, embedded::ErrorCode::ReadOnly);
    EXPECT_EQ(bytesOf(path), before);
    const std::string own = folder.file("mia.gpkg");
    ASSERT_TRUE(embedded::saveLibraryAs(*library, own).ok());
    EXPECT_EQ(embedded::libraryPath(*library), own);
    EXPECT_EQ(imageOf(*opened(own)), imageOf(*library));
}

// The witness is GDAL: layers, their kind, counts and fields.
TEST(ForeignFilesTest, RealGeoPackagesOpenAsGdalSeesThem)
{
    TEMATICA_NEEDS_TEST_DATA();
    ASSERT_TRUE(isInstalled("ogrinfo")) << "install gdal-bin, or run ./test, which does";
    int files = 0;
    for (const auto& entry :
        std::filesystem::recursive_directory_iterator(support::testDataFolder())) {
        if (entry.path().extension() != ".gpkg")
            continue;
        ++files;
        SCOPED_TRACE(entry.path().string());
        const auto library = opened(entry.path().string());
        ASSERT_TRUE(library);
        std::string witness = programOutput("ogrinfo -ro -al -so '" + entry.path().string() + "'");
        const std::regex layerPattern(
            R"(Layer name: ([^\n]*)\n(?:Metadata:\n(?:  [^\n]*\n)*)?Geometry: ([^\n]*)\nFeature Count: (\d+))");
        int layers = 0;
        for (std::sregex_iterator layer(witness.begin(), witness.end(), layerPattern), end;
             layer != end; ++layer, ++layers) {
            const std::string name = (*layer)[1];
            gis::CDBTable* table = library->FindTable(name.c_str());
            ASSERT_TRUE(table) << name;
            EXPECT_EQ(library->GetNumRows(table), orv_atoi(std::string_view((*layer)[3].str())));
            EXPECT_EQ(library->FindTheme(name.c_str()) != nullptr, (*layer)[2] != "None");
            const std::string all = programOutput(
                "ogrinfo -ro -al -geom=NO '" + entry.path().string() + "' '" + name + "'");
            EXPECT_EQ(
                std::count(all.begin(), all.end(), '=') > 0, library->GetNumFields(table) > 0);
        }
        EXPECT_EQ(layers, library->GetNumTables());
        EXPECT_FALSE(imageOf(*library).empty());
        const CTemporaryFolder own;
        const std::string before = imageOf(*library);
        ASSERT_TRUE(embedded::saveLibraryAs(*library, own.file("mia.gpkg")).ok());
        EXPECT_EQ(imageOf(*opened(own.file("mia.gpkg"))), before);
    }
    EXPECT_GT(files, 0);
}
