// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "embedded/store/GeoPackage.h"
#include "query/execution/DistinctValues.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace bench {
namespace {

/// The field's values with counts as SQLite groups them, kept as a program would keep them.
std::size_t sqliteValues(sqlite3* db, const std::string& field)
{
    std::vector<std::pair<std::string, sqlite3_int64>> values;
    sqlite3_stmt* statement = nullptr;
    const std::string sql = fmt::format(
        "SELECT \"{0}\", count(*) FROM \"Punti\" WHERE \"{0}\" IS NOT NULL GROUP BY \"{0}\"",
        field);
    sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr);
    while (sqlite3_step(statement) == SQLITE_ROW)
        values.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(statement, 0)),
            sqlite3_column_int64(statement, 1));
    sqlite3_finalize(statement);
    return values.size();
}

} // namespace

void valueJobs(Jobs& jobs)
{
    if (!jobs.wants("distinct values"))
        return;
    const PointArrays points = makePoints(jobs.settings().rows());
    gis::CLibGis library;
    gis::CTheme* theme = fillLibrary(library, points);
    const std::string file = jobs.settings().folder + "/values.gpkg";
    if (const auto saved = embedded::saveLibraryCopy(library, file); !saved) {
        std::fprintf(stderr, "bench: %s\n", saved.error().detail.c_str());
        std::exit(1);
    }
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_exec(db, "PRAGMA cache_size=-1000000", nullptr, nullptr, nullptr);
    for (const char* field : { "Nome", "Tipo", "Larghezza" }) {
        const std::string name = fmt::format("distinct values of {}", field);
        if (!jobs.wants(name))
            continue;
        const int index = theme->table->findField(field);
        std::size_t ours = 0;
        std::size_t theirs = 0;
        const double oursMs = medianMs(jobs.settings().quick ? 3 : 9,
            [&] { ours = query::distinctValues(library, theme, index)->values.size(); });
        const double sqliteMs = medianMs(3, [&] { theirs = sqliteValues(db, field); });
        if (ours != theirs) {
            std::fprintf(
                stderr, "bench: %s has %zu values, SQLite finds %zu\n", field, ours, theirs);
            std::exit(1);
        }
        jobs.add({ name, oursMs, "SQLite GROUP BY", sqliteMs, 0.1 });
    }
    sqlite3_close(db);
}

} // namespace bench
