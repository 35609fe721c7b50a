// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/Library.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>

namespace {

using embedded::predefinedValue;
using gis::EntType;
using gis::EntTypeCoords;
using gis::FieldType;
using orv::CPolyValue;

struct Drawn {
    explicit Drawn(EntType type, EntTypeCoords coords = EntTypeCoords::XY)
        : table(facade.CreateTable("T"))
        , theme(facade.CreateTheme(table, "a", type, coords, 0))
    {
        table->addRows(1);
        theme->entities().addEntity(table->row(0));
    }
    void part(std::initializer_list<double> coordinates)
    {
        const int stride = theme->entities().stride();
        double* out = theme->entities().addPart(static_cast<int>(coordinates.size()) / stride);
        std::copy(coordinates.begin(), coordinates.end(), out);
    }
    [[nodiscard]] double number(FieldType type) const
    {
        return predefinedValue(type, *theme, 0).GetDoubleValue();
    }

    orv::CChangeTransactionManager changes;
    gis::CLibGis facade { &changes };
    gis::CDBTable* table;
    gis::CTheme* theme;
};

TEST(PredefinedValueTest, AHoleTakesItsAreaOffAndMovesTheCentroid)
{
    Drawn drawn(EntType::Polygons);
    drawn.part({ 0, 0, 0, 4, 4, 4, 4, 0, 0, 0 });
    drawn.part({ 0, 0, 2, 0, 2, 4, 0, 4, 0, 0 });

    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Area), 8);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Perimeter2D), 28);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidX), 3);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidY), 2);
    EXPECT_DOUBLE_EQ(gis::FCalcXCentPredef(drawn.theme->entities().entity(0)), 3);
}

TEST(PredefinedValueTest, LargeCoordinatesLoseNoDigits)
{
    Drawn drawn(EntType::Polygons);
    const double x = 1700000;
    const double y = 5000000;
    drawn.part({ x, y, x, y + 0.5, x + 0.5, y + 0.5, x + 0.5, y, x, y });

    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Area), 0.25);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidX), x + 0.25);
}

TEST(PredefinedValueTest, LengthsCountTheHeightsOnlyInThreeDimensions)
{
    Drawn drawn(EntType::Lines, EntTypeCoords::XYZ);
    drawn.part({ 0, 0, 0, 3, 4, 12 });

    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Perimeter2D), 5);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Perimeter3D), 13);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidZ), 6);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::Area), 0);
}

TEST(PredefinedValueTest, ALineWithoutLengthHasTheMeanOfItsVertices)
{
    Drawn drawn(EntType::Lines);
    drawn.part({ 2, 3, 2, 3 });

    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidX), 2);
    EXPECT_DOUBLE_EQ(drawn.number(FieldType::CentroidY), 3);
}

TEST(PredefinedValueTest, ANullShapeHasNoMeasures)
{
    const Drawn drawn(EntType::Polygons);

    for (int type = 0; type <= 14; ++type)
        EXPECT_TRUE(predefinedValue(static_cast<FieldType>(type), *drawn.theme, 0).IsEmpty());
    EXPECT_TRUE(predefinedValue(FieldType::Area, *drawn.theme, 5).IsEmpty());
    EXPECT_EQ(gis::FCalcZCentPredef(drawn.theme->entities().entity(0)), 0.0);
}

TEST(PredefinedValueTest, CellsFollowTheLinkedPointAndComeBackWithIt)
{
    Drawn drawn(EntType::Points);
    drawn.table->addField("nome", gis::FieldFormat::Text)->type = FieldType::PointName;
    drawn.table->addField("foto", gis::FieldFormat::Text)->type = FieldType::Photo5;
    drawn.part({ 1, 2 });
    auto& library = *embedded::Library::of(&drawn.facade);
    embedded::LinkedPoint* point = library.addLinkedPoint();
    drawn.theme->entities().linkPoint(0, 0, 0, point);
    embedded::LinkedPoint wanted;
    wanted.name = "P1";
    wanted.photos[4] = "a.jpg";

    library.setLinkedPoint(point, wanted);

    EXPECT_EQ(drawn.table->column(0).textAt(0), "P1");
    EXPECT_EQ(drawn.table->column(1).textAt(0), "a.jpg");
    gis::CEnt* ent = drawn.facade.GetEnt(drawn.theme, 0);
    gis::CEntVert* vertex = drawn.facade.GetEntVert(drawn.facade.GetEntPart(ent, 0), 0);
    EXPECT_NE(gis::CLibGis::GetController(vertex), nullptr);
    EXPECT_EQ(drawn.facade.GetEntVert(drawn.facade.GetEntPart(ent, 0), 1), nullptr);
    drawn.changes.Undo();
    EXPECT_FALSE(drawn.table->column(0).hasValue(0));
    EXPECT_EQ(point->name, orv::String());
}

} // namespace
