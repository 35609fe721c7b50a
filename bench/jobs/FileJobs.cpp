// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/jobs/FileJobs.h"

#include "bench/data/PointData.h"

#include "embedded/model/Library.h"
#include "embedded/shapefile/Shapefile.h"
#include "embedded/store/GeoPackage.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace bench {
namespace {

[[noreturn]] void stop(const std::string& what)
{
    std::fprintf(stderr, "bench: %s\n", what.c_str());
    std::exit(1);
}

std::string tematica(const Jobs& jobs)
{
    return jobs.settings().programFolder + "/tematica";
}

void importJob(Jobs& jobs, const std::string& shapefile)
{
    const int repetitions = jobs.settings().quick ? 1 : 3;
    const std::string theirs = jobs.settings().folder + "/import-ogr.gpkg";
    const double oursMs = importMs(jobs, shapefile, repetitions);
    const double ogrMs = medianCommandMs(repetitions,
        fmt::format("ogr2ogr -q -f GPKG '{}' '{}' 2> /dev/null", theirs, shapefile),
        fmt::format("rm -f '{}'", theirs));
    jobs.add({ "import of a shapefile into a new library", oursMs, "ogr2ogr -f GPKG", ogrMs, 0.5 });
}

void exportJob(Jobs& jobs, const std::string& library)
{
    const int repetitions = jobs.settings().quick ? 1 : 3;
    const double oursMs = exportMs(jobs, library, repetitions);
    const double ogrMs = medianCommandMs(repetitions,
        fmt::format("ogr2ogr -q -f 'ESRI Shapefile' -lco ENCODING=UTF-8 '{}/out-ogr' '{}' Punti 2> "
                    "/dev/null",
            jobs.settings().folder, library),
        fmt::format("rm -rf '{}/out-ogr'", jobs.settings().folder));
    jobs.add({ "export of points as a shapefile", oursMs, "ogr2ogr", ogrMs, 1.0 });
}

void countJob(Jobs& jobs, const std::string& library)
{
    const int repetitions = jobs.settings().quick ? 3 : 7;
    const double oursMs = countMs(jobs, library, repetitions);
    const double sqliteMs = medianCommandMs(repetitions,
        fmt::format(
            "sqlite3 '{}' 'SELECT count(*) FROM \"Punti\" WHERE \"Corsie\" IS NULL' > /dev/null",
            library),
        fmt::format("cat '{}' > /dev/null", library));
    jobs.add({ "query (e) --count, whole process", oursMs, "sqlite3 program", sqliteMs, 2.5 });
}

} // namespace

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
    if (!embedded::exportShapefile(*theme, folder, {}, flags, report))
        stop("the shapefile could not be written");
    return folder + "/Punti.shp";
}

std::string pointsLibrary(const Jobs& jobs, int rows)
{
    std::string path = fmt::format("{}/points{}.gpkg", jobs.settings().folder, rows);
    if (std::filesystem::exists(path))
        return path;
    gis::CLibGis library;
    fillLibrary(library, makePoints(rows));
    if (const auto saved = embedded::saveLibraryCopy(library, path); !saved)
        stop(saved.error().detail);
    return path;
}

double importMs(const Jobs& jobs, const std::string& shapefile, int repetitions)
{
    const std::string made = jobs.settings().folder + "/import.gpkg";
    return medianCommandMs(repetitions,
        fmt::format(
            "'{}' import '{}' --into '{}' > /dev/null 2>&1", tematica(jobs), shapefile, made),
        fmt::format("rm -f '{}'", made));
}

double exportMs(const Jobs& jobs, const std::string& library, int repetitions)
{
    const std::string folder = jobs.settings().folder;
    return medianCommandMs(repetitions,
        fmt::format("'{}' export '{}' --to '{}/out' --overwrite > /dev/null 2>&1", tematica(jobs),
            library, folder),
        fmt::format("rm -rf '{0}/out'; mkdir '{0}/out'", folder));
}

double countMs(const Jobs& jobs, const std::string& library, int repetitions)
{
    return medianCommandMs(repetitions,
        fmt::format(
            "'{}' query '{}' 'Corsie IS NULL' --count > /dev/null", tematica(jobs), library),
        fmt::format("cat '{}' > /dev/null", library));
}

void fileJobs(Jobs& jobs)
{
    const int rows = jobs.settings().rows();
    if (jobs.wants("import of a shapefile into a new library"))
        importJob(jobs, pointsShapefile(jobs, rows));
    if (jobs.wants("export of points as a shapefile"))
        exportJob(jobs, pointsLibrary(jobs, rows));
    if (jobs.wants("query (e) --count, whole process"))
        countJob(jobs, pointsLibrary(jobs, rows));
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
