// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/model/Library.h"
#include "embedded/store/FieldGuess.h"
#include "embedded/store/FileState.h"

#include <string>
#include <vector>

namespace embedded::store {

/// Adds a field for a guessed column to a table that is being built.
void addGuessedField(gis::CDBTable& table, StoredTable& stored, const GuessedField& guessed);

/// Gives a theme that is being built its entities, each with its row: those of the part's rows, in
/// the order that `stored` tells. Their shapes are read later.
void addStoredEntities(gis::CTheme& theme, const StoredPart& part, StoredTheme& stored);

} // namespace embedded::store
