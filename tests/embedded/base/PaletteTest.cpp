// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/base/Palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

using embedded::classColour;
using embedded::ClassColours;
using embedded::Ground;
using embedded::paletteColour;

double luminance(std::uint32_t colour)
{
    const double weights[] = { 0.2126, 0.7152, 0.0722 };
    double sum = 0.0;
    for (int i = 0; i < 3; ++i) {
        const double c = static_cast<double>(colour >> (16 - 8 * i) & 255u) / 255.0;
        sum += weights[i] * (c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
    }
    return sum;
}

double contrast(std::uint32_t a, std::uint32_t b)
{
    const double one = luminance(a);
    const double other = luminance(b);
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

TEST(PaletteTest, TheNamedColoursHaveTheirIndexes)
{
    const std::uint32_t named[] = { 0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x0000FF, 0xFF00FF };
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(paletteColour(i + 1), named[i]);
}

TEST(PaletteTest, TheForegroundStandsOutFromItsGround)
{
    EXPECT_EQ(paletteColour(7, Ground::Light), 0x000000u);
    EXPECT_EQ(paletteColour(7, Ground::Dark), 0xFFFFFFu);
}

TEST(PaletteTest, IndexesOutsideThePaletteAreTheForeground)
{
    for (const int index : { -1, 0, 256, 100000 }) {
        EXPECT_EQ(paletteColour(index, Ground::Light), 0x000000u);
        EXPECT_EQ(paletteColour(index, Ground::Dark), 0xFFFFFFu);
    }
}

TEST(PaletteTest, ClassColoursAreDistinctAndNeverTheForeground)
{
    std::set<std::uint32_t> colours;
    for (const int index : ClassColours)
        colours.insert(paletteColour(index));

    EXPECT_EQ(colours.size(), ClassColours.size());
    EXPECT_EQ(std::count(ClassColours.begin(), ClassColours.end(), 7), 0);
}

TEST(PaletteTest, ClassColoursStandOutFromWhiteAndFromADarkGround)
{
    for (const int index : ClassColours) {
        EXPECT_GE(contrast(paletteColour(index), 0xFFFFFF), 1.9) << index;
        EXPECT_GE(contrast(paletteColour(index), 0x202020), 1.9) << index;
    }
}

TEST(PaletteTest, TheFirstEightDifferInGrey)
{
    for (int a = 0; a < 8; ++a)
        for (int b = 0; b < a; ++b)
            EXPECT_GE(contrast(paletteColour(classColour(a)), paletteColour(classColour(b))), 1.1)
                << classColour(a) << " and " << classColour(b);
}

TEST(PaletteTest, ColoursBeginAnewAfterTheLast)
{
    EXPECT_EQ(classColour(24), classColour(0));
    EXPECT_EQ(classColour(-1), classColour(23));
}

} // namespace
