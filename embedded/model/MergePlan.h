// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// How an incoming table is to be merged into an existing one, and the merging.

#include "embedded/model/Library.h"

#include <vector>

namespace embedded {

/// A field of the incoming table and what becomes of it.
struct IncomingField {
    gis::CField* incoming = nullptr;
    gis::CField* existing = nullptr; // the field of its name; null: a new field
    bool isTaken = true; // of a new field: it is added
    // Of a field with another format:
    gis::FieldFormat newFormat = gis::FieldFormat::Text; // of both, unless renamed
    orv::String newName;
    bool isRename = false; // added under the new name
    bool createsList = false; // the list becomes the texts of both
    bool isResolved = false;

    [[nodiscard]] bool isConflict() const
    {
        return existing && existing->format != incoming->format;
    }
    [[nodiscard]] bool isAdded() const { return existing ? isRename : isTaken; }
};

struct MergePlan {
    /// Null tables give a plan without fields.
    MergePlan(gis::CDBTable* existingTable, gis::CDBTable* incomingTable);
    MergePlan(const MergePlan&) = delete;
    MergePlan& operator=(const MergePlan&) = delete;

    [[nodiscard]] bool isComplete() const { return existing && incoming; }
    [[nodiscard]] gis::ResultCompare compare() const;
    [[nodiscard]] std::vector<gis::CField*> newFields() const;
    /// By a field of the existing table, a new one, or another conflict's new name.
    [[nodiscard]] bool isFieldNameUsed(const orv::String& name, int exceptPosition) const;

    gis::CDBTable* existing;
    gis::CDBTable* incoming;
    std::vector<IncomingField> incomingFields; // in the incoming table's order
};

/// Recorded as one step: changes the existing table's fields as planned and appends the incoming
/// rows. What conversions emptied is added to the library's report. Shape: for each incoming field
/// its index in the existing table, -1 where it is not taken.
std::vector<int> mergeTables(Library& library, const MergePlan& plan);

} // namespace embedded
