// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/LongWork.h"
#include "kit/Progress.h"
#include "kit/WaitCursor.h"

#include "tests/support/ui/CancelProgress.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using ui::CancelWhenShown;
using ui::shownProgress;

TEST(LongWorkTest, QuickWorkShowsNothing)
{
    const CancelWhenShown cancel;
    int sum = 0;

    EXPECT_EQ(kit::runLongWork(nullptr, QStringLiteral("Conto"), [&](auto&) { sum = 42; }),
        kit::WorkEnd::Done);

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

    EXPECT_EQ(kit::runLongWork(nullptr, QStringLiteral("Conto"), endless), kit::WorkEnd::Stopped);

    EXPECT_GE(cancel.seen, 1);
    EXPECT_EQ(cancel.caption, QStringLiteral("Annulla"));
    EXPECT_FALSE(cancel.hadWaitCursor);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_EQ(shownProgress(), nullptr);
}

TEST(LongWorkTest, AnExceptionOfTheWorkIsAFailure)
{
    EXPECT_EQ(kit::runLongWork(
                  nullptr, QStringLiteral("Conto"), [](auto&) { throw std::runtime_error("x"); }),
        kit::WorkEnd::Failed);
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
