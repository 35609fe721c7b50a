// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What becomes of a map's classes when the field that they are made of gets another format.

#include "embedded/model/Theme.h"

namespace embedded {

/// Limits of the classes follow the field's new format, so that a row stays in its class as far as
/// its value stays what it was:
/// - single values are converted as cells are; classes whose values become one are one class (the
///   first), those whose value becomes none go, and the order is that of the new values;
/// - of intervals of decimals that become whole numbers each keeps the whole numbers that it had,
///   and one that has none goes; intervals of whole numbers that become decimals meet where the
///   later one begins;
/// - limits that a user took away, or turned around, stay as they are;
/// - labels that tell the limits tell the new ones; others stay, as styles do;
/// - where rows have no value now (`hasEmptyRows`), there is a class for them.
/// `from` and `decimalDigits` are the field's before. Interval maps only between numbers.
void convertClasses(ThematicMap& map, gis::FieldFormat from, int decimalDigits, gis::FieldFormat to,
    bool hasEmptyRows);

} // namespace embedded
