// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/shapefile/Shapefile.h"

#include <optional>
#include <array>
#include <string>
#include <variant>
#include <vector>

namespace cli {

enum class Format { Table, Csv, Json, GeoJson };
enum class OnConflict { Fail, Rename, Merge };

struct InfoArguments {
    std::string file;
    bool isJson = false;
};

struct QueryArguments {
    std::string file;
    std::string filter;
    std::optional<std::string> theme;
    std::optional<std::string> fields; // names with commas between; none: all
    std::optional<int> limit;
    bool isCountOnly = false;
    Format format = Format::Table;
};

struct ValuesArguments {
    std::string file;
    std::string field;
    std::optional<std::string> theme;
    Format format = Format::Table;
};

struct ImportArguments {
    std::string file;
    std::string into;
    std::string encoding; // empty: what the files say
    std::optional<std::string> pointName;
    std::optional<std::string> pointDescription;
    OnConflict onConflict = OnConflict::Fail;
    bool isStrict = false;
    std::optional<std::string> report;
};

struct ExportArguments {
    std::string file;
    std::string folder;
    std::vector<std::string> themes; // none: all
    embedded::ShapefileExportOptions options;
    bool isOverwriting = false;
    std::optional<std::string> report;
};

struct RenderArguments {
    std::string file;
    std::string output;
    int width = 1600;
    int height = 1000;
    std::vector<std::string> themes;
    std::optional<std::array<double, 4>> box; // x0, y0, x1, y1 in drawing units
    bool hasLegend = false;
};

/// The call needs no work any more: help was asked for, or it was wrong and has been told so.
struct Ended {
    int exitCode = 0;
};

using Arguments = std::variant<Ended, InfoArguments, QueryArguments, ValuesArguments,
    ImportArguments, ExportArguments, RenderArguments>;

/// What the command line asks for. Help and version go to standard output.
[[nodiscard]] Arguments parseArguments(std::vector<std::string> words);

} // namespace cli
