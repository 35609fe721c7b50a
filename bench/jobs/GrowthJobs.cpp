// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/jobs/FileJobs.h"
#include "bench/jobs/Queries.h"

#include "embedded/model/Library.h"
#include "query/execution/DistinctValues.h"
#include "tematica/QueryExecute.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>

namespace bench {
namespace {

struct Cost {
    std::string job;
    double value = 0; // milliseconds; megabytes for memory
    double goal = 11.0;
};

void measureQueries(gis::CLibGis& library, gis::CTheme* theme, const char* way, int repetitions,
    std::vector<Cost>& costs)
{
    std::vector<gis::CEnt*> found;
    for (const Query& query : Queries)
        costs.push_back({ fmt::format("query ({}){}", query.letter, way),
            medianMs(repetitions, [&] { runQuery(library, theme, query.filter, found); }) });
}

std::vector<Cost> measure(const Jobs& jobs, int rows)
{
    std::vector<Cost> costs;
    {
        const PointArrays points = makePoints(rows);
        const double before = residentBytes();
        gis::CLibGis library;
        gis::CTheme* theme = fillLibrary(library, points);
        costs.push_back({ "memory", (residentBytes() - before) / 1e6 });
        measureQueries(library, theme, "", 9, costs);
        for (const char* field : { "Nome", "Tipo", "Larghezza" })
            costs.push_back({ fmt::format("distinct values of {}", field), medianMs(3, [&] {
                                 static_cast<void>(query::distinctValues(
                                     library, theme, theme->table->findField(field)));
                             }) });
    }
    {
        CellHost library;
        gis::CTheme* theme = fillLibrary(library, makePoints(rows));
        measureQueries(library, theme, " cell by cell", 3, costs);
    }
    costs.push_back({ "query (e) --count", countMs(jobs, pointsLibrary(jobs, rows), 3) });
    costs.push_back({ "export", exportMs(jobs, pointsLibrary(jobs, rows), 1) });
    costs.push_back({ "import", importMs(jobs, pointsShapefile(jobs, rows), 1), 13.0 });
    return costs;
}

} // namespace

/// Ten times the rows against once the rows, both ours: the goal is what growth may cost.
void growthJobs(Jobs& jobs)
{
    if (!jobs.wants("growth"))
        return;
    const int rows = jobs.settings().rows();
    const std::vector<Cost> once = measure(jobs, rows);
    const std::vector<Cost> tenfold = measure(jobs, rows * 10);
    for (std::size_t i = 0; i < once.size(); ++i)
        jobs.add({ "growth: " + once[i].job, tenfold[i].value, fmt::format("{} rows", rows),
            once[i].value, once[i].goal });
}

} // namespace bench
