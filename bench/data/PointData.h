// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace gis {
class CLibGis;
class CTheme;
} // namespace gis

namespace bench {

/// The measured table as plain arrays: what a hand-written program would keep.
/// Shapes: all arrays have `count` elements; a value of `Missing…` stands for no value.
struct PointArrays {
    static constexpr std::int32_t MissingInteger = INT32_MIN;
    static constexpr std::uint32_t MissingText = 0xFFFFFFFFu;
    static constexpr std::uint8_t MissingBoolean = 2;
    int count = 0;
    std::vector<std::string> names; // distinct names
    std::vector<std::string> kinds; // distinct kinds
    std::vector<std::uint32_t> name;
    std::vector<std::uint32_t> kind;
    std::vector<std::uint8_t> active;
    std::vector<std::int32_t> lanes;
    std::vector<double> width; // NaN = no value
    std::vector<std::int32_t> surveyDay;
    std::vector<double> x;
    std::vector<double> y;
};

/// `count` points, the same for the same seed: Nome (200,000 names, 2 % missing), Tipo (12 values,
/// "Strada" 25 %), Attivo (5 % missing), Corsie 1 to 8 (10 % missing), Larghezza 0.00 to 50.00 (5 %
/// missing), Rilievo 2010 to 2019.
PointArrays makePoints(int count, std::uint64_t seed = 7);

/// The same data as theme and table "Punti" of an empty library.
gis::CTheme* fillLibrary(gis::CLibGis& facade, const PointArrays& points);

} // namespace bench
