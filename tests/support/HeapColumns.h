// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Columns.h"

#include <memory>

namespace support {

/// Columns and runs of the test's own. Arrays lie on the heap and are no longer than what they
/// hold, so that the address sanitizer and valgrind see each read beyond.
class CHeapColumns final : public gis::IColumns {
public:
    CHeapColumns()
        : values(new std::int32_t[3] { 40, 50, 60 })
        , chunks(new gis::ColumnChunk[1] { { values.get(), nullptr, 3 } })
        , runs(new gis::EntityRun[1] { { nullptr, 0, 0, 3 } })
    {
        column.kind = gis::ColumnKind::Integer;
        column.chunks = chunks.get();
        column.chunkCount = 1;
        column.rowCount = 3;
        entities = { runs.get(), 1, 3 };
    }
    bool GetColumn(gis::CDBTable*, int, gis::ColumnView& view) override
    {
        view = column;
        return true;
    }
    bool GetEntityRuns(gis::CTheme*, gis::EntityRunsView& view) override
    {
        view = entities;
        return true;
    }

    std::unique_ptr<std::int32_t[]> values;
    std::unique_ptr<gis::ColumnChunk[]> chunks;
    std::unique_ptr<gis::EntityRun[]> runs;
    gis::ColumnView column;
    gis::EntityRunsView entities;
};

} // namespace support
