// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"

#include <chrono>

namespace cli {

/// Long work that writes files: says how far it is on the standard error of a terminal, and is
/// stopped by an interrupt (Ctrl+C), so that nothing half written stays. While one exists the
/// interrupt ends the work and not the process; a second interrupt ends the process at once.
class TerminalProgress final : public embedded::IProgress {
public:
    explicit TerminalProgress(const char* what);
    TerminalProgress(const TerminalProgress&) = delete;
    TerminalProgress& operator=(const TerminalProgress&) = delete;
    ~TerminalProgress();

    bool advance(double fraction) override;

private:
    const char* m_what;
    bool m_isTerminal;
    std::chrono::steady_clock::time_point m_start;
};

/// True when an interrupt came while a `TerminalProgress` existed.
[[nodiscard]] bool wasInterrupted();
/// Ends the process by the interrupt that was held back, as the shell expects of an interrupted
/// program; does nothing where none came.
void endByInterrupt();
/// Wipes the line that shows the progress, before something else is written on the terminal.
void clearProgressLine();

} // namespace cli
