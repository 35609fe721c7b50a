// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/contract/Contract.h"

namespace {

using gis::CLibGis;

CONTRACT_SUITE(EntitiesContract);

TEST_P(EntitiesContract, EntitiesAndRowsFindEachOther)
{
    CLibGis& library = make("table T (i integer); rows T: (10), (20), (30); theme P: points on T;"
                            "ents P: 2 [1 2], 0 [3 4]");
    gis::CDBTable* table = library.GetTable(0);
    gis::CTheme* theme = library.GetTheme(0);

    ASSERT_EQ(library.GetNoEnts(theme), 2);
    gis::CEnt* first = library.GetEnt(theme, 0);
    gis::CEnt* second = library.GetEnt(theme, 1);
    EXPECT_EQ(library.GetRow(first), library.GetRow(table, 2));
    EXPECT_EQ(library.GetRow(second), library.GetRow(table, 0));
    EXPECT_EQ(library.GetEnt(library.GetRow(table, 2)), first);
    EXPECT_EQ(library.GetEnt(library.GetRow(table, 0)), second);
    EXPECT_EQ(library.GetEnt(library.GetRow(table, 1)), nullptr);
    EXPECT_EQ(CLibGis::GetTheme(first), theme);
    EXPECT_EQ(library.GetEnt(theme, 2), nullptr);
    EXPECT_EQ(library.GetEnt(theme, -1), nullptr);
}

TEST_P(EntitiesContract, PartsAndVerticesAreFoundByPosition)
{
    CLibGis& library = make("table T (i integer); rows T: (1), (2); theme L: lines on T;"
                            "ents L: 0 [0 0, 1 0 | 5 5, 6 6, 7 7], 1 []");
    gis::CEnt* ent = library.GetEnt(library.GetTheme(0), 0);
    gis::CEnt* shapeless = library.GetEnt(library.GetTheme(0), 1);

    ASSERT_NE(library.GetEntPart(ent, 0), nullptr);
    gis::CEntPart* second = library.GetEntPart(ent, 1);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(library.GetEntPart(ent, 2), nullptr);
    EXPECT_EQ(library.GetEntPart(ent, -1), nullptr);
    EXPECT_NE(library.GetEntVert(second, 2), nullptr);
    EXPECT_EQ(library.GetEntVert(second, 3), nullptr);
    EXPECT_EQ(library.GetEntVert(second, -1), nullptr);
    EXPECT_EQ(library.GetEntPart(shapeless, 0), nullptr);
}

TEST_P(EntitiesContract, VerticesTellTheirLinkedPoint)
{
    CLibGis& library = make("table T (i integer); rows T: (1), (2); theme P: points on T;"
                            "ents P: 0 [0 0] point 'P1' 'x', 1 [1 1]");
    gis::CTheme* theme = library.GetTheme(0);
    const auto controllerOf = [&](int index) {
        return CLibGis::GetController(
            library.GetEntVert(library.GetEntPart(library.GetEnt(theme, index), 0), 0));
    };

    EXPECT_NE(controllerOf(0), nullptr);
    EXPECT_EQ(controllerOf(1), nullptr);
    EXPECT_EQ(CLibGis::GetController(nullptr), nullptr);
}

TEST_P(EntitiesContract, NullEntitiesAreHarmless)
{
    CLibGis& library = make("");

    EXPECT_EQ(library.GetRow(static_cast<gis::CEnt*>(nullptr)), nullptr);
    EXPECT_EQ(library.GetEnt(static_cast<orv::CResultRow*>(nullptr)), nullptr);
    EXPECT_EQ(library.GetEntPart(nullptr, 0), nullptr);
    EXPECT_EQ(library.GetEntVert(nullptr, 0), nullptr);
    EXPECT_EQ(gis::FCalcXCentPredef(nullptr), 0.0);
    EXPECT_EQ(gis::FCalcYCentPredef(nullptr), 0.0);
    EXPECT_EQ(gis::FCalcZCentPredef(nullptr), 0.0);
}

constexpr const char* Predefined
    = "table T (name text from name, descr text from description, area decimal 2 from area,"
      "p2 decimal 2 from perimeter2d, p3 decimal 2 from perimeter3d, x decimal 2 from x,"
      "y decimal 2 from y, z decimal 2 from z, sketch text from sketch, photo text from photo1,"
      "own text); rows T: (-, -, -, -, -, -, -, -, -, -, 'mio');";

TEST_P(EntitiesContract, PolygonsHaveAreaPerimeterAndWeightedCentroid)
{
    // A square of 4 with a hole of 1 in a corner: rings closed, the hole turns the other way.
    CLibGis& library = make(std::string(Predefined)
        + "theme A: polygons on T;"
          "ents A: 0 [0 0, 0 4, 4 4, 4 0, 0 0 | 1 1, 2 1, 2 2, 1 2, 1 1]");
    gis::CTheme* theme = library.GetTheme(0);
    gis::CEnt* ent = library.GetEnt(theme, 0);

    library.RecalcAllPredefValues(theme, ent);

    gis::CDBTable* table = library.GetTable(0);
    EXPECT_EQ(cell(library, table, 0, 0), "-");
    EXPECT_EQ(cell(library, table, 0, 2), "15");
    EXPECT_EQ(cell(library, table, 0, 3), "20");
    EXPECT_EQ(cell(library, table, 0, 4), "20");
    EXPECT_NEAR(gis::FCalcXCentPredef(ent), (16 * 2.0 - 1.5) / 15, 1e-12);
    EXPECT_NEAR(gis::FCalcYCentPredef(ent), (16 * 2.0 - 1.5) / 15, 1e-12);
    EXPECT_EQ(gis::FCalcZCentPredef(ent), 0.0);
    orv::CPolyValue x;
    library.GetRowValue(library.GetRow(ent), 5, x);
    EXPECT_EQ(x, orv::CPolyValue(gis::FCalcXCentPredef(ent)));
    EXPECT_EQ(cell(library, table, 0, 10), "'mio'") << "the user's fields stay";
}

TEST_P(EntitiesContract, LinesHaveLengthInTwoAndThreeDimensions)
{
    CLibGis& library = make(std::string(Predefined)
        + "theme L: lines 3d on T; ents L: 0 [0 0 0, 3 0 4 | 10 0 0, 10 1 0]");
    gis::CTheme* theme = library.GetTheme(0);
    gis::CEnt* ent = library.GetEnt(theme, 0);

    library.RecalcAllPredefValues(theme, ent);

    gis::CDBTable* table = library.GetTable(0);
    EXPECT_EQ(cell(library, table, 0, 2), "0");
    EXPECT_EQ(cell(library, table, 0, 3), "4");
    EXPECT_EQ(cell(library, table, 0, 4), "6");
    EXPECT_EQ(gis::FCalcZCentPredef(ent), 1.0) << "the mean of the vertices' heights";
}

TEST_P(EntitiesContract, PointsHaveTheirMeanAndTheTextsOfTheLinkedPoint)
{
    CLibGis& library = make(
        std::string(Predefined) + "theme P: points 3d on T; ents P: 0 [2 3 4] point 'P1' 'angolo'");
    gis::CTheme* theme = library.GetTheme(0);
    gis::CEnt* ent = library.GetEnt(theme, 0);

    library.RecalcAllPredefValues(theme, ent);

    EXPECT_EQ(
        rows(library, library.GetTable(0)), "('P1', 'angolo', 0, 0, 0, 2, 3, 4, -, -, 'mio')");
}

TEST_P(EntitiesContract, DegenerateShapesHaveTheMeanOfTheirVertices)
{
    CLibGis& library = make("table T (i integer); rows T: (1), (2), (3); theme A: polygons on T;"
                            "ents A: 0 [1 1, 3 1, 5 1, 1 1], 1 [7 8, 7 8, 7 8, 7 8], 2 []");
    gis::CTheme* theme = library.GetTheme(0);

    EXPECT_DOUBLE_EQ(gis::FCalcYCentPredef(library.GetEnt(theme, 0)), 1.0);
    EXPECT_DOUBLE_EQ(gis::FCalcXCentPredef(library.GetEnt(theme, 1)), 7.0);
    EXPECT_DOUBLE_EQ(gis::FCalcYCentPredef(library.GetEnt(theme, 1)), 8.0);
    EXPECT_EQ(gis::FCalcXCentPredef(library.GetEnt(theme, 2)), 0.0);
}

} // namespace
