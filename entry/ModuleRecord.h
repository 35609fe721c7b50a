// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/texts/TextLoader.h"

namespace entry {

/// What the loaded library knows of itself: the only state that outlives a call. Filled when the
/// library is loaded, emptied when it is unloaded.
struct ModuleRecord {
    bool isInitialised = false;
    void* moduleHandle = nullptr;
    kit::ResourceHandle resourceHandle = nullptr;
};

[[nodiscard]] const ModuleRecord& moduleRecord();

/// Reasons of `FModuleEntry`; others (a thread comes or goes) change nothing.
enum ModuleReason : unsigned {
    ModuleDetach = 0,
    ModuleAttach = 1,
};

/// Called by the library's load-time object. Returns 1, or 0 when attaching failed: no handle, or
/// the texts are not in the library.
int FModuleEntry(void* moduleHandle, unsigned reason);

} // namespace entry
