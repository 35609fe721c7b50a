// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// Files for tests: a temporary folder, and shapefiles made byte by byte, so that a test can make
// any mistake in them.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace shapetest {

/// A folder that is gone with its files at the end of a test.
class TemporaryFolder final {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    [[nodiscard]] const std::string& path() const { return m_path; }
    [[nodiscard]] std::string operator/(const std::string& name) const
    {
        return m_path + "/" + name;
    }

private:
    std::string m_path;
};

void writeFile(const std::string& path, std::string_view bytes);
std::string readFile(const std::string& path);

std::string little16(std::uint32_t value);
std::string little32(std::int64_t value);
std::string big32(std::int64_t value);
std::string number(double value);

struct RawField {
    std::string name;
    char type = 'C';
    int width = 10;
    int decimals = 0;
};

/// The bytes of a .dbf. Cells are cut or filled with blanks to their width; a row may begin with
/// the mark '*' of deleted ones.
struct RawDbf {
    std::vector<RawField> fields;
    std::vector<std::vector<std::string>> rows;
    std::vector<bool> deleted = {}; // none: no row is
    int version = 3;
    int languageByte = 0;

    [[nodiscard]] std::string bytes() const;
};

/// The bytes of a .shp and its .shx.
struct RawShp {
    std::int32_t type = 1;
    std::vector<std::string> contents; // of the records

    [[nodiscard]] std::string shp() const;
    [[nodiscard]] std::string shx() const;
};

std::string pointContent(double x, double y);
std::string pointContent(double x, double y, double z, double m);
/// Parts of x, y pairs one after the other. `z` and `m`: one for each vertex, empty: none written.
std::string partsContent(std::int32_t type, const std::vector<std::vector<double>>& parts,
    const std::vector<double>& z = {}, const std::vector<double>& m = {});
std::string nullContent();

/// `count` points (0, 0), (1, 10), (2, 20) ...
RawShp pointFile(int count);

/// Writes a whole shapefile; returns the path of its .shp.
std::string writeShapefile(
    const TemporaryFolder& folder, const std::string& name, const RawShp& shp, const RawDbf& dbf);

/// A table of one text column with these cells, wide enough for them.
RawDbf textTable(const std::vector<std::string>& cells, int width = 0);
/// A table of one column with these cells.
RawDbf oneColumn(const RawField& field, const std::vector<std::string>& cells);

} // namespace shapetest
