// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Source.h"

#include "cli/Output.h"
#include "cli/Progress.h"

#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"

#include "host/base/Numbers.h"

namespace cli {

using embedded::Error;
using embedded::ErrorCode;
using embedded::Result;

namespace {

std::string themeNames(gis::CLibGis& library)
{
    std::string names;
    for (int i = 0; i < library.GetNumThemes(); ++i) {
        if (i > 0)
            names += ", ";
        names += library.GetThemeName(library.GetTheme(i)).Bytes();
    }
    return names;
}

Result<std::unique_ptr<gis::CLibGis>> readShapefile(
    const std::string& path, embedded::Report& report)
{
    auto library = std::make_unique<gis::CLibGis>();
    TerminalProgress progress("read");
    embedded::Library::of(library.get())->setProgress(&progress);
    const auto imported = embedded::importShapefile(*library, path, {}, nullptr, nullptr, report);
    if (!imported)
        return imported.error();
    embedded::Library::of(library.get())->setProgress(nullptr);
    return library;
}

} // namespace

const Error* failedRead(gis::CLibGis& library)
{
    return embedded::Library::of(&library)->failedRead();
}

bool isShapefilePath(const std::string& path)
{
    return path.size() >= 4
        && orv::CompareIgnoreAsciiCase(std::string_view(path).substr(path.size() - 4), ".shp") == 0;
}

Result<std::unique_ptr<gis::CLibGis>> openForReading(const std::string& path)
{
    embedded::Report report;
    auto library = isShapefilePath(path)
        ? readShapefile(path, report)
        : embedded::openLibrary(path, embedded::OpenMode::Read, nullptr, report);
    if (library)
        tellWarnings(report, path);
    return library;
}

Result<gis::CTheme*> chooseTheme(
    gis::CLibGis& library, const std::string& path, const std::optional<std::string>& name)
{
    if (name) {
        if (gis::CTheme* theme = library.FindTheme(orv::String(*name)))
            return theme;
        return Error { ErrorCode::UnknownTheme, *name, "themes: " + themeNames(library) };
    }
    const int count = library.GetNumThemes();
    if (count == 0)
        return Error { ErrorCode::NoThemes, path, "" };
    if (count > 1)
        return Error { ErrorCode::SeveralThemes, path, themeNames(library) };
    return library.GetTheme(0);
}

Result<int> findField(gis::CLibGis& library, gis::CDBTable* table, const std::string& name)
{
    const int count = library.GetNumFields(table);
    int found = -1;
    for (int i = 0; i < count; ++i) {
        const orv::String fieldName = library.GetFieldName(library.GetField(table, i));
        if (fieldName.Bytes() == name)
            return i;
        if (found < 0 && orv::CompareIgnoreAsciiCase(fieldName.View(), name) == 0)
            found = i;
    }
    if (found < 0)
        return Error { ErrorCode::UnknownField, name,
            "table " + library.GetTableName(table).Bytes() };
    return found;
}

} // namespace cli
