// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "host/gis/Exchange.h"

#include "embedded/shapefile/Shapefile.h"

#include "host/gis/LibGis.h"

#include <new>

using embedded::Library;
using embedded::Report;

namespace gis {

ILinkImportedEnt::~ILinkImportedEnt() = default;

} // namespace gis

IExportFileCallback::~IExportFileCallback() = default;

namespace {

/// Any failure that callers have no message for.
constexpr int OtherFailure = 2;

Report& reportOf(gis::CLibGis* library, Report& own)
{
    Library* implementation = Library::of(library);
    return implementation ? implementation->beginReport() : own;
}

int codeOf(const embedded::Error& error, orv::String& missing)
{
    if (error.code != embedded::ErrorCode::FileNotFound && error.code != embedded::ErrorCode::NoDbf)
        return OtherFailure;
    // The attributes' file is named where it would lie.
    const bool isDbf = error.code == embedded::ErrorCode::NoDbf;
    missing = orv::String(std::string_view(isDbf ? error.detail : error.subject));
    return ImportFileNotFound;
}

} // namespace

bool FExportFileShape(gis::CLibGis* library, gis::CTheme* theme, const orv::String& folder,
    int maxTextBytes, int coordinates, IExportFileCallback* callback, int& errorFlags)
{
    errorFlags = 0;
    if (!library || !theme)
        return false;
    Report own;
    std::string path;
    // A folder that cannot be written to is no question for the user.
    const bool mayExist = callback && folder.View().starts_with('/');
    if (mayExist && embedded::shapefileExists(*theme, folder.Bytes(), path)
        && !callback->AskOverwrite(orv::String(std::string_view(path))))
        return true;
    embedded::ShapefileExportOptions options;
    options.maxTextBytes = maxTextBytes;
    if (coordinates == 1 || coordinates == 2)
        options.coordinates = static_cast<embedded::ExportCoordinates>(coordinates);
    return embedded::exportShapefile(
        *theme, folder.Bytes(), options, errorFlags, reportOf(library, own))
        .ok();
}

bool FImportFileShape(gis::CLibGis* library, const orv::String& path, orv::String& tableName,
    int* resultCode, gis::ILinkImportedEnt* link, gis::IGisMerger* merger, TOpzImportShape& options)
{
    int ignored = 0;
    int& code = resultCode ? *resultCode : ignored;
    code = OtherFailure;
    if (!library)
        return false;
    Report own;
    embedded::ShapefileImportOptions imported;
    imported.points = options;
    const auto result = embedded::importShapefile(
        *library, path.Bytes(), imported, merger, link, reportOf(library, own));
    if (!result) {
        code = codeOf(result.error(), tableName);
        Library::of(library)->noteFailure(result.error());
        return false;
    }
    tableName = result.value().table->name();
    code = result.value().tableRenamed ? ImportTableRenamed : 0;
    return true;
}

int FGetEntTypeFromFileShp(const orv::String& path)
{
    return embedded::shapefileEntityType(path.Bytes());
}

bool FGetFieldFromFileDbf(gis::CLibGis*, const orv::String& path, std::vector<orv::String>& names)
{
    names.clear();
    try {
        const auto found = embedded::dbfFieldNamesOf(path.Bytes(), {});
        if (!found)
            return false;
        for (const std::string& name : found.value())
            names.emplace_back(std::string_view(name));
        return true;
    } catch (const std::bad_alloc&) {
        names.clear();
        return false;
    }
}
