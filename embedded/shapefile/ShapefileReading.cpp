// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ShapefileReading.h"

#include "embedded/shapefile/ReferenceSystems.h"
#include "embedded/shapefile/Siblings.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace embedded {

namespace {

/// Shapes with one fault that are told one by one; the others are counted together.
constexpr int FaultsToldSingly = 20;
constexpr std::size_t ShapesBetweenLooks = 16384;

void add(Report& report, FindingCode code, std::string detail, std::int64_t count = 0)
{
    Finding finding;
    finding.code = code;
    finding.detail = std::move(detail);
    finding.count = count;
    report.add(std::move(finding));
}

/// Shapes of a file as far as its records, or the rows of a file that was cut, tell.
std::size_t shapeCount(const ShpFile& shp, const DbfFile& dbf)
{
    const std::size_t found = shp.records().size();
    if (!shp.isCut())
        return found;
    std::size_t expected = dbf.recordCount();
    if (shp.index().entryCount > 0)
        expected = std::min(expected, static_cast<std::size_t>(shp.index().entryCount));
    return std::max(found, expected);
}

void reportFiles(const ShpFile& shp, const DbfFile& dbf, Report& report)
{
    if (shp.index().isMissing)
        add(report, FindingCode::ShxMissing, {});
    else if (!shp.index().difference.empty())
        add(report, FindingCode::ShxDisagrees, shp.index().difference);
    if (const std::string difference = shp.sizeDifference(); !difference.empty())
        add(report, FindingCode::ShpSizeDisagrees, difference);
    if (dbf.declaredCount() > dbf.storedCount())
        add(report, FindingCode::RowCountDisagrees, std::to_string(dbf.declaredCount()),
            static_cast<std::int64_t>(dbf.storedCount()));
}

/// Which record of the .dbf and which of the .shp make each row.
std::vector<std::uint32_t> pairRecords(const DbfFile& dbf, std::size_t shapes,
    ReadShapefile& result, const ShpFile& shp, Report& report)
{
    std::vector<std::uint32_t> records;
    records.reserve(shapes);
    result.shapes.reserve(shapes);
    std::int64_t deleted = 0;
    std::int64_t withoutRow = 0;
    for (std::size_t k = 0; k < shapes; ++k) {
        const bool hasRow = k < dbf.recordCount();
        if (hasRow && dbf.isDeleted(static_cast<std::uint32_t>(k))) {
            ++deleted;
            continue;
        }
        withoutRow += hasRow ? 0 : 1;
        records.push_back(hasRow ? static_cast<std::uint32_t>(k) : NoRecord);
        result.shapes.push_back(
            k < shp.records().size() ? static_cast<std::uint32_t>(k) : NoRecord);
    }
    std::int64_t withoutShape = 0;
    for (std::size_t k = shapes; k < dbf.recordCount(); ++k) {
        const bool isDeleted = dbf.isDeleted(static_cast<std::uint32_t>(k));
        deleted += isDeleted ? 1 : 0;
        withoutShape += isDeleted ? 0 : 1;
    }
    if (withoutRow > 0) {
        const bool hasMore = dbf.storedCount() > dbf.declaredCount();
        add(report, FindingCode::RowsMissing,
            hasMore ? "the header says " + std::to_string(dbf.declaredCount())
                    + " rows, the file holds " + std::to_string(dbf.storedCount())
                    : std::string(),
            withoutRow);
    }
    if (withoutShape > 0)
        add(report, FindingCode::ShapesMissing, {}, withoutShape);
    if (deleted > 0)
        add(report, FindingCode::RecordsDeleted, {}, deleted);
    return records;
}

std::string textOf(ShapeFault fault)
{
    switch (fault) {
    case ShapeFault::ImpossibleLength:
        return "impossible length";
    case ShapeFault::Cut:
        return "the file ends before";
    case ShapeFault::ImpossibleCounts:
        return "impossible counts";
    case ShapeFault::ImpossibleParts:
        return "impossible parts";
    case ShapeFault::UnusableCoordinates:
        return "coordinates that are no numbers";
    default:
        return {};
    }
}

/// Tells the first faults of a kind one by one and counts the others in one more finding.
class FaultTeller final {
public:
    void tell(Report& report, FindingCode code, ShapeFault fault, std::int64_t record)
    {
        Told& told = m_told[static_cast<std::size_t>(fault)];
        if (++told.count > FaultsToldSingly + 1) {
            report.findings[told.lastFinding].count++;
            return;
        }
        Finding finding;
        finding.code = code;
        finding.detail = textOf(fault);
        finding.record = record;
        told.lastFinding = report.findings.size();
        report.add(std::move(finding));
    }

private:
    struct Told {
        int count = 0;
        std::size_t lastFinding = 0;
    };
    std::array<Told, 8> m_told {};
};

bool checkShapes(ReadShapefile& shapefile, Report& report, const StopAsker& isToStop)
{
    const ShpFile& shp = shapefile.shp;
    const bool mayHaveMeasures = shp::hasZ(shp.shapeType());
    shapefile.hasMeasures = shp::isMType(shp.shapeType());
    FaultTeller faults;
    FaultTeller lengths;
    for (std::size_t row = 0; row < shapefile.shapes.size(); ++row) {
        if (row % ShapesBetweenLooks == 0
            && isToStop(static_cast<double>(row) / static_cast<double>(shapefile.shapes.size())))
            return false;
        const std::uint32_t index = shapefile.shapes[row];
        const std::int64_t record = static_cast<std::int64_t>(index == NoRecord ? row : index) + 1;
        ShapeFault fault = ShapeFault::Cut;
        if (index != NoRecord) {
            ShapeView shape;
            fault = ShapeView::read(shp, shp.records()[index], shape);
            if (mayHaveMeasures && !shapefile.hasMeasures)
                shapefile.hasMeasures = shape.hasRealMeasure();
            if (fault == ShapeFault::None
                && shp.records()[index].state == ShpRecordState::LengthWrong)
                lengths.tell(report, FindingCode::RecordLengthWrong, fault, record);
        }
        if (fault == ShapeFault::OtherType)
            faults.tell(report, FindingCode::ShapeTypeOther, fault, record);
        else if (fault != ShapeFault::None)
            faults.tell(report, FindingCode::ShapeUnreadable, fault, record);
    }
    return true;
}

Result<DbfFile> openDbf(const ShapefilePaths& paths)
{
    if (paths.dbf.empty())
        return Error { ErrorCode::NoDbf, paths.shp,
            std::string(withoutExtension(paths.shp)) + ".dbf" };
    return DbfFile::open(paths.dbf);
}

bool needsMemo(const DbfFile& dbf)
{
    return std::any_of(dbf.fields().begin(), dbf.fields().end(),
        [](const DbfField& field) { return field.type == 'M'; });
}

} // namespace

Result<ReadShapefile> readShapefile(const std::string& path, const std::string& askedEncoding,
    Report& report, const StopAsker& isToStop)
{
    auto shp = ShpFile::open(path);
    if (!shp)
        return shp.error();
    const ShapefilePaths paths = shapefilePaths(path);
    auto dbf = openDbf(paths);
    if (!dbf)
        return dbf.error();

    ReadShapefile result;
    result.shp = std::move(shp.value());
    result.shp.findRecords(paths.shx);
    const std::size_t shapes = shapeCount(result.shp, dbf.value());
    if (shapes > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        return Error { ErrorCode::NoShapeHeader, path, "too many records" };
    reportFiles(result.shp, dbf.value(), report);
    const std::vector<std::uint32_t> records
        = pairRecords(dbf.value(), shapes, result, result.shp, report);
    const auto encoding = chooseEncoding(dbf.value(), records, paths.cpg, askedEncoding, report);
    if (!encoding)
        return encoding.error();
    if (!checkShapes(result, report, [&](double part) { return isToStop(0.2 * part); }))
        return Error { ErrorCode::Cancelled, path, {} };

    const DbfMemo memo
        = needsMemo(dbf.value()) ? DbfMemo(paths.dbf, dbf.value().version()) : DbfMemo();
    const DbfReading reading { dbf.value(), records, memo, TextDecoder(encoding.value()) };
    result.columns
        = readDbfColumns(reading, [&](double part) { return isToStop(0.2 + 0.8 * part); });
    if (result.columns.size() != dbf.value().fields().size())
        return Error { ErrorCode::Cancelled, path, {} };
    for (const DbfColumn& column : result.columns)
        for (const Finding& finding : column.findings)
            report.add(finding);
    if (!paths.prj.empty())
        result.referenceSystem = readReferenceSystem(paths.prj, report);
    return result;
}

Result<std::string> chooseEncoding(const DbfFile& dbf, const std::vector<std::uint32_t>& records,
    const std::string& cpgPath, const std::string& asked, Report& report)
{
    const auto chosen = [&report](const std::string& encoding, const char* why) {
        Finding finding;
        finding.code = FindingCode::EncodingChosen;
        finding.severity = FindingSeverity::Note;
        finding.subject = encoding;
        finding.detail = why;
        report.add(std::move(finding));
        return encoding;
    };
    if (!asked.empty()) {
        const std::string encoding = encodingFromName(asked);
        if (encoding.empty())
            return Error { ErrorCode::UnknownEncoding, asked, {} };
        return chosen(encoding, "asked for");
    }
    const auto cpg = cpgPath.empty() ? Result<FileBytes>(FileBytes()) : FileBytes::open(cpgPath);
    if (!cpg) // it is there: texts read in another encoding would be wrong without a word
        return cpg.error();
    if (cpg.value().size() > 0) {
        const std::string_view text = cpg.value().bytes();
        const std::string encoding = encodingFromName(text);
        if (!encoding.empty())
            return chosen(encoding, ".cpg");
        constexpr std::size_t longestShown = 40;
        Finding unknown;
        unknown.code = FindingCode::EncodingUnknown;
        unknown.subject
            = std::string(text.substr(0, std::min(longestShown, text.find_first_of("\r\n"))));
        report.add(std::move(unknown));
    }
    if (const std::string encoding = encodingFromLanguageByte(dbf.languageByte());
        !encoding.empty())
        return chosen(encoding, "language byte");
    if (textEvidence(dbf, records).isUtf8())
        return chosen("UTF-8", "valid UTF-8");
    return chosen("CP1252", "default");
}

Result<std::vector<std::string>> dbfFieldNamesOf(
    const std::string& path, const std::string& encoding)
{
    const auto dbf = DbfFile::open(existingPath(path));
    if (!dbf)
        return dbf.error();
    std::vector<std::uint32_t> records(dbf.value().recordCount());
    std::iota(records.begin(), records.end(), 0U);
    const std::string stem(withoutExtension(path));
    Report ignored;
    const auto chosen
        = chooseEncoding(dbf.value(), records, existingPath(stem + ".cpg"), encoding, ignored);
    if (!chosen)
        return chosen.error();
    TextDecoder decoder(chosen.value());
    return decodedFieldNames(dbf.value(), decoder);
}

} // namespace embedded
