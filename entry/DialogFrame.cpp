// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/DialogFrame.h"

#include "entry/ModuleRecord.h"
#include "entry/ResourceGuard.h"

#include <QApplication>
#include <QThread>

#include <algorithm>
#include <cstdio>

namespace entry {

namespace {

/// Why no dialog can be shown; null when one can.
const char* obstacle(std::initializer_list<const void*> needed)
{
    if (std::find(needed.begin(), needed.end(), nullptr) != needed.end())
        return "an object that it needs is null";
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return "the process has no QApplication";
    if (application->thread() != QThread::currentThread())
        return "called from another thread than the application's";
    return nullptr;
}

void tell(const Frame& frame, const char* reason)
{
    if (frame.telling == Telling::OneLine)
        std::fprintf(stderr, "tematica: %s: %s, no dialog is shown\n", frame.name, reason);
}

} // namespace

bool runDialog(const Frame& frame, std::initializer_list<const void*> needed,
    const std::function<bool()>& dialog) noexcept
{
    try {
        if (const char* reason = obstacle(needed)) {
            tell(frame, reason);
            return frame.cancelled;
        }
        const ResourceGuard guard(moduleRecord().resourceHandle);
        return dialog();
    } catch (...) {
        return frame.cancelled; // the host's code knows nothing of our exceptions
    }
}

} // namespace entry
