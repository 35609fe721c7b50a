// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/ModalRun.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QScreen>
#include <QTimer>

namespace {

QRect placeOf(QDialog& dialog, bool accepts, bool& answer)
{
    QRect place;
    QTimer::singleShot(20, &dialog, [&] {
        place = dialog.geometry();
        accepts ? dialog.accept() : dialog.reject();
    });
    answer = kit::runModal(dialog);
    return place;
}

TEST(ModalRunTest, TellsOkFromCancel)
{
    for (const bool accepts : { true, false }) {
        QDialog dialog;
        bool answer = !accepts;
        placeOf(dialog, accepts, answer);
        EXPECT_EQ(answer, accepts);
    }
}

TEST(ModalRunTest, StandsOverTheWindowThatWasActive)
{
    QWidget window;
    window.setGeometry(100, 120, 500, 400);
    window.show();
    window.activateWindow();
    QApplication::processEvents();
    ASSERT_EQ(QApplication::activeWindow(), &window);
    QDialog dialog;
    dialog.resize(200, 100);
    bool answer = false;
    const QRect place = placeOf(dialog, true, answer);
    const QPoint apart = place.center() - window.frameGeometry().center();
    EXPECT_LE(apart.manhattanLength(), 6) << "but for rounding and frames";
    EXPECT_EQ(dialog.parentWidget(), nullptr) << "above it, not owned by it";
}

TEST(ModalRunTest, StaysOnTheScreenAndIsNoLargerThanIt)
{
    QWidget window;
    const QRect screen = window.screen()->availableGeometry();
    window.setGeometry(screen.right() - 40, screen.bottom() - 40, 300, 200);
    window.show();
    QDialog dialog;
    dialog.resize(200, 100);
    kit::moveOver(dialog, window);
    EXPECT_TRUE(screen.contains(dialog.geometry()));
    dialog.resize(5000, 5000);
    kit::moveOver(dialog, window);
    EXPECT_TRUE(screen.contains(dialog.geometry()));
}

} // namespace
