// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "cli/Arguments.h"
#include "cli/Cells.h"
#include "cli/Output.h"

#include <memory>

namespace cli {

/// Writes rows in one of the output formats. Call `row` for each, then `end` once. Each answers
/// false when nothing more can be written.
class IRowWriter {
public:
    virtual ~IRowWriter() = default;
    /// `cells` as the columns; `ent` is the row's entity, null where there is none.
    virtual bool row(const std::vector<orv::CPolyValue>& cells, gis::CEnt* ent) = 0;
    virtual bool end() = 0;
};

/// Table (aligned for terminals), CSV (RFC 4180) or JSON (an array of objects); GeoJSON see
/// `makeGeoJsonWriter`.
[[nodiscard]] std::unique_ptr<IRowWriter> makeRowWriter(
    Format format, std::vector<OutputColumn> columns, Output& output);

/// A FeatureCollection in the layer's own coordinates. The first column is the feature's id.
[[nodiscard]] std::unique_ptr<IRowWriter> makeGeoJsonWriter(
    gis::CTheme& theme, std::vector<OutputColumn> columns, Output& output);

} // namespace cli
