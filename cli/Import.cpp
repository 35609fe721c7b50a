// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Cells.h"
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/Paths.h"
#include "cli/Progress.h"
#include "cli/RenamingMerger.h"
#include "cli/ReportFile.h"
#include "cli/Source.h"

#include "embedded/store/GeoPackage.h"

#include "exchange/merge/RuleMergeDecider.h"
#include "host/base/Numbers.h"
#include "tematica/GisMerger.h"

#include <filesystem>

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorCode;
using embedded::Result;

Result<std::unique_ptr<gis::CLibGis>> openForWriting(const std::string& path)
{
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored))
        return std::make_unique<gis::CLibGis>();
    embedded::Report report;
    auto library = embedded::openLibrary(path, embedded::OpenMode::Write, nullptr, report);
    if (!library)
        return library;
    tellWarnings(report, path);
    if (embedded::libraryPath(*library.value()).empty())
        return Error { ErrorCode::OtherProgramsFile, path, "" };
    return library;
}

/// Position of a name among a .dbf's fields: exact first, then ASCII case ignored.
Result<int> fieldOf(const std::vector<std::string>& names, const std::string& wanted)
{
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == wanted)
            return static_cast<int>(i);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (orv::CompareIgnoreAsciiCase(names[i], wanted) == 0)
            return static_cast<int>(i);
    return Error { ErrorCode::UnknownField, wanted, "" };
}

/// The options for points; field names become positions in the .dbf.
Result<TOpzImportShape> pointOptions(const ImportArguments& arguments)
{
    TOpzImportShape options;
    if (!arguments.pointName && !arguments.pointDescription)
        return options;
    options.createPoints = true;
    std::error_code ignored;
    if (!std::filesystem::exists(arguments.file, ignored))
        return Error { ErrorCode::FileNotFound, arguments.file, "" };
    const auto names = embedded::dbfFieldNamesOf(
        std::filesystem::path(arguments.file).replace_extension(".dbf"), arguments.encoding);
    if (!names)
        return names.error().code == ErrorCode::FileNotFound
            ? Error { ErrorCode::NoDbf, arguments.file, "" }
            : names.error();
    const std::pair<const std::optional<std::string>&, std::int32_t&> wanted[]
        = { { arguments.pointName, options.nameField },
              { arguments.pointDescription, options.codeField } };
    for (const auto& [name, position] : wanted) {
        if (!name)
            continue;
        const auto found = fieldOf(names.value(), *name);
        if (!found)
            return found.error();
        position = found.value();
    }
    return options;
}

/// Who settles clashes; null refuses them.
std::unique_ptr<gis::IGisMerger> mergerFor(gis::CLibGis& library, OnConflict rule)
{
    if (rule == OnConflict::Rename)
        return std::make_unique<RenamingMerger>(library);
    if (rule == OnConflict::Fail)
        return nullptr;
    auto merger = std::make_unique<gis::CGisMerger>(&library);
    exchange::setMergeDecider(
        *merger, std::make_shared<exchange::CRuleMergeDecider>(exchange::ConflictRule::Merge));
    return merger;
}

Result<void> save(gis::CLibGis& library, const std::string& path)
{
    std::error_code ignored;
    return std::filesystem::exists(path, ignored) ? embedded::saveLibrary(library)
                                                  : embedded::saveLibraryAs(library, path);
}

/// The report file, where one was asked for. What was written is there, whatever becomes of it.
Result<void> writeReport(const ImportArguments& arguments, const std::string& theme,
    const embedded::Report& report, const std::string& failure)
{
    if (!arguments.report)
        return {};
    ReportFile file;
    file.add(theme, arguments.file, report, failure);
    return file.write(*arguments.report);
}

/// Files that would take each other's place; empty when all are apart.
std::string problemOfPaths(const ImportArguments& arguments)
{
    if (isShapefilePath(arguments.into))
        return arguments.into
            + ": a library is no shapefile; give --into a name that ends in .gpkg";
    if (isPartOf(arguments.into, arguments.file))
        return arguments.into + ": the library would take the place of the file that is imported";
    if (arguments.report
        && (isPartOf(*arguments.report, arguments.file)
            || isSamePath(*arguments.report, arguments.into)))
        return *arguments.report
            + ": the report would take the place of a file of the import; choose another name";
    return {};
}

int refuse(const ImportArguments& arguments, const embedded::Report& report, const Error& error)
{
    const auto written = writeReport(arguments, {}, report, sentence(error));
    if (!written)
        tell(sentence(written.error()));
    return fail(error);
}

int write(gis::CLibGis& library, const embedded::ShapefileImportResult& imported)
{
    Output output;
    output.write("table " + plainText(library.GetTableName(imported.table).View()) + "\n");
    output.write("theme " + plainText(library.GetThemeName(imported.theme).View()) + "\n");
    return output.finish();
}

} // namespace

int runImport(const ImportArguments& arguments)
{
    if (const std::string problem = problemOfPaths(arguments); !problem.empty()) {
        tell(problem);
        return WrongUsage;
    }
    TerminalProgress progress("import");
    auto library = openForWriting(arguments.into);
    if (!library)
        return refuse(arguments, {}, library.error());
    gis::CLibGis& lib = *library.value();
    const auto points = pointOptions(arguments);
    if (!points)
        return refuse(arguments, {}, points.error());

    embedded::Library::of(&lib)->setProgress(&progress);
    // The library's own report: what a merge empties is told there too.
    embedded::Report& report = embedded::Library::of(&lib)->beginReport();
    const auto merger = mergerFor(lib, arguments.onConflict);
    const auto imported = embedded::importShapefile(lib, arguments.file,
        { arguments.encoding, points.value(), arguments.isStrict }, merger.get(), nullptr, report);
    tellWarnings(report, arguments.file);
    if (!imported)
        return refuse(arguments, report, imported.error());
    if (arguments.isStrict && report.hasWarnings())
        return refuse(arguments, report,
            { ErrorCode::StrictFinding, arguments.file, "values lost by merging" });
    const embedded::Report found = report; // saving has findings of its own
    const auto saved = save(lib, arguments.into);
    embedded::Library::of(&lib)->setProgress(nullptr);
    if (!saved)
        return refuse(arguments, found, saved.error());
    const int exitCode = write(lib, imported.value());
    const auto reported
        = writeReport(arguments, lib.GetThemeName(imported.value().theme).Bytes(), found, {});
    return reported ? exitCode : fail(reported.error());
}

} // namespace cli
