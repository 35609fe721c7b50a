// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"
#include "embedded/store/Failure.h"

#include <chrono>
#include <cstdint>

namespace embedded::store {

/// Tells a listener how far a save is, some ten times a second at most, and ends the save by
/// StoreFailure (Cancelled) when the listener asks for it.
class CSaveProgress final {
public:
    CSaveProgress(IProgress* listener, std::int64_t rowsToWrite)
        : m_listener(listener)
        , m_rowsToWrite(rowsToWrite)
    {
    }
    void rowWritten()
    {
        if ((++m_rows & 1023) == 0 && m_listener)
            tell();
    }

private:
    void tell()
    {
        const auto now = std::chrono::steady_clock::now();
        if (now - m_lastTold < std::chrono::milliseconds(100))
            return;
        m_lastTold = now;
        const double all = m_rowsToWrite > m_rows ? static_cast<double>(m_rowsToWrite)
                                                  : static_cast<double>(m_rows);
        if (!m_listener->advance(static_cast<double>(m_rows) / all))
            failWith(ErrorCode::Cancelled, {});
    }

    IProgress* m_listener;
    std::int64_t m_rowsToWrite;
    std::int64_t m_rows = 0;
    std::chrono::steady_clock::time_point m_lastTold = std::chrono::steady_clock::now();
};

} // namespace embedded::store
