// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "entry/ResourceGuard.h"

namespace entry {

ResourceGuard::ResourceGuard(kit::ResourceHandle handle)
{
    if (handle) {
        m_saved = kit::currentResource();
        kit::setCurrentResource(handle);
    }
    m_current = kit::currentResource();
}

ResourceGuard::~ResourceGuard()
{
    if (m_saved)
        kit::setCurrentResource(m_saved);
}

} // namespace entry
