// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/FileBytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using embedded::ErrorCode;
using embedded::FileBytes;

class FileBytesTest : public testing::Test {
protected:
    void SetUp() override { fs::create_directory(m_folder); }
    void TearDown() override { fs::remove_all(m_folder); }
    [[nodiscard]] std::string write(const std::string& bytes) const
    {
        const fs::path path = m_folder / "file";
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }
    [[nodiscard]] static ErrorCode errorOf(const std::string& path)
    {
        const auto bytes = FileBytes::open(path);
        return bytes ? ErrorCode::Internal : bytes.error().code;
    }

    fs::path m_folder = fs::temp_directory_path()
        / ("bytes-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "-"
            + ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(FileBytesTest, AFileCutWhileItIsReadHarmsNobody)
{
    const std::string text(100'000, 'x');
    const std::string path = write(text);
    const auto bytes = FileBytes::open(path);
    ASSERT_TRUE(bytes.ok());

    fs::resize_file(path, 0);

    EXPECT_EQ(bytes.value().bytes(), text);
}

TEST_F(FileBytesTest, WhatCannotBeReadIsNamedByItsReason)
{
    EXPECT_EQ(errorOf((m_folder / "nessuno").string()), ErrorCode::FileNotFound);
    EXPECT_EQ(errorOf(write("x") + "/nessuno"), ErrorCode::FileNotFound);
    EXPECT_EQ(errorOf(m_folder.string()), ErrorCode::NotAFile);
    EXPECT_EQ(errorOf("/dev/null"), ErrorCode::NotAFile);
    EXPECT_EQ(errorOf((m_folder / std::string(300, 'n')).string()), ErrorCode::ReadFailed)
        << "a name too long is no missing file";
}

TEST_F(FileBytesTest, AnEmptyFileGivesNoBytes)
{
    const auto bytes = FileBytes::open(write(""));
    ASSERT_TRUE(bytes.ok());
    EXPECT_EQ(bytes.value().size(), 0U);
}

} // namespace
