// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/LongWork.h"

#include "kit/Progress.h"

#include <chrono>
#include <future>
#include <system_error>

namespace kit {

bool runLongWork(QWidget* parent, const QString& label, const std::function<void(WorkToken&)>& work)
{
    WorkToken token;
    std::future<void> done;
    try {
        done = std::async(std::launch::async, [&] { work(token); });
    } catch (const std::system_error&) { // no thread to be had
        return false;
    }
    Progress progress(parent, label);
    // Waiting in short naps, not in an event loop: quick work must not let other events in.
    constexpr std::chrono::milliseconds nap(5);
    while (done.wait_for(nap) != std::future_status::ready) {
        // Also when it has been stopped: until it ends the windows go on being painted.
        progress.advance(token.fraction());
        if (progress.isCancelled())
            token.cancel();
    }
    try {
        done.get();
    } catch (...) {
        return false;
    }
    return !token.isCancelled();
}

} // namespace kit
