// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QCalendarWidget>
#include <QTest>
#include <QTimer>
#include <QWindow>

namespace ui {

/// F4 in the edit of a date, and what one does with the calendar while it is open; false where none
/// opened.
template <typename Act> bool withCalendar(QWidget& edit, const Act& act)
{
    bool wasOpen = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        QWidget* popup = QApplication::activePopupWidget();
        // Once the window system has given it the keys; earlier it would get them when it is gone.
        if (!popup || QGuiApplication::focusWindow() != popup->windowHandle())
            return;
        timer.stop();
        auto* calendar = popup->findChild<QCalendarWidget*>();
        wasOpen = calendar != nullptr;
        if (calendar)
            act(*calendar);
        if (popup->isVisible())
            QTest::keyClick(popup, Qt::Key_Escape);
    });
    timer.start(5);
    QTest::keyClick(&edit, Qt::Key_F4);
    return wasOpen;
}

} // namespace ui
