// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ModuleRecord.h"

#include <dlfcn.h>

namespace entry {

namespace {

ModuleRecord record;

void* ownHandle()
{
    Dl_info info {};
    return dladdr(&record, &info) ? info.dli_fbase : nullptr;
}

/// Attaches when the library is loaded and detaches when it is unloaded. A constructor cannot make
/// loading fail; the record then says that nothing was initialised, and texts come out empty.
class LoadTimeObject final {
public:
    LoadTimeObject() { FModuleEntry(ownHandle(), ModuleAttach); }
    LoadTimeObject(const LoadTimeObject&) = delete;
    LoadTimeObject& operator=(const LoadTimeObject&) = delete;
    ~LoadTimeObject() { FModuleEntry(ownHandle(), ModuleDetach); }
};

const LoadTimeObject loadTimeObject;

int attach(void* moduleHandle)
{
    const auto& resource = kit::TextResource::own();
    if (!moduleHandle || resource.size() == 0)
        return 0;
    record = { true, moduleHandle, &resource };
    return 1;
}

} // namespace

const ModuleRecord& moduleRecord()
{
    return record;
}

int FModuleEntry(void* moduleHandle, unsigned reason)
{
    try {
        if (reason == ModuleAttach)
            return attach(moduleHandle);
        if (reason == ModuleDetach)
            record = {};
        return 1;
    } catch (...) {
        return 0; // loading must not end the host
    }
}

} // namespace entry
