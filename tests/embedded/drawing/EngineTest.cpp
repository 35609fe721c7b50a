// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/drawing/Engine.h"

#include "embedded/model/Library.h"

#include "host/cad/Symbols.h"

#include <gtest/gtest.h>

#include <numbers>

namespace {

using orv::String;

class EngineTest : public testing::Test {
protected:
    EngineTest() { implementation.setLibrary(&library); }
    gis::CLibGis library;
    CDravoEng engine;
    embedded::Engine& implementation = embedded::Engine::of(engine);
};

TEST_F(EngineTest, ANewLayerIsAChangeOfTheLibrary)
{
    EXPECT_FALSE(library.GetModifiedFlag());
    engine.AddDrawing(1, "Strade", false, false, false);
    EXPECT_TRUE(library.GetModifiedFlag());
}

TEST_F(EngineTest, LayersAreFoundByNameAndByNumber)
{
    const std::int64_t streets = engine.AddDrawing(1, "Strade", false, false, false);
    const std::int64_t trees = engine.AddDrawing(1, "Alberi", false, false, false);

    EXPECT_NE(streets, 0);
    EXPECT_NE(streets, trees);
    EXPECT_EQ(engine.AddDrawing(1, "Strade", true, true, true), streets);
    EXPECT_EQ(engine.GetDrawingFromName(1, "Alberi"), trees);
    EXPECT_EQ(engine.GetDrawingFromName(1, "Case"), 0);
    EXPECT_EQ(engine.GetDrawingFromName(1, ""), 0);
    String name("prima");
    EXPECT_TRUE(engine.GetDrawingName(trees, name));
    EXPECT_EQ(name, String("Alberi"));
    EXPECT_FALSE(engine.GetDrawingName(0, name));
    EXPECT_EQ(name, String());
    std::vector<String> names;
    engine.GetAllDrawingsNamesForType(1, names);
    EXPECT_EQ(names, (std::vector<String> { "Strade", "Alberi" }));
}

TEST_F(EngineTest, WithoutALibraryThereAreNoLayers)
{
    implementation.setLibrary(nullptr);

    std::vector<String> names { "rest" };
    engine.GetAllDrawingsNamesForType(1, names);
    String name;
    EXPECT_FALSE(engine.GetDrawingName(1, name));
    EXPECT_EQ(engine.GetDrawingFromName(1, "Strade"), 0);
}

TEST_F(EngineTest, AnglesAreShownInDegreesOrInRadians)
{
    EXPECT_DOUBLE_EQ(engine.UnitsToRadians(90), std::numbers::pi / 2);
    EXPECT_DOUBLE_EQ(engine.RadiansToUnits(std::numbers::pi), 180);
    implementation.setDegrees(false);
    EXPECT_DOUBLE_EQ(engine.UnitsToRadians(1.5), 1.5);
    EXPECT_DOUBLE_EQ(engine.RadiansToUnits(1.5), 1.5);
}

TEST_F(EngineTest, StylesAndLineTypesAreFixed)
{
    ASSERT_EQ(engine.GetNoStyles(), 3);
    EXPECT_EQ(engine.GetStyleName(engine.GetStyle(0)), String("Standard"));
    EXPECT_EQ(engine.GetStyleName(99), String());
    ASSERT_EQ(engine.GetNuTotLineType(), 5);
    ASSERT_NE(engine.GetLineType(0), nullptr);
    EXPECT_EQ(engine.GetLineType(0)->name, String("Continuous"));
    EXPECT_EQ(engine.GetLineType(-1), nullptr);
    EXPECT_EQ(engine.GetLineType(5), nullptr);
}

TEST_F(EngineTest, QuestionsThatNobodyAnswersAreCancelled)
{
    std::vector<String> pending;
    String name;
    short colour = 3;
    int hatch = 2;

    EXPECT_FALSE(engine.DlgInsertNewDrawingName(nullptr, pending, 1, "a", "b", name));
    EXPECT_FALSE(engine.DlgColorChoice(nullptr, colour, false));
    EXPECT_FALSE(engine.ShowDlgSelHatchType(hatch));
    EXPECT_EQ(colour, 3);
    EXPECT_EQ(hatch, 2);
    engine.CenterViewAt(0, 1, 2, 3);
}

TEST_F(EngineTest, WhatTheDialogsSendIsKept)
{
    double centred = 0;
    embedded::EngineHooks hooks;
    hooks.centreView = [&](double x, double, double) { centred = x; };
    implementation.setHooks(std::move(hooks));

    engine.Notify(6, 2, nullptr);
    engine.StopExecuteCommand();
    engine.StopExecuteCommand();
    engine.CenterViewAt(0, 12.5, 2, 3);

    ASSERT_EQ(implementation.notices().size(), 1u);
    EXPECT_EQ(implementation.notices().front().code, 6);
    EXPECT_EQ(implementation.notices().front().value, 2);
    EXPECT_EQ(implementation.stopCount(), 2);
    EXPECT_EQ(centred, 12.5);
}

TEST(SymbolManagerTest, AnUnknownSymbolIsNull)
{
    CDocSymbolManager symbols;
    EXPECT_EQ(symbols.GetSymbol(-1), nullptr);
    EXPECT_EQ(symbols.GetSymbol(1000000), nullptr);
}

} // namespace
