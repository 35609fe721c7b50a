// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/LibGis.h"

#include <memory>
#include <random>
#include <string>

namespace testing_query {

/// A seed for a run: TEMATICA_TEST_SEED where it is set, else a new one. Print it.
unsigned seedOfRun();

/// Order of a theme's entities against the rows of its table.
enum class EntityOrder { AsRows, Reversed, EveryThird, Shuffled };

struct RandomTableSettings {
    int rowCount = 100;
    int gapPercent = 20;
    EntityOrder order = EntityOrder::AsRows;
};

/// A library with one theme over a table of two fields of each format, filled from small sets of
/// values in which the difficult ones are frequent: limits of integers, halves and infinities among
/// decimals, days of clock changes. Fields: T, U text; L list; A, B boolean; N, M integer; D
/// decimal 2, E decimal 0, F decimal 10; G, H date.
std::unique_ptr<gis::CLibGis> makeRandomLibrary(
    std::mt19937& random, const RandomTableSettings& settings);

/// A filter over these fields (and a name that is none of them), often with values whose types do
/// not fit. Every filter is accepted by the parser.
std::string randomFilter(std::mt19937& random, int depth);

} // namespace testing_query
