// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace embedded {

/// The files of one shapefile. Empty where there is none.
struct ShapefilePaths {
    std::string shp;
    std::string shx;
    std::string dbf;
    std::string cpg;
    std::string prj;
};

/// `path` itself where it exists, else the file of its folder whose name is the same but for ASCII
/// case; empty when there is none.
std::string existingPath(const std::string& path);

/// The .shp's siblings, found whatever the case of their names.
ShapefilePaths shapefilePaths(const std::string& shpPath);

/// The file's name without folder and without its last extension.
std::string fileStem(std::string_view path);

/// `path` without its last extension.
std::string_view withoutExtension(std::string_view path);

} // namespace embedded
