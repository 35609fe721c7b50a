// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Paths.h"

#include "embedded/store/ReplacedFile.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <filesystem>

namespace cli {

namespace fs = std::filesystem;

namespace {

constexpr const char* ShapefileParts[] = { ".shp", ".shx", ".dbf", ".prj", ".cpg", ".dbt", ".fpt" };

/// Links followed, as writing follows them; as given where that cannot be found out.
fs::path wholePath(const std::string& path)
{
    std::error_code problem;
    const fs::path whole = fs::weakly_canonical(embedded::store::placeOf(path), problem);
    return problem ? fs::path(path) : whole;
}

bool isShapefilePart(const fs::path& path)
{
    const std::string extension = path.extension().string();
    return std::any_of(std::begin(ShapefileParts), std::end(ShapefileParts),
        [&](const char* part) { return orv::CompareIgnoreAsciiCase(extension, part) == 0; });
}

} // namespace

bool isSamePath(const std::string& one, const std::string& other)
{
    std::error_code problem;
    return wholePath(one) == wholePath(other) || fs::equivalent(one, other, problem);
}

bool isPartOf(const std::string& path, const std::string& file)
{
    if (isSamePath(path, file))
        return true;
    const fs::path whole = wholePath(path);
    const fs::path whose = wholePath(file);
    return isShapefilePart(whose) && isShapefilePart(whole)
        && whole.parent_path() == whose.parent_path()
        && orv::CompareIgnoreAsciiCase(whole.stem().string(), whose.stem().string()) == 0;
}

bool isShapefilePartIn(const std::string& path, const std::string& folder)
{
    const fs::path whole = wholePath(path);
    return isShapefilePart(whole) && whole.parent_path() == wholePath(folder);
}

} // namespace cli
