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
    moveOver(dialog, owner);
}

} // namespace

void moveOver(QDialog& dialog, const QWidget& owner)
{
    const QRect screen = owner.screen()->availableGeometry();
    const QSize wanted = dialog.size().expandedTo(dialog.minimumSizeHint());
    const QSize size = wanted.boundedTo(screen.size());
    if (size != wanted)
        dialog.resize(size);
    QRect place(QPoint(), size);
    place.moveCenter(owner.window()->frameGeometry().center());
    place.moveRight(qMin(place.right(), screen.right()));
    place.moveBottom(qMin(place.bottom(), screen.bottom()));
    place.moveLeft(qMax(place.left(), screen.left()));
    place.moveTop(qMax(place.top(), screen.top()));
    dialog.move(place.topLeft());
}

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
