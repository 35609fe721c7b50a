// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>

namespace entry {

struct Frame {
    const char* name; // of the exported function
    bool cancelled; // its answer when no dialog was run or the user gave up
};

/// The frame that all exported dialog functions share: refuses where no dialog can be shown (an
/// object of `needed` is null, no QApplication, another thread than the application's), else opens
/// the resource guard, runs `dialog` and gives its answer. A host that calls without an application
/// or from another thread reads why in a line on standard error. Errors: an exception of `dialog`
/// ends in the cancelled answer; none leaves.
bool runDialog(const Frame& frame, std::initializer_list<const void*> needed,
    const std::function<bool()>& dialog) noexcept;

} // namespace entry
