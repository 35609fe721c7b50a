// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/support/TestData.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace support {

/// The shapefiles of the shared test data that tests of windows can go through one by one.
inline std::vector<std::filesystem::path> realShapefiles()
{
    constexpr std::uintmax_t MostBytes = 3'000'000;
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::recursive_directory_iterator(testDataFolder()))
        if (file.path().extension() == ".shp" && file.file_size() <= MostBytes)
            files.push_back(file.path());
    return files;
}

/// A library with one shapefile in it; null where it cannot be imported or has no fields.
inline std::unique_ptr<gis::CLibGis> realTable(
    const std::filesystem::path& file, orv::CChangeTransactionManager* changes = nullptr)
{
    auto library = std::make_unique<gis::CLibGis>(changes);
    embedded::Report report;
    const auto imported
        = embedded::importShapefile(*library, file.string(), {}, nullptr, nullptr, report);
    return imported && library->GetTable(0)->fieldCount() > 0 ? std::move(library) : nullptr;
}

} // namespace support
