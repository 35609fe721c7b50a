// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Report.h"

#include <gtest/gtest.h>

namespace shapetest {

/// Stops at the n-th time it is asked.
class StopAt final : public embedded::IProgress {
public:
    explicit StopAt(int call)
        : m_left(call)
    {
    }
    bool advance(double fraction) override
    {
        EXPECT_GE(fraction, 0.0);
        EXPECT_LE(fraction, 1.0);
        return --m_left > 0;
    }
    [[nodiscard]] bool wasAsked() const { return m_left <= 0; }

private:
    int m_left;
};

} // namespace shapetest
