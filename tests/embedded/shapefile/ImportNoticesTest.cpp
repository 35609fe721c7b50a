// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/Shapefile.h"

#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/support/LibraryNotation.h"
#include "tests/support/OrdinaryUser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include <sys/stat.h>

// What an import says of files that are there but not as they should be.

using embedded::ErrorCode;
using embedded::FindingCode;
using namespace shapetest;

namespace {

class ImportNoticesTest : public testing::Test {
protected:
    embedded::Result<embedded::ShapefileImportResult> import(const std::string& path)
    {
        report = {};
        return embedded::importShapefile(library, path, options, nullptr, nullptr, report);
    }
    const embedded::Finding* finding(FindingCode code)
    {
        const auto found = std::find_if(report.findings.begin(), report.findings.end(),
            [code](const auto& each) { return each.code == code; });
        return found == report.findings.end() ? nullptr : &*found;
    }

    TemporaryFolder folder;
    gis::CLibGis library;
    embedded::ShapefileImportOptions options;
    embedded::Report report;
};

TEST_F(ImportNoticesTest, AnEncodingThatMayNotBeReadRefusesTheImportByItsName)
{
    const std::string path = writeShapefile(folder, "t", pointFile(1), textTable({ "caff\xE8" }));
    writeFile(folder / "t.cpg", "ISO-8859-1");
    const support::OrdinaryUserScope user(folder.path());
    ASSERT_TRUE(user.isOrdinary());
    ASSERT_EQ(::chmod((folder / "t.cpg").c_str(), 0), 0);

    const auto refused = import(path);

    ASSERT_FALSE(refused.ok());
    EXPECT_EQ(refused.error().code, ErrorCode::NoPermission);
    EXPECT_EQ(refused.error().subject, folder / "t.cpg");
    EXPECT_EQ(library.GetNumTables(), 0);
    EXPECT_EQ(library.GetNumThemes(), 0);

    options.encoding = "ISO-8859-1"; // who knows it does not need the file
    ASSERT_TRUE(import(path).ok());
    EXPECT_THAT(support::printLibrary(library), testing::HasSubstr("('caff\xC3\xA8')"));
}

TEST_F(ImportNoticesTest, AHeaderThatCountsTooFewRecordsIsToldWithBothNumbers)
{
    const std::string path
        = writeShapefile(folder, "t", pointFile(5), textTable({ "a", "b", "c", "d", "e" }));
    std::string dbf = readFile(folder / "t.dbf");
    writeFile(folder / "t.dbf", dbf.replace(4, 4, little32(3)));

    ASSERT_TRUE(import(path).ok());

    ASSERT_NE(finding(FindingCode::RowsMissing), nullptr);
    EXPECT_EQ(finding(FindingCode::RowsMissing)->count, 2);
    EXPECT_EQ(
        finding(FindingCode::RowsMissing)->detail, "the header says 3 rows, the file holds 5");
}

TEST_F(ImportNoticesTest, ATableThatEndsEarlyIsNotBlamedOnItsHeader)
{
    ASSERT_TRUE(import(writeShapefile(folder, "t", pointFile(3), textTable({ "a" }))).ok());

    ASSERT_NE(finding(FindingCode::RowsMissing), nullptr);
    EXPECT_EQ(finding(FindingCode::RowsMissing)->count, 2);
    EXPECT_EQ(finding(FindingCode::RowsMissing)->detail, "");
}

} // namespace
