// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/LongWork.h"
#include "kit/Progress.h"
#include "kit/WaitCursor.h"

#include "tests/support/ui/ModalDriver.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>

#include <stdexcept>
#include <thread>

namespace {

QProgressDialog* shownProgress()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->objectName() == QLatin1String("CProgress"))
            return qobject_cast<QProgressDialog*>(widget);
    return nullptr;
}

/// Presses "Annulla" as soon as the progress dialog is there, counting how often it was seen.
struct CancelWhenShown {
    QTimer timer;
    int seen = 0;
    QString caption;
    bool hadWaitCursor = false;
    CancelWhenShown()
    {
        QObject::connect(&timer, &QTimer::timeout, [this] {
            if (auto* progress = shownProgress()) {
                ++seen;
                caption = progress->findChild<QPushButton*>(QStringLiteral("id2"))->text();
                hadWaitCursor = QGuiApplication::overrideCursor() != nullptr;
                ui::press(*progress, 2);
            }
        });
        timer.start(1);
    }
};

} // namespace

TEST(LongWorkTest, QuickWorkShowsNothing)
{
    const CancelWhenShown cancel;
    int sum = 0;

    EXPECT_TRUE(kit::runLongWork(nullptr, QStringLiteral("Conto"), [&](auto&) { sum = 42; }));

    EXPECT_EQ(sum, 42);
    EXPECT_EQ(cancel.seen, 0);
}

TEST(LongWorkTest, LongWorkCanBeStopped)
{
    const CancelWhenShown cancel;
    const kit::WaitCursor wait;
    const auto endless = [](kit::WorkToken& token) {
        while (!token.isCancelled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    };

    EXPECT_FALSE(kit::runLongWork(nullptr, QStringLiteral("Conto"), endless));

    EXPECT_GE(cancel.seen, 1);
    EXPECT_EQ(cancel.caption, QStringLiteral("Annulla"));
    EXPECT_FALSE(cancel.hadWaitCursor);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(shownProgress(), nullptr);
}

TEST(LongWorkTest, AnExceptionOfTheWorkIsAFailure)
{
    EXPECT_FALSE(kit::runLongWork(
        nullptr, QStringLiteral("Conto"), [](auto&) { throw std::runtime_error("x"); }));
}

TEST(ProgressTest, SlicesGoOnUntilTheUserStopsThem)
{
    const CancelWhenShown cancel;
    kit::Progress progress(nullptr, QStringLiteral("Ricerca"));
    int slices = 0;

    while (progress.advance(0.5)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ++slices;
    }

    EXPECT_TRUE(progress.isCancelled());
    EXPECT_GT(slices, 10);
    EXPECT_GE(cancel.seen, 1);
}
