// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
// Every shapefile of the test data: imported and compared with what GDAL's own program reads, or
// refused with the error stated here, or taken with the findings stated here.

#include "embedded/shapefile/Shapefile.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Siblings.h"
#include "tests/embedded/shapefile/Expectations.h"
#include "tests/embedded/shapefile/RawShapefile.h"
#include "tests/embedded/shapefile/Witness.h"
#include "tests/support/TestData.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"
#include "host/gis/LibGis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

using embedded::ErrorCode;
using embedded::FindingCode;
using embedded::Report;
using namespace shapetest;
namespace files = std::filesystem;

namespace {

struct Imported {
    orv::CChangeTransactionManager changes;
    gis::CLibGis library { &changes };
    Report report;
    embedded::Result<embedded::ShapefileImportResult> result
        = embedded::Error { ErrorCode::Internal, {}, {} };

    void run(const std::string& path, bool strict)
    {
        embedded::ShapefileImportOptions options;
        options.strict = strict;
        result = embedded::importShapefile(library, path, options, nullptr, nullptr, report);
    }
    [[nodiscard]] Codes warningCodes() const
    {
        Codes codes;
        for (const auto& finding : report.findings)
            if (finding.severity == embedded::FindingSeverity::Warning)
                codes.insert(finding.code);
        return codes;
    }
    [[nodiscard]] std::string encoding() const
    {
        for (const auto& finding : report.findings)
            if (finding.code == FindingCode::EncodingChosen)
                return finding.subject;
        return {};
    }
};

std::vector<std::string> dataFiles()
{
    std::vector<std::string> names;
    std::error_code failed;
    for (files::recursive_directory_iterator entry(support::testDataFolder(), failed), end;
         !failed && entry != end; entry.increment(failed))
        if (orv::CompareIgnoreAsciiCase(entry->path().extension().string(), ".shp") == 0)
            names.push_back(files::relative(entry->path(), support::testDataFolder()).string());
    std::sort(names.begin(), names.end());
    return names;
}

class ShapefileDataTest : public testing::Test {
protected:
    void SetUp() override
    {
        TEMATICA_NEEDS_TEST_DATA();
        ASSERT_FALSE(dataFiles().empty());
    }
};

std::string_view trimmedLeft(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string fixedText(double value, std::size_t digits)
{
    std::string text;
    orv::AppendFixed(text, value, static_cast<int>(digits));
    return text;
}

/// Whether a cell is what the witness writes for it.
bool sameCell(const embedded::Column& column, int row, gis::FieldFormat format, std::string cell)
{
    const bool hasValue = column.hasValue(row);
    double number = 0.0;
    switch (format) {
    case gis::FieldFormat::Boolean:
        if (!hasValue)
            return cell.empty() || cell == "?";
        return std::string(column.booleanAt(row) ? "TtYy" : "FfNn").find(cell) != std::string::npos
            && !cell.empty();
    case gis::FieldFormat::Integer:
        return hasValue ? orv::ParseDouble(cell, number) && number == column.integerAt(row)
                        : cell.empty();
    case gis::FieldFormat::Decimal: {
        if (!hasValue || !orv::ParseDouble(cell, number))
            return !hasValue && cell.empty();
        // It writes the digits of the column, the import keeps all that stand in the cell.
        const auto point = cell.find('.');
        const std::size_t digits = point == std::string::npos ? 0 : cell.size() - point - 1;
        return number == column.decimalAt(row) || fixedText(column.decimalAt(row), digits) == cell
            || std::abs(number - column.decimalAt(row)) <= 1e-14 * std::abs(number);
    }
    case gis::FieldFormat::Date: {
        if (!hasValue)
            return cell.empty();
        const orv::CalendarDay day = orv::DayFromNumber(column.integerAt(row));
        const std::string year = std::to_string(10000 + day.year).substr(1);
        const std::string month = std::to_string(100 + day.month).substr(1);
        return cell == year + "/" + month + "/" + std::to_string(100 + day.day).substr(1);
    }
    default:
        // The import keeps leading blanks, the witness does not.
        return hasValue ? std::string(trimmedLeft(column.textAt(row))) == cell : cell.empty();
    }
}

std::string cellText(const embedded::Column& column, int row)
{
    orv::CPolyValue value;
    column.valueAt(row, value);
    return value.GetStringValue().Bytes();
}

std::vector<std::vector<double>> verticesOf(const embedded::EntityStore& entities, int entity)
{
    std::vector<std::vector<double>> vertices;
    for (int p = 0; p < entities.partCount(entity); ++p) {
        const auto part = entities.part(entity, p);
        for (int i = 0; i < part.count; ++i) {
            const double* vertex = part.coordinates + std::ptrdiff_t { i } * part.stride;
            vertices.emplace_back(vertex, vertex + (entities.hasZ() ? 3 : 2));
        }
    }
    return vertices;
}

void compareFields(const std::string& name, Imported& imported, const WitnessTable& witness,
    const Deviation& deviation)
{
    gis::CDBTable& table = *imported.result.value().table;
    ASSERT_EQ(static_cast<std::size_t>(table.fieldCount()), witness.fields.size()) << name;
    for (int f = 0; f < table.fieldCount(); ++f) {
        const gis::CField& field = *table.field(f);
        if (deviation.fields.count(field.name.Bytes()) > 0)
            continue;
        if (!deviation.names) {
            EXPECT_EQ(field.name.Bytes(), witness.fields[static_cast<std::size_t>(f)]) << name;
        }
        int differences = 0;
        for (int row = 0; row < table.rowCount() && differences < 3; ++row) {
            const std::string& cell
                = witness.rows[static_cast<std::size_t>(row)][static_cast<std::size_t>(f) + 1];
            const bool isSame = sameCell(table.column(f), row, field.format, cell);
            differences += isSame ? 0 : 1;
            EXPECT_TRUE(isSame) << name << " " << field.name.Bytes() << " row " << row << ": '"
                                << cellText(table.column(f), row) << "', witness '" << cell << "'";
        }
    }
}

void compareShapes(const std::string& name, Imported& imported, const WitnessTable& witness)
{
    const embedded::EntityStore& entities = imported.result.value().theme->entities();
    int differences = 0;
    for (int row = 0; row < entities.entityCount() && differences < 3; ++row) {
        const std::string& wkt = witness.rows[static_cast<std::size_t>(row)][0];
        const bool isSame
            = sameVertices(verticesOf(entities, row), shapetest::verticesOf(wkt, entities.hasZ()));
        differences += isSame ? 0 : 1;
        EXPECT_TRUE(isSame) << name << " row " << row << ": " << wkt.substr(0, 200);
    }
}

TEST_F(ShapefileDataTest, TheTablesOfThisTestNameFilesThatExist)
{
    const std::vector<std::string> names = dataFiles();
    const auto exists = [&](const std::string& name) {
        return std::binary_search(names.begin(), names.end(), name);
    };
    for (const auto& [name, code] : refusals())
        EXPECT_TRUE(exists(name)) << name;
    for (const auto& [name, codes] : warnings())
        EXPECT_TRUE(exists(name)) << name;
    for (const auto& [name, deviation] : deviations())
        EXPECT_TRUE(exists(name)) << name;
}

TEST_F(ShapefileDataTest, EachFileIsTakenOrRefusedAsStated)
{
    for (const std::string& name : dataFiles()) {
        Imported imported;
        imported.run((support::testDataFolder() / name).string(), false);
        const auto refusal = refusals().find(name);
        if (refusal != refusals().end()) {
            ASSERT_FALSE(imported.result.ok()) << name;
            EXPECT_EQ(imported.result.error().code, refusal->second) << name;
            EXPECT_EQ(imported.library.GetNumTables(), 0) << name;
            EXPECT_EQ(imported.library.GetNumThemes(), 0) << name;
            EXPECT_FALSE(imported.library.GetModifiedFlag()) << name;
            continue;
        }
        ASSERT_TRUE(imported.result.ok()) << name;
        const auto stated = warnings().find(name);
        EXPECT_EQ(imported.warningCodes(), stated == warnings().end() ? Codes() : stated->second)
            << name;
    }
}

TEST_F(ShapefileDataTest, StrictRefusesExactlyTheFilesWithWarnings)
{
    for (const std::string& name : dataFiles()) {
        Imported imported;
        imported.run((support::testDataFolder() / name).string(), true);
        const bool isSound = refusals().count(name) == 0 && warnings().count(name) == 0;
        EXPECT_EQ(imported.result.ok(), isSound) << name;
        EXPECT_EQ(imported.library.GetNumTables(), isSound ? 1 : 0) << name;
    }
}

TEST_F(ShapefileDataTest, RowsValuesAndShapesAreThoseOfTheWitness)
{
    ASSERT_TRUE(hasWitness()) << "install gdal-bin, or run ./test, which does";
    for (const std::string& name : dataFiles()) {
        if (refusals().count(name) > 0)
            continue;
        // The witness may write an index beside a file that lacks one.
        const TemporaryFolder copy;
        const files::path original = support::testDataFolder() / name;
        for (const auto& entry : files::directory_iterator(original.parent_path()))
            if (entry.path().stem() == original.stem())
                files::copy(entry.path(), files::path(copy.path()) / entry.path().filename());
        const std::string path = copy / original.filename().string();
        Imported imported;
        imported.run(path, false);
        ASSERT_TRUE(imported.result.ok()) << name;
        const auto found = deviations().find(name);
        const Deviation deviation = found == deviations().end() ? Deviation() : found->second;
        if (deviation.rows)
            continue;
        const WitnessTable witness
            = askWitness(path, imported.encoding(), embedded::shapefilePaths(path).shx.empty());
        EXPECT_TRUE(witness.isOpen) << name;
        if (!witness.isOpen)
            continue;
        EXPECT_EQ(static_cast<std::size_t>(imported.result.value().table->rowCount()),
            witness.rows.size())
            << name;
        if (static_cast<std::size_t>(imported.result.value().table->rowCount())
            != witness.rows.size())
            continue;
        if (deviation.fields.count("*") == 0)
            compareFields(name, imported, witness, deviation);
        if (!deviation.shapes)
            compareShapes(name, imported, witness);
    }
}

/// The cells of a field as text, `-` for none.
std::vector<std::string> cellsOf(Imported& imported, const char* fieldName)
{
    gis::CDBTable& table = *imported.result.value().table;
    const int field = table.findField(fieldName);
    std::vector<std::string> cells;
    for (int row = 0; field >= 0 && row < table.rowCount(); ++row)
        cells.push_back(
            table.column(field).hasValue(row) ? cellText(table.column(field), row) : "-");
    return cells;
}

/// Everything but what the export's report says it could not keep.
void compareImports(
    const std::string& name, Imported& first, Imported& second, const Report& report)
{
    std::set<std::string> told;
    for (const auto& finding : report.findings)
        told.insert(finding.subject);
    gis::CDBTable& before = *first.result.value().table;
    gis::CDBTable& after = *second.result.value().table;
    const auto& shapesBefore = first.result.value().theme->entities();
    const auto& shapesAfter = second.result.value().theme->entities();
    ASSERT_EQ(after.rowCount(), before.rowCount()) << name;
    ASSERT_EQ(after.fieldCount(), std::max(1, before.fieldCount())) << name;
    for (int f = 0; f < before.fieldCount(); ++f) {
        if (told.count(before.field(f)->name.Bytes()) > 0)
            continue;
        EXPECT_EQ(after.field(f)->name, before.field(f)->name) << name;
        int differences = 0;
        for (int row = 0; row < before.rowCount() && differences < 3; ++row) {
            const bool isSame = before.column(f).hasValue(row) == after.column(f).hasValue(row)
                && (!before.column(f).hasValue(row)
                    || cellText(before.column(f), row) == cellText(after.column(f), row));
            differences += isSame ? 0 : 1;
            EXPECT_TRUE(isSame) << name << " " << before.field(f)->name.Bytes() << " row " << row;
        }
    }
    ASSERT_EQ(shapesAfter.entityCount(), shapesBefore.entityCount()) << name;
    EXPECT_EQ(shapesAfter.hasZ(), shapesBefore.hasZ()) << name;
    for (int i = 0; i < shapesBefore.entityCount(); ++i) {
        ASSERT_EQ(shapesAfter.partCount(i), shapesBefore.partCount(i)) << name << i;
        ASSERT_EQ(verticesOf(shapesAfter, i), verticesOf(shapesBefore, i)) << name << i;
    }
    EXPECT_EQ(
        second.result.value().theme->referenceSystem, first.result.value().theme->referenceSystem)
        << name;
}

struct CellsCase {
    const char* file; // in malformed-derived
    const char* field;
    std::vector<std::string> cells;
};

TEST_F(ShapefileDataTest, CellsOfOddTablesAreReadByTheirRules)
{
    const std::string none = "-";
    const CellsCase cases[] = {
        { "Mixed_Case.Shp", "FID", { "0", "1", "2", "3", "4", "5", "6", "7", "8" } },
        { "date_values_odd.shp", "GIORNO",
            { "29/02/2024", none, none, none, none, "01/01/1", "31/12/9999", "05/01/2023", none } },
        { "dbf_count_small.shp", "FID", { "0", "1", "2", "3", none, none, none, none, none } },
        { "dbf_cut_in_record.shp", "FID", { "0", "1", "2", "3", none, none, none, none, none } },
        { "dbf_field_width_zero.shp", "FID", { "0", "1", "2", "3", "4", "5", "6", "7", "8" } },
        { "float_binary_types.shp", "INT4", { "-7" } },
        { "float_binary_types.shp", "DBL8", { "3.25" } },
        { "float_binary_types.shp", "MONEY", { "12.345" } },
        { "float_binary_types.shp", "STAMP", { "24/02/2023" } },
        { "logical_values_odd.shp", "ATTIVO",
            { "Sì", "Sì", "Sì", "Sì", "No", "No", "No", "No", none, none, none, none, none } },
        { "memo_without_dbt.shp", "NOTE", { none, none, none } },
        { "numeric_values_odd.shp", "VALORE",
            { "12.5", "1.5", none, none, "100000", none, none, none, "7", "7", "123456789012", "-0",
                none, "5" } },
        { "utf8_cpg_invalid_bytes.shp", "NOME",
            { "Citt\uFFFD",
                "\uFFFD\uFFFD"
                "abc",
                "Perché noé", "abcdefghijk\uFFFD", "ab", "ok" } },
        { "cp1252_no_cpg.shp", "NOME", { "Città", "€ 100", "“cosa”", "Forlì", "Cantù" } },
        { "cp1252_ldid_0x57.shp", "NOME", { "Città", "€ 100", "“cosa”", "Forlì", "Cantù" } },
        { "cp850_ldid_0x02.shp", "NOME", { "Città", "Forlì", "Straße", "Cantù" } },
    };
    for (const CellsCase& each : cases) {
        Imported imported;
        imported.run((support::testDataFolder() / "malformed-derived" / each.file).string(), false);
        ASSERT_TRUE(imported.result.ok()) << each.file;
        EXPECT_EQ(cellsOf(imported, each.field), each.cells) << each.file;
    }
}

TEST_F(ShapefileDataTest, PointsComeFromTheRecordsWhateverTheIndexSays)
{
    Imported whole;
    whole.run((support::testDataFolder() / "malformed-derived/shx_missing.shp").string(), false);
    ASSERT_TRUE(whole.result.ok());
    const auto& wanted = whole.result.value().theme->entities();
    for (const char* file : { "shx_all_same_record.shp", "shx_cut.shp", "shx_offset_negative.shp",
             "shx_offset_past_end.shp", "shp_record_length_huge.shp", "shp_length_wrong.shp" }) {
        Imported imported;
        imported.run((support::testDataFolder() / "malformed-derived" / file).string(), false);
        ASSERT_TRUE(imported.result.ok()) << file;
        const auto& entities = imported.result.value().theme->entities();
        ASSERT_EQ(entities.entityCount(), wanted.entityCount()) << file;
        for (int i = 0; i < wanted.entityCount(); ++i)
            EXPECT_EQ(verticesOf(entities, i), verticesOf(wanted, i)) << file << i;
    }
    Imported points3d;
    points3d.run((support::testDataFolder() / "shapelib/3dpoints.shp").string(), false);
    EXPECT_EQ(points3d.result.value().theme->entities().vertexCount(), 22);
}

TEST_F(ShapefileDataTest, DamagedShapesLeaveTheirRows)
{
    struct Case {
        const char* file;
        std::vector<int> parts; // of each entity
    };
    const Case cases[] = {
        { "shp_cut_in_record.shp", { 1, 0, 0 } },
        { "shp_mixed_types.shp", { 1, 0, 1, 1, 1, 1, 1, 1, 1 } },
        { "shp_nan_inf_coords.shp", { 0, 0, 1, 1, 1, 1, 1, 1, 1 } },
        { "shp_numparts_huge.shp", { 0, 2, 2 } },
        { "shp_numpoints_huge.shp", { 1, 0, 2 } },
        { "shp_numpoints_negative.shp", { 0, 2, 2 } },
        { "shp_part_index_past_end.shp", { 1, 0 } },
        { "shp_record_length_zero.shp", { 1, 1, 1, 0, 1, 1, 1, 1, 1 } },
        { "polygon_ring_faults.shp", { 1, 1, 1, 1, 2, 4, 0, 0, 1, 2 } },
        { "dbf_all_deleted.shp", {} },
    };
    for (const Case& each : cases) {
        Imported imported;
        imported.run((support::testDataFolder() / "malformed-derived" / each.file).string(), false);
        ASSERT_TRUE(imported.result.ok()) << each.file;
        const auto& entities = imported.result.value().theme->entities();
        std::vector<int> parts;
        for (int i = 0; i < entities.entityCount(); ++i)
            parts.push_back(entities.partCount(i));
        EXPECT_EQ(parts, each.parts) << each.file;
        EXPECT_EQ(imported.result.value().table->rowCount(), entities.entityCount()) << each.file;
    }
}

TEST_F(ShapefileDataTest, WhatIsExportedIsImportedTheSame)
{
    for (const std::string& name : dataFiles()) {
        Imported first;
        first.run((support::testDataFolder() / name).string(), false);
        if (!first.result.ok())
            continue;
        const TemporaryFolder folder;
        gis::CTheme& theme = *first.result.value().theme;
        int flags = 0;
        Report report;
        ASSERT_TRUE(embedded::exportShapefile(theme, folder.path(), {}, flags, report).ok())
            << name;

        Imported second;
        second.run(folder / (theme.name.Bytes() + ".shp"), false);

        ASSERT_TRUE(second.result.ok()) << name;
        EXPECT_TRUE(second.warningCodes().empty()
            || second.warningCodes() == Codes { FindingCode::ReferenceSystemUnknown })
            << name;
        compareImports(name, first, second, report);
    }
}

} // namespace
