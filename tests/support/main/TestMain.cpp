// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <clocale>

// The main of tests without windows. Takes the locale of the environment, as a program with windows
// does, so that a run under an Italian locale tests what users have.
int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
