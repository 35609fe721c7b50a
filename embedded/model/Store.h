// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"
#include "embedded/model/EntityStore.h"

#include <cstdint>
#include <string>
#include <vector>

namespace embedded {
class Column;
class Library;

/// Where a library's data lies when it is not all in memory: asked for what is used first, and
/// given what changed. A second store (a server's) would stand beside the GeoPackage one behind
/// this interface. Errors: a failed read gives the error and leaves the receiver empty. Thread: the
/// library's, except where said.
class IStore {
public:
    virtual ~IStore() = default;
    /// Fills `column` (empty, of the field's kind) with the cells of all stored rows, in row order.
    /// Errors: also Cancelled, soon after `isStopped`, where there is one, has answered true; it is
    /// asked from the threads that read.
    virtual Result<void> readColumn(const gis::CDBTable& table, const gis::CField& field,
        Column& column, const IsStopped& isStopped)
        = 0;
    /// Fills the parts of all stored entities (handles exist already), in entity order; links
    /// points.
    virtual Result<void> readGeometry(gis::CTheme& theme, EntityStore& entities) = 0;
    /// Extent of a theme's stored entities without reading them; empty when unknown.
    virtual Box extentOf(const gis::CTheme& theme) = 0;
    /// Entities (by index) whose boxes meet a rectangle, without reading the geometry; false when
    /// the store cannot tell.
    virtual bool entitiesIn(
        const gis::CTheme& theme, const Box& box, std::vector<int>& entityIndexes)
        = 0;
};

} // namespace embedded
