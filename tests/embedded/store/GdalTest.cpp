// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/store/LibraryImage.h"
#include "tests/embedded/store/StoreTesting.h"
#include "tests/support/LibraryNotation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace storetest;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* Town = R"(
table Strade (codice text required, corsie integer, larghezza decimal 2, illuminata boolean,
              rilievo date, tipo list ('Via', 'Piazza'));
rows Strade: ('S1', 2, 3.5, yes, 01/02/2020, 'Via'), ('S2', -, -, no, -, -),
             ('Città', 1, 0.25, -, 31/12/1899, 'Piazza'), ('sola', -, -, -, -, -);
theme Vie: lines 3d on Strade active;
ents Vie: 0 [0 0 5, 10 0 6 | 20 0 1, 30 2.5 1], 1 [], 2 [1 1 1, 2 2 2];
table Punti (nome text);
rows Punti: ('a'), ('b');
theme "Punti quotati": points m on Punti;
ents "Punti quotati": 0 [1.5 2.5 9], 1 [-3 4 8];
table Lotti (n integer);
rows Lotti: (1);
theme Lotti: polygons 2d on Lotti;
ents Lotti: 0 [0 0, 0 10, 10 10, 10 0, 0 0 | 2 2, 4 2, 4 4, 2 4, 2 2]
)";

class GdalTest : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(isInstalled("ogrinfo")) << "install gdal-bin, or run ./test, which does";
        library = support::makeLibrary(Town);
        path = folder.file("citta.gpkg");
        ASSERT_TRUE(embedded::saveLibraryAs(*library, path).ok());
    }
    std::string layer(const std::string& name, const std::string& options = "-so")
    {
        return programOutput("ogrinfo -ro " + options + " '" + path + "' '" + name + "'");
    }

    CTemporaryFolder folder;
    std::unique_ptr<gis::CLibGis> library;
    std::string path;
};

} // namespace

TEST_F(GdalTest, EveryThemeIsALayerWithItsCountFieldsAndExtent)
{
    EXPECT_THAT(layer("Vie"),
        AllOf(HasSubstr("Geometry: 3D Multi Line String"), HasSubstr("Feature Count: 3"),
            HasSubstr("Extent: (0.000000, 0.000000) - (30.000000, 2.500000)"),
            HasSubstr("codice: String"), HasSubstr("corsie: Integer"), HasSubstr("larghezza: Real"),
            HasSubstr("illuminata: Integer(Boolean)"), HasSubstr("rilievo: Date"),
            HasSubstr("tipo: String"), HasSubstr("FID Column = fid"), Not(HasSubstr("ERROR"))));
    EXPECT_THAT(layer("Punti quotati"),
        AllOf(HasSubstr("Geometry: Measured Point"), HasSubstr("Feature Count: 2"),
            HasSubstr("Extent: (-3.000000, 2.500000) - (1.500000, 4.000000)")));
    EXPECT_THAT(layer("Lotti"), AllOf(HasSubstr("Geometry: Multi Polygon"), HasSubstr("Count: 1")));
    EXPECT_THAT(layer("Strade"), AllOf(HasSubstr("Geometry: None"), HasSubstr("Count: 1")));
}

TEST_F(GdalTest, ValuesAndShapesReadTheSame)
{
    const std::string streets = layer("Vie", "-al");

    EXPECT_THAT(streets,
        AllOf(HasSubstr("codice (String) = Città"), HasSubstr("corsie (Integer) = 2"),
            HasSubstr("larghezza (Real) = 3.5"), HasSubstr("illuminata (Integer(Boolean)) = 1"),
            HasSubstr("rilievo (Date) = 1899/12/31"), HasSubstr("corsie (Integer) = (null)"),
            HasSubstr("MULTILINESTRING Z ((0 0 5,10 0 6),(20 0 1,30.0 2.5 1))")));
    EXPECT_THAT(layer("Lotti", "-al"),
        HasSubstr("MULTIPOLYGON (((0 0,0 10,10 10,10 0,0 0),(2 2,4 2,4 4,2 4,2 2)))"));
}

TEST_F(GdalTest, NothingIsSaidAgainstTheFile)
{
    EXPECT_THAT(programOutput("ogrinfo -ro -al -so '" + path + "'"),
        AllOf(Not(HasSubstr("Warning")), Not(HasSubstr("ERROR"))));
}

TEST_F(GdalTest, RectanglesFindTheSameThroughTheIndex)
{
    EXPECT_THAT(layer("Vie", "-so -spat 25 1 35 3"), HasSubstr("Feature Count: 1"));
    EXPECT_THAT(layer("Vie", "-so -spat 50 50 60 60"), HasSubstr("Feature Count: 0"));
}

// GDAL writes through the triggers that the library made.
TEST_F(GdalTest, WhatGdalWritesIsTakenOver)
{
    library.reset();
    const std::string output = programOutput("ogrinfo -q '" + path
        + "' -sql \"UPDATE Vie SET codice = 'nuovo' WHERE "
          "fid = 2\" && ogrinfo -q '"
        + path
        + "' -sql \"INSERT INTO 'Punti quotati' (nome, geom) SELECT 'c', geom FROM "
          "'Punti quotati' WHERE fid = 1\"");
    EXPECT_THAT(output, Not(HasSubstr("ERROR")));

    const auto again = opened(path);
    ASSERT_TRUE(again);
    EXPECT_THAT(support::printTable(*again->FindTable("Strade")), HasSubstr("'nuovo'"));
    EXPECT_EQ(again->GetNoEnts(again->FindTheme("Punti quotati")), 3);
    EXPECT_EQ(sqlAnswer(path, "SELECT rtreecheck('rtree_Punti quotati_geom')"), "ok");
}

TEST_F(GdalTest, AFileThatGdalCopiedIsReadAsAnotherProgramsFile)
{
    const std::string copy = folder.file("copia.gpkg");
    programOutput("ogr2ogr -f GPKG '" + copy + "' '" + path + "' Vie Lotti");

    const auto again = opened(copy);

    ASSERT_TRUE(again);
    ASSERT_EQ(again->GetNumThemes(), 2);
    EXPECT_EQ(again->GetNoEnts(again->FindTheme("Vie")), 3);
    EXPECT_EQ(embedded::libraryPath(*again), "");
    embedded::EntityStore& lots
        = embedded::Library::of(again.get())->findTheme("Lotti")->geometry();
    ASSERT_EQ(lots.partCount(0), 2);
    EXPECT_EQ(lots.part(0, 0).y(1), 10) << "outer rings run clockwise";
}
