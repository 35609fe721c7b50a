// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace bench {
namespace {

/// The measured points as a shapefile, made once in the folder; its path.
std::string pointsShapefile(const Jobs& jobs, int rows)
{
    const std::string folder = fmt::format("{}/shp{}", jobs.settings().folder, rows);
    if (std::filesystem::exists(folder + "/Punti.shp"))
        return folder + "/Punti.shp";
    std::filesystem::create_directories(folder);
    gis::CLibGis library;
    gis::CTheme* theme = fillLibrary(library, makePoints(rows));
    int flags = 0;
    embedded::Report report;
    if (!embedded::exportShapefile(*theme, folder, {}, flags, report)) {
        std::fprintf(stderr, "bench: the shapefile could not be written\n");
        std::exit(1);
    }
    return folder + "/Punti.shp";
}

std::string tematica(const Jobs& jobs)
{
    return jobs.settings().programFolder + "/tematica";
}

void importJob(Jobs& jobs, const std::string& shapefile)
{
    const std::string folder = jobs.settings().folder;
    const std::string ours = folder + "/import.gpkg";
    const std::string theirs = folder + "/import-ogr.gpkg";
    const int repetitions = jobs.settings().quick ? 1 : 3;
    const double oursMs = medianCommandMs(repetitions,
        fmt::format(
            "'{}' import '{}' --into '{}' > /dev/null 2>&1", tematica(jobs), shapefile, ours),
        fmt::format("rm -f '{}'", ours));
    const double ogrMs = medianCommandMs(repetitions,
        fmt::format("ogr2ogr -q -f GPKG '{}' '{}' 2> /dev/null", theirs, shapefile),
        fmt::format("rm -f '{}'", theirs));
    jobs.add({ "import of a shapefile into a new library", oursMs, "ogr2ogr -f GPKG", ogrMs, 0.5 });
}

void exportJob(Jobs& jobs, const std::string& library)
{
    const std::string folder = jobs.settings().folder;
    const int repetitions = jobs.settings().quick ? 1 : 3;
    const double oursMs = medianCommandMs(repetitions,
        fmt::format("'{}' export '{}' --to '{}/out' --overwrite > /dev/null 2>&1", tematica(jobs),
            library, folder),
        fmt::format("rm -rf '{0}/out'; mkdir '{0}/out'", folder));
    const double ogrMs = medianCommandMs(repetitions,
        fmt::format(
            "ogr2ogr -q -f 'ESRI Shapefile' -lco ENCODING=UTF-8 '{}/out-ogr' '{}' 2> /dev/null",
            folder, library),
        fmt::format("rm -rf '{}/out-ogr'", folder));
    jobs.add({ "export of points as a shapefile", oursMs, "ogr2ogr", ogrMs, 1.0 });
}

void countJob(Jobs& jobs, const std::string& library)
{
    const int repetitions = jobs.settings().quick ? 3 : 7;
    const double oursMs = medianCommandMs(repetitions,
        fmt::format(
            "'{}' query '{}' 'Corsie IS NULL' --count > /dev/null", tematica(jobs), library),
        fmt::format("cat '{}' > /dev/null", library));
    const double sqliteMs = medianCommandMs(repetitions,
        fmt::format(
            "sqlite3 '{}' 'SELECT count(*) FROM \"Punti\" WHERE \"Corsie\" IS NULL' > /dev/null",
            library));
    jobs.add({ "query (e) --count, whole process", oursMs, "sqlite3 program", sqliteMs, 2.5 });
}

} // namespace

void fileJobs(Jobs& jobs)
{
    const bool imports = jobs.wants("import of a shapefile into a new library");
    const bool exports = jobs.wants("export of points as a shapefile");
    const bool counts = jobs.wants("query (e) --count, whole process");
    if (!imports && !exports && !counts)
        return;
    const int rows = jobs.settings().rows();
    if (imports)
        importJob(jobs, pointsShapefile(jobs, rows));
    if (!exports && !counts)
        return;
    const std::string library = fmt::format("{}/points.gpkg", jobs.settings().folder);
    {
        gis::CLibGis made;
        fillLibrary(made, makePoints(rows));
        if (const auto saved = embedded::saveLibraryCopy(made, library); !saved) {
            std::fprintf(stderr, "bench: %s\n", saved.error().detail.c_str());
            std::exit(1);
        }
    }
    if (exports)
        exportJob(jobs, library);
    if (counts)
        countJob(jobs, library);
}

void memoryJob(Jobs& jobs)
{
    const std::string name = "memory of a loaded library (MB in place of ms)";
    if (!jobs.wants(name))
        return;
    const PointArrays points = makePoints(jobs.settings().rows());
    gis::CLibGis empty;
    const double before = residentBytes();
    gis::CLibGis library;
    fillLibrary(library, points);
    const double megabytes = (residentBytes() - before) / 1e6;
    // The bound is a figure of megabytes per million rows; it stands as peer so that the ratio
    // tells how near it is.
    jobs.add({ name, megabytes, "200 MB per million rows", 200.0 * points.count / 1e6, 1.0 });
}

} // namespace bench
