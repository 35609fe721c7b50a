// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Progress.h"

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace cli {

namespace {

// What a signal handler may touch, and the terminal's one line.
volatile std::sig_atomic_t interrupted = 0; // the signal that came
bool isLineShown = false;
int depth = 0; // a file is read within a longer work

constexpr auto QuietTime = std::chrono::milliseconds(300);

extern "C" void onInterrupt(int signal)
{
    interrupted = signal;
}

void setHandler(void (*handler)(int), int flags)
{
    struct sigaction action { };
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

TerminalProgress::TerminalProgress(const char* what)
    : m_what(what)
    , m_isTerminal(isatty(STDERR_FILENO) != 0)
    , m_start(std::chrono::steady_clock::now())
{
    if (depth++ == 0)
        setHandler(onInterrupt, 0); // however often: what was begun is taken back first
}

TerminalProgress::~TerminalProgress()
{
    clearProgressLine();
    if (--depth == 0)
        setHandler(SIG_DFL, 0);
}

bool TerminalProgress::advance(double fraction)
{
    if (m_isTerminal && std::chrono::steady_clock::now() - m_start > QuietTime) {
        std::fprintf(stderr, "\r%s %d %%", m_what, static_cast<int>(fraction * 100));
        isLineShown = true;
    }
    return interrupted == 0;
}

bool wasInterrupted()
{
    return interrupted != 0;
}

void endByInterrupt()
{
    if (interrupted == 0)
        return;
    setHandler(SIG_DFL, 0);
    std::raise(interrupted);
}

void clearProgressLine()
{
    if (!isLineShown)
        return;
    std::fputs("\r\033[K", stderr);
    isLineShown = false;
}

} // namespace cli
