// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/plan/ColumnPlan.h"

#include "query/execution/plan/Compiler.h"
#include "query/execution/plan/EntitySelection.h"

#include "host/gis/LibGis.h"

namespace query::plan {

bool selectByColumns(
    const QuerySource& source, CEEExpression& filter, std::vector<gis::CEnt*>& result)
{
    auto* const columns
        = static_cast<gis::IColumns*>(source.library.Extension(gis::ColumnsExtension));
    gis::EntityRunsView runs;
    if (!columns || !columns->GetEntityRuns(source.theme, runs))
        return false;
    const std::optional<int> rowCount = usedRowCount(runs);
    if (!rowCount)
        return false;
    Program program;
    Compiler compiler(source, *columns, { runs.entityCount, *rowCount });
    if (!compiler.compile(filter, program))
        return false;
    selectEntities(program, runs, *rowCount, result);
    return true;
}

} // namespace query::plan
