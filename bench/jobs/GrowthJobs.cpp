// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "bench/data/PointData.h"
#include "bench/support/Jobs.h"

#include "embedded/model/Library.h"
#include "query/execution/DistinctValues.h"
#include "tematica/QueryExecute.h"

#include <fmt/format.h>

namespace bench {
namespace {

struct Measured {
    double queryMs = 0;
    double valuesMs = 0;
};

Measured measure(int rows)
{
    gis::CLibGis library;
    gis::CTheme* theme = fillLibrary(library, makePoints(rows));
    std::vector<gis::CEnt*> found;
    Measured measured;
    measured.queryMs = medianMs(9, [&] {
        CQueryExecute query(&library, theme);
        if (query.SetQueryFilter(
                "Tipo = 'Strada' AND (Larghezza >= 3.5 OR Corsie > 1) AND Nome IS NOT NULL"))
            query.Execute(found);
    });
    measured.valuesMs
        = medianMs(5, [&] { static_cast<void>(query::distinctValues(library, theme, 0)); });
    return measured;
}

} // namespace

/// Ten times the rows against once the rows, both ours: the goal is what growth may cost.
void growthJobs(Jobs& jobs)
{
    if (!jobs.wants("growth"))
        return;
    const int rows = jobs.settings().rows();
    const Measured once = measure(rows);
    const Measured tenfold = measure(rows * 10);
    jobs.add({ "growth of query (a), tenfold rows", tenfold.queryMs, fmt::format("{} rows", rows),
        once.queryMs, 11.0 });
    jobs.add({ "growth of distinct values of Nome, tenfold rows", tenfold.valuesMs,
        fmt::format("{} rows", rows), once.valuesMs, 11.0 });
}

} // namespace bench
