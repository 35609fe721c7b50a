// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// A host whose counting takes its time.

#include "query/dialog/FilterCount.h"

#include "host/gis/Columns.h"
#include "tests/support/RecordingLibrary.h"

#include <atomic>
#include <chrono>
#include <numeric>
#include <vector>

namespace querytest {

/// Columns of very many rows, all chunks of which lie in the same memory: long to be counted, made
/// at once. The only field counts from 0 to 65535, again and again; entity k has row k.
class CManyRows final : public gis::IColumns {
public:
    static constexpr int MostChunks = 16384;
    std::atomic<int> asked = 0; // for columns: the counting is about to begin

    explicit CManyRows(support::CRecordingLibrary& library)
        : m_library(library)
        , m_values(gis::ColumnChunkRows)
        , m_chunks(MostChunks, { m_values.data(), nullptr, gis::ColumnChunkRows })
    {
        std::iota(m_values.begin(), m_values.end(), 0);
        library.offer(gis::ColumnsExtension, static_cast<gis::IColumns*>(this));
        setChunks(16);
    }
    void setChunks(int chunks)
    {
        m_chunkCount = chunks;
        m_run.count = chunks * gis::ColumnChunkRows;
        m_library.answer<int>("GetNoEnts", m_run.count);
    }
    [[nodiscard]] int chunks() const { return m_chunkCount; }
    bool GetColumn(gis::CDBTable*, int, gis::ColumnView& view) override
    {
        ++asked;
        view = { gis::ColumnKind::Integer, m_chunks.data(), m_chunkCount, m_run.count, nullptr, 0 };
        return true;
    }
    bool GetEntityRuns(gis::CTheme*, gis::EntityRunsView& view) override
    {
        view = { &m_run, 1, m_run.count };
        return true;
    }

private:
    support::CRecordingLibrary& m_library;
    std::vector<std::int32_t> m_values;
    std::vector<gis::ColumnChunk> m_chunks;
    gis::EntityRun m_run;
    int m_chunkCount = 0;
};

/// A filter for which a row costs a while, and for which all rows are found.
inline constexpr const char* SlowFilter
    = "n * n + n / 3 - n * 7 + n / 11 >= n * n + n / 3 - n * 7 + n / 11 AND n * 3 - n / 7 + n * 5 "
      "- n / 13 <= n * 3 - n / 7 + n * 5 - n / 13";

/// Gives the table so many rows that counting them takes this long at least, and returns how long.
inline std::chrono::milliseconds makeSlow(
    CManyRows& rows, support::CRecordingLibrary& library, std::chrono::milliseconds least)
{
    using Clock = std::chrono::steady_clock;
    std::chrono::milliseconds taken {};
    while (true) {
        const auto count = query::CFilterCount::make(library, library.GetTheme(0), SlowFilter);
        const auto start = Clock::now();
        static_cast<void>(count->countColumns());
        taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
        if (taken >= least || rows.chunks() * 2 > CManyRows::MostChunks - 1)
            return taken;
        rows.setChunks(rows.chunks() * 2);
    }
}

} // namespace querytest
