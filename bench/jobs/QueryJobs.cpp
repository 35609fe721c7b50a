// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/jobs/HandScan.h"
#include "bench/jobs/Queries.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "host/gis/Columns.h"
#include "tematica/QueryExecute.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

/// The row ids that SQLite finds, into a vector, as a program of its own would ask.
int sqliteQuery(sqlite3* db, const char* condition, std::vector<sqlite3_int64>& ids)
{
    ids.clear();
    sqlite3_stmt* statement = nullptr;
    const std::string sql = fmt::format("SELECT fid FROM \"Punti\" WHERE {}", condition);
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
        std::fprintf(stderr, "bench: %s\n", sqlite3_errmsg(db));
        std::exit(1);
    }
    while (sqlite3_step(statement) == SQLITE_ROW)
        ids.push_back(sqlite3_column_int64(statement, 0));
    sqlite3_finalize(statement);
    return static_cast<int>(ids.size());
}

void requireSame(char letter, int ours, int theirs, const char* peer)
{
    if (ours == theirs)
        return;
    std::fprintf(
        stderr, "bench: query %c finds %d entities, %s finds %d\n", letter, ours, peer, theirs);
    std::exit(1);
}

} // namespace

int runQuery(
    gis::CLibGis& library, gis::CTheme* theme, const char* filter, std::vector<gis::CEnt*>& found)
{
    CQueryExecute query(&library, theme);
    if (!query.SetQueryFilter(filter)) {
        std::fprintf(stderr, "bench: filter refused: %s\n", filter);
        std::exit(1);
    }
    return query.Execute(found);
}

void queryJobs(Jobs& jobs)
{
    if (!jobs.wants("query"))
        return;
    const PointArrays points = makePoints(jobs.settings().rows());
    gis::CLibGis library;
    gis::CTheme* theme = fillLibrary(library, points);
    const std::string file = jobs.settings().folder + "/queries.gpkg";
    if (const auto saved = embedded::saveLibraryCopy(library, file); !saved) {
        std::fprintf(stderr, "bench: %s\n", saved.error().detail.c_str());
        std::exit(1);
    }
    CellHost cellHost;
    gis::CTheme* cellTheme = fillLibrary(cellHost, points);
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_exec(db, "PRAGMA cache_size=-1000000", nullptr, nullptr, nullptr);

    gis::EntityRunsView runs;
    embedded::Library::of(&library)->GetEntityRuns(theme, runs);
    char* const first = reinterpret_cast<char*>(runs.runs[0].first);
    const std::ptrdiff_t stride = runs.runs[0].strideBytes;

    std::vector<gis::CEnt*> found;
    std::vector<gis::CEnt*> expected;
    std::vector<sqlite3_int64> ids;
    const int repetitions = jobs.settings().quick ? 5 : 21;
    for (const Query& query : Queries) {
        const std::string name = fmt::format("query ({})", query.letter);
        if (!jobs.wants(name))
            continue;
        const double ours
            = medianMs(repetitions, [&] { runQuery(library, theme, query.filter, found); });
        const double hand = medianMs(
            repetitions, [&] { handScan(query.letter, points, first, stride, expected); });
        requireSame(query.letter, static_cast<int>(found.size()), static_cast<int>(expected.size()),
            "the hand-written scan");
        const double sqlite = medianMs(3, [&] { sqliteQuery(db, query.sql, ids); });
        requireSame(
            query.letter, static_cast<int>(found.size()), static_cast<int>(ids.size()), "SQLite");
        const double cells
            = medianMs(3, [&] { runQuery(cellHost, cellTheme, query.filter, found); });
        requireSame(
            query.letter, static_cast<int>(found.size()), static_cast<int>(ids.size()), "SQLite");
        jobs.add(
            { name + " against a hand-written scan", ours, "hand-written, 2 threads", hand, 3.0 });
        jobs.add({ name + " against SQLite", ours, "SQLite", sqlite, 1.0 / 15.0 });
        jobs.add({ name + " cell by cell", cells, "SQLite", sqlite, 6.0 });
    }
    sqlite3_close(db);
}

} // namespace bench
