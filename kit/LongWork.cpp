// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/LongWork.h"

#include "kit/Progress.h"

#include <chrono>
#include <future>

namespace kit {

bool runLongWork(QWidget* parent, const QString& label, const std::function<void(WorkToken&)>& work)
{
    WorkToken token;
    auto done = std::async(std::launch::async, [&] { work(token); });
    Progress progress(parent, label);
    // Waiting in short naps, not in an event loop: quick work must not let other events in.
    constexpr std::chrono::milliseconds nap(5);
    while (done.wait_for(nap) != std::future_status::ready)
        if (!progress.advance(token.fraction()))
            token.cancel();
    try {
        done.get();
    } catch (...) {
        return false;
    }
    return !token.isCancelled();
}

} // namespace kit
