// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/LongWork.h"

#include "kit/Progress.h"
#include "kit/SecondClick.h"

#include <chrono>
#include <future>
#include <system_error>

namespace kit {

WorkEnd runLongWork(QWidget* parent, const QString& label,
    const std::function<void(WorkToken&)>& work, QAbstractItemView* clicked)
{
    WorkToken token;
    std::future<void> done;
    try {
        done = std::async(std::launch::async, [&] { work(token); });
    } catch (const std::system_error&) { // no thread to be had
        return WorkEnd::Failed;
    }
    CSecondClick secondClick(clicked);
    Progress progress(parent, label);
    // Waiting in short naps, not in an event loop: quick work must not let other events in.
    constexpr std::chrono::milliseconds nap(5);
    while (done.wait_for(nap) != std::future_status::ready) {
        if (secondClick.isAwaited()) {
            secondClick.letIn();
            continue;
        }
        // Also when it has been stopped: until it ends the windows go on being painted.
        progress.advance(token.fraction());
        if (progress.isCancelled())
            token.cancel();
    }
    try {
        done.get();
    } catch (...) {
        return token.isCancelled() ? WorkEnd::Stopped : WorkEnd::Failed;
    }
    return token.isCancelled() ? WorkEnd::Stopped : WorkEnd::Done;
}

} // namespace kit
