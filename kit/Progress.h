// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/WaitCursor.h"

#include <QPointer>
#include <QProgressDialog>
#include <QString>

#include <chrono>
#include <optional>

class QWidget;

namespace kit {

/// How long work may take before it shows its progress.
inline constexpr int ProgressAfterMs = 150;

enum class ProgressKind {
    Stoppable, // with "Annulla"
    Unstoppable, // what is under way has to be finished
};

/// Progress of work that runs in slices on the user-interface thread: nothing to be seen while it
/// is quick, after that a small dialog with "Annulla". Other windows take no input until the end,
/// also when it was stopped.
/// Thread: the user interface's. Without an application it only counts.
class Progress final {
public:
    Progress(QWidget* parent, const QString& label, ProgressKind kind = ProgressKind::Stoppable);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    /// To be called every few milliseconds with the fraction done, 0 to 1; false when the user
    /// wants it stopped.
    bool advance(double fraction);
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }

private:
    void show();

    QPointer<QWidget> m_parent;
    QString m_label;
    ProgressKind m_kind;
    std::chrono::steady_clock::time_point m_start;
    std::chrono::steady_clock::time_point m_lastEvents;
    std::optional<WaitCursorPause> m_pause; // while "Annulla" can be clicked
    QPointer<QProgressDialog> m_dialog; // owned; goes with its window, should that go first
    bool m_isCancelled = false;
};

} // namespace kit
