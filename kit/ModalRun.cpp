// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/ModalRun.h"

#include "kit/WaitCursor.h"

#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QWindow>

namespace kit {

namespace {

void stayAbove(QDialog& dialog, QWidget& owner)
{
    dialog.winId(); // a transient parent needs the native window
    if (QWindow* window = dialog.windowHandle())
        window->setTransientParent(owner.window()->windowHandle());
    const QSize size = dialog.size().expandedTo(dialog.minimumSizeHint());
    QRect place(QPoint(), size);
    place.moveCenter(owner.window()->frameGeometry().center());
    const QRect screen = owner.screen()->availableGeometry();
    place.moveRight(qMin(place.right(), screen.right()));
    place.moveBottom(qMin(place.bottom(), screen.bottom()));
    place.moveLeft(qMax(place.left(), screen.left()));
    place.moveTop(qMax(place.top(), screen.top()));
    dialog.move(place.topLeft());
}

} // namespace

bool runModal(QDialog& dialog)
{
    const WaitCursorPause pause;
    dialog.setWindowModality(Qt::ApplicationModal);
    QWidget* owner = QApplication::activeWindow();
    if (owner && owner != &dialog && !dialog.parentWidget())
        stayAbove(dialog, *owner);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace kit
