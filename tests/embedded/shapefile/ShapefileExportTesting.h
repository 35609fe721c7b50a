// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/shapefile/DbfFile.h"
#include "embedded/shapefile/Shapefile.h"
#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/support/LibraryNotation.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace shapetest {

/// Exports a theme of `library` into a folder and looks at the files.
class ShapefileExportTest : public testing::Test {
protected:
    embedded::Result<void> exportTheme(int index = 0)
    {
        report = {};
        return embedded::exportShapefile(
            *library.GetTheme(index), folder.path(), options, errorFlags, report);
    }
    /// Cells of a column of the .dbf, one after the other.
    std::vector<std::string> cells(const std::string& file, std::size_t field)
    {
        const auto dbf = embedded::DbfFile::open(folder / file);
        std::vector<std::string> result;
        if (!dbf)
            return result;
        for (std::uint32_t row = 0; row < dbf.value().recordCount(); ++row)
            result.emplace_back(dbf.value().cell(row, dbf.value().fields()[field]));
        return result;
    }
    std::vector<std::string> fieldNames(const std::string& file)
    {
        std::vector<std::string> names;
        const auto dbf = embedded::DbfFile::open(folder / file);
        if (dbf)
            for (const auto& field : dbf.value().fields())
                names.push_back(field.name);
        return names;
    }
    const embedded::Finding* finding(embedded::FindingCode code, const std::string& subject = {})
    {
        for (const auto& each : report.findings)
            if (each.code == code && each.subject == subject)
                return &each;
        return nullptr;
    }
    std::vector<std::string> filesInFolder()
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            names.push_back(entry.path().filename().string());
        return names;
    }
    /// The theme read back into a library of its own, in the notation of tests.
    std::string readBack(const std::string& file)
    {
        gis::CLibGis other;
        embedded::Report ignored;
        const auto result
            = embedded::importShapefile(other, folder / file, {}, nullptr, nullptr, ignored);
        return result ? support::printLibrary(other) : "refused";
    }

    TemporaryFolder folder;
    gis::CLibGis library;
    embedded::ShapefileExportOptions options;
    int errorFlags = 0;
    embedded::Report report;
};

} // namespace shapetest
