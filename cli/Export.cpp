// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Commands.h"
#include "cli/Messages.h"
#include "cli/Output.h"
#include "cli/Paths.h"
#include "cli/Progress.h"
#include "cli/ReportFile.h"
#include "cli/Source.h"

#include "embedded/model/Library.h"

#include <algorithm>
#include <filesystem>
#include <set>

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorCode;
using embedded::Result;

Result<std::vector<gis::CTheme*>> chosenThemes(
    gis::CLibGis& library, const ExportArguments& arguments)
{
    std::vector<gis::CTheme*> themes;
    if (arguments.themes.empty())
        for (int i = 0; i < library.GetNumThemes(); ++i)
            themes.push_back(library.GetTheme(i));
    for (const auto& name : arguments.themes) {
        const auto theme = chooseTheme(library, arguments.file, name);
        if (!theme)
            return theme.error();
        if (std::find(themes.begin(), themes.end(), theme.value()) == themes.end())
            themes.push_back(theme.value()); // once, however often it is named
    }
    if (themes.empty())
        return Error { ErrorCode::NoThemes, arguments.file, "" };
    return themes;
}

/// Looks before anything is written: files that are there, and themes that would share one file.
bool isInTheWay(const std::vector<gis::CTheme*>& themes, const std::string& folder,
    const ExportArguments& arguments)
{
    bool isBlocked = false;
    std::set<std::string> paths;
    for (gis::CTheme* theme : themes) {
        std::string path;
        const bool exists = embedded::shapefileExists(*theme, folder, path);
        if (!paths.insert(path).second) {
            tell(path
                + ".shp: two themes would be written to this file; export them to different "
                  "folders");
            isBlocked = true;
        } else if (exists && !arguments.isOverwriting) {
            tell(path + ".shp: exists already; use --overwrite to replace it");
            isBlocked = true;
        }
    }
    return isBlocked;
}

std::string stopped(const gis::CTheme& theme)
{
    return theme.name.Bytes() + ": stopped; this theme was not written";
}

/// Says of a theme that was not begun that it is not there.
void leaveOut(gis::CTheme& theme, const std::string& folder, ReportFile& reportFile)
{
    std::string path;
    embedded::shapefileExists(theme, folder, path);
    reportFile.add(theme.name.Bytes(), path + ".shp", {}, stopped(theme));
    tell(stopped(theme));
}

/// Exports one theme; true when it was written.
bool exportTheme(gis::CTheme& theme, const std::string& folder, const ExportArguments& arguments,
    ReportFile& reportFile, Output& output)
{
    embedded::Report report;
    int errorFlags = 0;
    std::string path;
    embedded::shapefileExists(theme, folder, path);
    const auto result
        = embedded::exportShapefile(theme, folder, arguments.options, errorFlags, report);
    tellWarnings(report, theme.name.Bytes());
    std::string failure;
    if (!result)
        failure = result.error().code == ErrorCode::Cancelled ? stopped(theme)
                                                              : sentence(result.error());
    reportFile.add(theme.name.Bytes(), path + ".shp", report, failure);
    if (!result)
        tell(failure);
    else
        output.write(path + ".shp\n");
    return result.ok();
}

} // namespace

int runExport(const ExportArguments& arguments)
{
    TerminalProgress progress("export");
    auto library = openForReading(arguments.file);
    if (!library)
        return fail(library.error());
    gis::CLibGis& lib = *library.value();
    const auto themes = chosenThemes(lib, arguments);
    if (!themes)
        return fail(themes.error());
    const std::string folder = std::filesystem::absolute(arguments.folder).lexically_normal();
    if (arguments.report
        && (isPartOf(*arguments.report, arguments.file)
            || isShapefilePartIn(*arguments.report, folder))) {
        tell(*arguments.report
            + ": the report would take the place of a file of the export; choose another name");
        return WrongUsage;
    }
    if (std::error_code ignored; !std::filesystem::is_directory(folder, ignored))
        return fail({ ErrorCode::FolderNotFound, arguments.folder, "" });
    if (isInTheWay(themes.value(), folder, arguments))
        return Failed;

    embedded::Library::of(&lib)->setProgress(&progress);
    ReportFile reportFile;
    Output output;
    bool isAllWritten = true;
    for (gis::CTheme* theme : themes.value()) {
        if (wasInterrupted()) { // also between two themes: what is left must not be missed
            leaveOut(*theme, folder, reportFile);
            isAllWritten = false;
        } else if (!exportTheme(*theme, folder, arguments, reportFile, output)) {
            isAllWritten = false;
        }
    }
    embedded::Library::of(&lib)->setProgress(nullptr);
    const int exitCode
        = output.finish(); // what was written is said, whatever becomes of the report
    if (arguments.report) {
        const auto written = reportFile.write(*arguments.report);
        if (!written)
            return fail(written.error());
    }
    return isAllWritten ? exitCode : static_cast<int>(Failed);
}

} // namespace cli
