// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/base/Palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace {

using embedded::classColour;
using embedded::ClassColours;
using embedded::Ground;
using embedded::paletteColour;

using Triple = std::array<double, 3>;
using Matrix = std::array<Triple, 3>;

// Source: Machado, Oliveira and Fernandes, 2009, full severity, over linear light.
constexpr Matrix Protan = { Triple { 0.152286, 1.052583, -0.204868 },
    Triple { 0.114503, 0.786281, 0.099216 }, Triple { -0.003882, -0.048116, 1.051998 } };
constexpr Matrix Deutan = { Triple { 0.367322, 0.860646, -0.227968 },
    Triple { 0.280085, 0.672501, 0.047413 }, Triple { -0.011820, 0.042940, 0.968881 } };
// Source: Ottosson, Oklab, 2020.
constexpr Matrix ToCones = { Triple { 0.4122214708, 0.5363325363, 0.0514459929 },
    Triple { 0.2119034982, 0.6806995451, 0.1073969566 },
    Triple { 0.0883024619, 0.2817188376, 0.6299787005 } };
constexpr Matrix ToLab = { Triple { 0.2104542553, 0.7936177850, -0.0040720468 },
    Triple { 1.9779984951, -2.4285922050, 0.4505937099 },
    Triple { 0.0259040371, 0.7827717662, -0.8086757660 } };

Triple times(const Matrix& matrix, const Triple& vector)
{
    Triple out {};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            out[i] += matrix[i][j] * vector[j];
    return out;
}

Triple linear(std::uint32_t colour)
{
    Triple out {};
    for (std::size_t i = 0; i < 3; ++i) {
        const double c = static_cast<double>(colour >> (16 - 8 * i) & 255u) / 255.0;
        out[i] = c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    }
    return out;
}

double luminance(std::uint32_t colour)
{
    const Triple light = linear(colour);
    return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}

double distance(Triple a, Triple b)
{
    for (Triple* one : { &a, &b }) {
        for (double& c : *one)
            c = std::clamp(c, 0.0, 1.0);
        *one = times(ToCones, *one);
        for (double& c : *one)
            c = std::cbrt(c);
        *one = times(ToLab, *one);
    }
    return 100.0 * std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
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

TEST(PaletteTest, TheFirstEightDifferForEverySightAndInGrey)
{
    for (int i = 0; i < 8; ++i)
        for (int j = 0; j < i; ++j) {
            const std::uint32_t a = paletteColour(classColour(i));
            const std::uint32_t b = paletteColour(classColour(j));
            const Triple greyA = { luminance(a), luminance(a), luminance(a) };
            const Triple greyB = { luminance(b), luminance(b), luminance(b) };
            SCOPED_TRACE(std::to_string(classColour(i)) + " and " + std::to_string(classColour(j)));
            EXPECT_GE(distance(linear(a), linear(b)), 9.3);
            EXPECT_GE(distance(times(Deutan, linear(a)), times(Deutan, linear(b))), 9.3);
            EXPECT_GE(distance(times(Protan, linear(a)), times(Protan, linear(b))), 9.3);
            EXPECT_GE(2 * distance(greyA, greyB), 9.3);
        }
}

TEST(PaletteTest, AllClassColoursDifferForEverySight)
{
    for (int i = 0; i < 24; ++i)
        for (int j = 0; j < i; ++j) {
            const Triple a = linear(paletteColour(classColour(i)));
            const Triple b = linear(paletteColour(classColour(j)));
            SCOPED_TRACE(std::to_string(classColour(i)) + " and " + std::to_string(classColour(j)));
            EXPECT_GE(distance(a, b), 4.7);
            EXPECT_GE(distance(times(Deutan, a), times(Deutan, b)), 4.7);
            EXPECT_GE(distance(times(Protan, a), times(Protan, b)), 4.7);
        }
}

TEST(PaletteTest, ColoursBeginAnewAfterTheLast)
{
    EXPECT_EQ(classColour(24), classColour(0));
    EXPECT_EQ(classColour(-1), classColour(23));
}

} // namespace
