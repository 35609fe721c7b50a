// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/ui/ModalDriver.h"

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>
#include <QTimer>

namespace ui {

/// The progress dialog on the screen; null where there is none.
inline QProgressDialog* shownProgress()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->objectName() == QLatin1String("CProgress"))
            return qobject_cast<QProgressDialog*>(widget);
    return nullptr;
}

/// Presses "Annulla" as soon as a progress dialog is there, and notes what it looked like.
struct CancelWhenShown {
    QTimer timer;
    int seen = 0;
    QString label;
    QString caption;
    bool hadWaitCursor = false;

    CancelWhenShown()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            auto* progress = shownProgress();
            auto* button
                = progress ? progress->findChild<QPushButton*>(QStringLiteral("id2")) : nullptr;
            if (button && button->isEnabled()) {
                ++seen;
                label = progress->labelText();
                caption = button->text();
                hadWaitCursor = QGuiApplication::overrideCursor() != nullptr;
                press(*progress, 2);
            }
        });
        timer.start(1);
    }
};

} // namespace ui
