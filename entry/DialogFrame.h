// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <initializer_list>

namespace entry {

/// Whether a call that cannot open its dialog says so on standard error. Functions whose result is
/// always true do, since their caller could not tell otherwise.
enum class Telling { Silent, OneLine };

struct Frame {
    const char* name; // of the exported function
    bool cancelled; // its answer when no dialog was run or the user gave up
    Telling telling = Telling::Silent;
};

/// The frame that all exported dialog functions share: refuses where no dialog can be shown (an
/// object of `needed` is null, no QApplication, another thread than the application's), else opens
/// the resource guard, runs `dialog` and gives its answer. Errors: an exception of `dialog` ends
/// in the cancelled answer; none leaves.
bool runDialog(const Frame& frame, std::initializer_list<const void*> needed,
    const std::function<bool()>& dialog) noexcept;

} // namespace entry
