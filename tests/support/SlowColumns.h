// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Columns.h"

#include <atomic>
#include <chrono>
#include <new>
#include <thread>

namespace support {

/// Columns that take their time, like those of a large file on a slow disk.
class CSlowColumns final : public gis::IColumns {
public:
    CSlowColumns(gis::IColumns* columns, int milliseconds)
        : m_columns(columns)
        , m_delay(milliseconds)
    {
    }
    bool GetColumn(gis::CDBTable* table, int fieldIndex, gis::ColumnView& view) override
    {
        ++asked;
        if (std::this_thread::get_id() == m_owner)
            ++askedHere;
        else // only there may it take long
            std::this_thread::sleep_for(m_delay);
        if (throwsAside && std::this_thread::get_id() != m_owner)
            throw std::bad_alloc();
        return m_columns->GetColumn(table, fieldIndex, view);
    }
    bool GetEntityRuns(gis::CTheme* theme, gis::EntityRunsView& view) override
    {
        return m_columns->GetEntityRuns(theme, view);
    }
    std::atomic<int> asked = 0;
    std::atomic<bool> throwsAside = false; // on other threads: as if memory were short there
    std::atomic<int> askedHere = 0; // on the thread that made this

private:
    gis::IColumns* m_columns;
    std::chrono::milliseconds m_delay;
    std::thread::id m_owner = std::this_thread::get_id();
};

} // namespace support
