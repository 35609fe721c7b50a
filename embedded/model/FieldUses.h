// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What a change of a table's fields means for those who use them: labels and thematic maps.

#include "embedded/model/Library.h"

namespace embedded {

/// A field as it is, to be kept by `Library::replaceFields`.
FieldChange unchangedField(gis::CField& field);
/// True when a field would be the same after the change (its cells apart).
bool isSameField(const gis::CField& field, const FieldChange& change);

/// Recorded. Labels and maps of the table's themes let go of a field that is about to be removed.
void releaseField(Library& library, const gis::CField& field);

/// Recorded. Classes of maps over the field follow its format (ClassLimits.h), where `converted` is
/// what its cells become; an interval map over a field that is no number any more is dropped. Call
/// before the field changes.
void convertClassLimits(
    Library& library, const gis::CField& field, gis::FieldFormat to, const Column& converted);

/// A map with its classes, their styles, limits and labels, as objects of its own.
ThematicMap copyOf(const ThematicMap& map);

} // namespace embedded
