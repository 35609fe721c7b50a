// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A file as the commands see it: a library whatever it is stored in.

#include "embedded/base/Result.h"

#include "host/gis/LibGis.h"

#include <memory>
#include <optional>
#include <string>

namespace cli {

/// Opens a library, another program's GeoPackage, or a shapefile (read into memory). Warnings are
/// told on standard error.
[[nodiscard]] embedded::Result<std::unique_ptr<gis::CLibGis>> openForReading(
    const std::string& path);

/// The theme of a name, or the only one. Errors: UnknownTheme, SeveralThemes, NoThemes.
[[nodiscard]] embedded::Result<gis::CTheme*> chooseTheme(
    gis::CLibGis& library, const std::string& path, const std::optional<std::string>& name);

/// Position of a field by name (exact first, then ASCII case ignored). Errors: UnknownField.
[[nodiscard]] embedded::Result<int> findField(
    gis::CLibGis& library, gis::CDBTable* table, const std::string& name);

/// Why a column that was asked for could not be read; null while all could.
[[nodiscard]] const embedded::Error* failedRead(gis::CLibGis& library);

/// True for a path that ends in .shp, whatever its case.
[[nodiscard]] bool isShapefilePath(const std::string& path);

} // namespace cli
