// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Siblings.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace embedded {

namespace {

namespace files = std::filesystem;

bool isThere(const std::string& path)
{
    std::error_code failed;
    return files::exists(files::path(path), failed);
}

std::string_view extensionOf(std::string_view path)
{
    return path.substr(withoutExtension(path).size());
}

/// The extension in the case of the .shp's own: "SHP" asks for "DBF" first.
std::string inCaseOf(std::string_view extension, std::string_view model)
{
    std::string result(extension);
    const bool isUpper
        = std::any_of(model.begin(), model.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    if (isUpper)
        for (char& c : result)
            if (c >= 'a' && c <= 'z')
                c = static_cast<char>(c - 'a' + 'A');
    return result;
}

std::string sibling(const std::string& shpPath, std::string_view extension)
{
    const std::string stem(withoutExtension(shpPath));
    return existingPath(stem + inCaseOf(extension, extensionOf(shpPath)));
}

} // namespace

std::string existingPath(const std::string& path)
{
    if (path.empty() || isThere(path))
        return path;
    const files::path wanted(path);
    const std::string name = wanted.filename().string();
    const files::path folder = wanted.has_parent_path() ? wanted.parent_path() : files::path(".");
    std::vector<std::string> found;
    std::error_code failed;
    for (files::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string other = entry->path().filename().string();
        if (other.size() == name.size() && orv::CompareIgnoreAsciiCase(other, name) == 0)
            found.push_back(other);
    }
    if (found.empty())
        return {};
    // Capitals sort first: of several the one nearest to lower case is taken, always the same.
    const std::string best = *std::max_element(found.begin(), found.end());
    return wanted.has_parent_path() ? (folder / best).string() : best;
}

ShapefilePaths shapefilePaths(const std::string& shpPath)
{
    ShapefilePaths paths;
    paths.shp = shpPath;
    paths.shx = sibling(shpPath, ".shx");
    paths.dbf = sibling(shpPath, ".dbf");
    paths.cpg = sibling(shpPath, ".cpg");
    paths.prj = sibling(shpPath, ".prj");
    return paths;
}

std::string_view withoutExtension(std::string_view path)
{
    const auto slash = path.rfind('/');
    const std::size_t nameStart = slash == std::string_view::npos ? 0 : slash + 1;
    const auto dot = path.rfind('.');
    if (dot == std::string_view::npos || dot <= nameStart)
        return path;
    return path.substr(0, dot);
}

std::string fileStem(std::string_view path)
{
    const std::string_view stem = withoutExtension(path);
    const auto slash = stem.rfind('/');
    return std::string(slash == std::string_view::npos ? stem : stem.substr(slash + 1));
}

} // namespace embedded
