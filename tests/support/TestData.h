// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace support {

/// Where the real files for tests lie, which are not the project's to carry: at TEMATICA_TEST_DATA,
/// else beside the project.
inline std::filesystem::path testDataFolder()
{
    const char* given = std::getenv("TEMATICA_TEST_DATA");
    return given && *given ? given : TEMATICA_DEFAULT_TEST_DATA;
}

} // namespace support

/// At the beginning of a test over those files: skips it where the folder is not there. A single
/// file that is missing from the folder is a failure of the test that wants it.
#define TEMATICA_NEEDS_TEST_DATA()                                                                 \
    if (!std::filesystem::is_directory(support::testDataFolder()))                                 \
    GTEST_SKIP() << "no test data at TEMATICA_TEST_DATA: " << support::testDataFolder()
