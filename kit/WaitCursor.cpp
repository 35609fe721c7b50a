// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/WaitCursor.h"

#include <QGuiApplication>

namespace kit {

namespace {

bool hasApplication()
{
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

WaitCursor::WaitCursor()
{
    if (hasApplication())
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
}

WaitCursor::~WaitCursor()
{
    if (hasApplication())
        QGuiApplication::restoreOverrideCursor();
}

WaitCursorPause::WaitCursorPause()
{
    if (!hasApplication())
        return;
    while (const QCursor* cursor = QGuiApplication::overrideCursor()) {
        m_cursors.push_back(*cursor);
        QGuiApplication::restoreOverrideCursor();
    }
}

WaitCursorPause::~WaitCursorPause()
{
    for (auto cursor = m_cursors.rbegin(); cursor != m_cursors.rend(); ++cursor)
        QGuiApplication::setOverrideCursor(*cursor);
}

} // namespace kit
