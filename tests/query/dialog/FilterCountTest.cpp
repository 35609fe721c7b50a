// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/dialog/FilterCount.h"

#include "tests/query/dialog/ManyRows.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

using query::CFilterCount;
using support::CRecordingLibrary;

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* OneField = "table T (n integer); rows T: (1), (2), (3), (-);"
                                 "theme P: points 2d on T active;"
                                 "ents P: 0 [0 0], 1 [1 1], 2 [2 2], 3 [3 3]";

} // namespace

TEST(FilterCountTest, CountsOverColumnsUnlessItWasStopped)
{
    CRecordingLibrary library(OneField);
    library.offerColumns();
    const auto count = CFilterCount::make(library, library.GetTheme(0), "n >= 2");
    ASSERT_NE(count, nullptr);
    ASSERT_TRUE(count->isByColumns());

    EXPECT_EQ(count->total(), 4);
    EXPECT_EQ(count->countColumns(), 2);
    count->stop();
    EXPECT_EQ(count->countColumns(), 0);
}

TEST(FilterCountTest, CountsManyRowsExactly)
{
    CRecordingLibrary library(OneField);
    querytest::CManyRows rows(library);
    rows.setChunks(100);

    const auto count = CFilterCount::make(library, library.GetTheme(0), "n < 3 OR n = 65535");

    ASSERT_TRUE(count->isByColumns());
    EXPECT_EQ(count->total(), 6'553'600);
    EXPECT_EQ(count->countColumns(), 400);
}

TEST(FilterCountTest, StoppedBeforehandItLooksAtNoRow)
{
    CRecordingLibrary library(OneField);
    querytest::CManyRows rows(library);
    const auto whole = querytest::makeSlow(rows, library, std::chrono::milliseconds(300));
    const auto count = CFilterCount::make(library, library.GetTheme(0), querytest::SlowFilter);
    count->stop();

    const auto start = Clock::now();
    EXPECT_EQ(count->countColumns(), 0);

    EXPECT_LT(Clock::now() - start, whole / 2);
}

TEST(FilterCountTest, StoppedFromAnotherThreadItEndsEarly)
{
    CRecordingLibrary library(OneField);
    querytest::CManyRows rows(library);
    const auto whole = querytest::makeSlow(rows, library, std::chrono::milliseconds(500));
    const auto count = CFilterCount::make(library, library.GetTheme(0), querytest::SlowFilter);

    const auto start = Clock::now();
    auto found = std::async(std::launch::async, [&] { return count->countColumns(); });
    std::this_thread::sleep_for(whole / 10);
    count->stop();

    EXPECT_EQ(found.get(), 0);
    EXPECT_LT(Clock::now() - start, whole * 2 / 3);
}

TEST(FilterCountTest, CellByCellItCanBeTakenUpAgainAfterEachSlice)
{
    CRecordingLibrary library(OneField);
    const auto count = CFilterCount::make(library, library.GetTheme(0), "n >= 2");
    ASSERT_NE(count, nullptr);
    ASSERT_FALSE(count->isByColumns());

    while (!count->step(0)) { }

    EXPECT_EQ(count->found(), 2);
}

TEST(FilterCountTest, WithoutAThemeOrAFilterThereIsNone)
{
    CRecordingLibrary library(OneField);

    EXPECT_EQ(CFilterCount::make(library, nullptr, "n = 1"), nullptr);
    EXPECT_EQ(CFilterCount::make(library, library.GetTheme(0), "n = "), nullptr);
}
