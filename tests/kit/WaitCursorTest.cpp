// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "kit/WaitCursor.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

namespace {

bool isWaiting()
{
    const QCursor* cursor = QGuiApplication::overrideCursor();
    return cursor && cursor->shape() == Qt::WaitCursor;
}

} // namespace

TEST(WaitCursorTest, ShowsForItsScopeOnly)
{
    EXPECT_FALSE(isWaiting());
    {
        const kit::WaitCursor wait;
        EXPECT_TRUE(isWaiting());
    }
    EXPECT_FALSE(isWaiting());
}

TEST(WaitCursorTest, IsTakenBackWhenAnExceptionLeavesTheScope)
{
    try {
        const kit::WaitCursor wait;
        throw 1;
    } catch (int) {
    }

    EXPECT_FALSE(isWaiting());
}

TEST(WaitCursorTest, APauseTakesAllAwayAndPutsThemBack)
{
    const kit::WaitCursor outer;
    const kit::WaitCursor inner;
    {
        const kit::WaitCursorPause pause;
        EXPECT_FALSE(isWaiting());
        const kit::WaitCursor within;
        EXPECT_TRUE(isWaiting());
    }
    EXPECT_TRUE(isWaiting());
}
