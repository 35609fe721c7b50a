// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/shapefile/fuzz/FuzzedImport.h"

#include "embedded/shapefile/Shapefile.h"
#include "tests/embedded/shapefile/RawShapefile.h"

#include "host/gis/LibGis.h"

#include <cstdlib>

namespace shapetest {

namespace {

int importedEntities(const std::string& path, gis::CLibGis& library)
{
    embedded::Report report;
    embedded::ShapefileImportOptions options;
    options.points.createPoints = true;
    const auto result = embedded::importShapefile(library, path, options, nullptr, nullptr, report);
    return result ? library.GetNoEnts(result.value().theme) : -1;
}

} // namespace

void importFuzzed(const char* extension, std::string_view bytes)
{
    static const TemporaryFolder folder;
    static const TemporaryFolder exported;
    static const std::string path
        = writeShapefile(folder, "f", pointFile(3), textTable({ "a", "Città", "c" }));
    writeFile(folder / (std::string("f") + extension), bytes);
    gis::CLibGis library;
    const int count = importedEntities(path, library);
    if (count < 0)
        return;
    int flags = 0;
    embedded::Report report;
    const auto written
        = embedded::exportShapefile(*library.GetTheme(0), exported.path(), {}, flags, report);
    gis::CLibGis again;
    if (written && importedEntities(exported / "f.shp", again) != count)
        std::abort();
}

} // namespace shapetest
