// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "kit/texts/TextLoader.h"

namespace entry {

/// Installs a table of texts for a scope and puts the former one back, on every way out of it.
/// A null handle switches nothing. Guards nest. Thread: the user interface's.
class ResourceGuard final {
public:
    explicit ResourceGuard(kit::ResourceHandle handle);
    ResourceGuard(const ResourceGuard&) = delete;
    ResourceGuard& operator=(const ResourceGuard&) = delete;
    ~ResourceGuard();

    /// The table that was current before the switch; null when none was made.
    [[nodiscard]] kit::ResourceHandle saved() const { return m_saved; }
    /// The table that was current right after construction.
    [[nodiscard]] kit::ResourceHandle current() const { return m_current; }

private:
    kit::ResourceHandle m_saved = nullptr;
    kit::ResourceHandle m_current = nullptr;
};

} // namespace entry
