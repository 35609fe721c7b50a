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

/// Why the process cannot show a dialog now; null when it can.
const char* obstacle()
{
    const auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!application)
        return "the process has no QApplication";
    if (application->thread() != QThread::currentThread())
        return "called from another thread than the application's";
    return nullptr;
}

} // namespace

bool runDialog(const Frame& frame, std::initializer_list<const void*> needed,
    const std::function<bool()>& dialog) noexcept
{
    try {
        if (std::find(needed.begin(), needed.end(), nullptr) != needed.end())
            return frame.cancelled;
        if (const char* reason = obstacle()) {
            std::fprintf(stderr, "tematica: %s: %s, no dialog is shown\n", frame.name, reason);
            return frame.cancelled;
        }
        const ResourceGuard guard(moduleRecord().resourceHandle);
        return dialog();
    } catch (...) {
        return frame.cancelled; // the host's code knows nothing of our exceptions
    }
}

} // namespace entry
