// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/base/Result.h"
#include "embedded/model/Theme.h"
#include "embedded/shapefile/DbfColumns.h"
#include "embedded/shapefile/ShapeView.h"
#include "embedded/shapefile/ShpFile.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace embedded {

/// Asked with the share of the work that is done; true stops it.
using StopAsker = std::function<bool(double)>;

/// A shapefile as it was read, before anything of it is in a library. Row k of the columns belongs
/// to shape k.
struct ReadShapefile {
    ShpFile shp;
    std::vector<DbfColumn> columns;
    /// For each row the index of its record in the .shp; `NoRecord` where the file was cut before.
    std::vector<std::uint32_t> shapes;
    ReferenceSystem referenceSystem;
    bool hasMeasures = false; // in M types always, in Z types where any measure is real
};

/// Reads the files of a shapefile. Errors: those of `importShapefile` but for StrictFinding and
/// NameClash. What is odd about the files goes to `report`.
Result<ReadShapefile> readShapefile(const std::string& path, const std::string& askedEncoding,
    Report& report, const StopAsker& isToStop);

/// The encoding of a .dbf's texts and why, with findings: asked for, .cpg, language byte, valid
/// UTF-8, or CP1252. Errors: UnknownEncoding for one that was asked for.
Result<std::string> chooseEncoding(const DbfFile& dbf, const std::vector<std::uint32_t>& records,
    const std::string& cpgPath, const std::string& asked, Report& report);

} // namespace embedded
