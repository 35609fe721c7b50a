// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What GDAL's own program says of a file, as a witness beside the import.

#include <string>
#include <vector>

namespace shapetest {

/// A file's features as `ogr2ogr` writes them as CSV, geometry as WKT in the first column.
struct WitnessTable {
    std::vector<std::string> fields;
    std::vector<std::vector<std::string>> rows; // cells; the first is the geometry
    bool isOpen = false; // false: GDAL could not open the file, or is not installed
};

/// `encoding`: how its texts are to be read. `makeIndex`: let it make a .shx, where there is none.
WitnessTable askWitness(const std::string& shpPath, const std::string& encoding, bool makeIndex);
bool hasWitness();

/// x, y and, where `withZ`, z of the vertices of a WKT, sorted.
std::vector<std::vector<double>> verticesOf(const std::string& wkt, bool withZ);
/// True when the witness's coordinates are ours as far as it writes digits.
bool sameVertices(std::vector<std::vector<double>> ours, std::vector<std::vector<double>> theirs);

/// Rows and cells of a CSV text.
std::vector<std::vector<std::string>> parseCsv(const std::string& text);

} // namespace shapetest
