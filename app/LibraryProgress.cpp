// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "app/LibraryProgress.h"

#include "app/Words.h"
#include "kit/MessageBox.h"
#include "kit/Progress.h"

namespace app {

LibraryProgress::LibraryProgress() = default;
LibraryProgress::~LibraryProgress() = default;

bool LibraryProgress::advance(double fraction)
{
    // Going back means that other work has begun.
    if (!m_shown || fraction < m_last)
        m_shown = std::make_unique<kit::Progress>(nullptr, QStringLiteral("Operazione in corso…"));
    m_last = fraction;
    const bool goesOn = m_shown->advance(fraction);
    if (fraction >= 1)
        finish();
    return goesOn;
}

void LibraryProgress::finish()
{
    m_shown.reset();
    m_last = 0;
}

void LibraryProgress::failed(const embedded::Error& error)
{
    finish();
    m_isFailureTold = true;
    FMessageBox(nullptr, errorText(error), QStringLiteral("Tematica"), kit::BoxIcon::Exclamation,
        kit::BoxButtons::Ok);
}

} // namespace app
