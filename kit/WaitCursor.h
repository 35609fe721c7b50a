// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCursor>

#include <vector>

namespace kit {

/// Shows the wait cursor for a scope. Nothing without an application.
class WaitCursor final {
public:
    WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
    ~WaitCursor();
};

/// Takes all wait cursors away for a scope: an override cursor would cover the dialogs and boxes
/// that open during long work too, and a hand that may click must not look like one that must wait.
class WaitCursorPause final {
public:
    WaitCursorPause();
    WaitCursorPause(const WaitCursorPause&) = delete;
    WaitCursorPause& operator=(const WaitCursorPause&) = delete;
    ~WaitCursorPause();

private:
    std::vector<QCursor> m_cursors; // innermost first
};

} // namespace kit
