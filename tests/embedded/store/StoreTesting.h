// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/store/GeoPackage.h"

#include <filesystem>
#include <memory>
#include <string>

namespace storetest {

/// A folder that goes with the test.
class CTemporaryFolder final {
public:
    CTemporaryFolder();
    CTemporaryFolder(const CTemporaryFolder&) = delete;
    CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;
    ~CTemporaryFolder();
    [[nodiscard]] std::string file(const std::string& name) const
    {
        return (m_path / name).string();
    }
    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// Opens a library and fails the test when that is refused (then null).
std::unique_ptr<gis::CLibGis> opened(const std::string& path,
    embedded::OpenMode mode = embedded::OpenMode::Read, embedded::Report* report = nullptr);

/// The error with which opening is refused; fails the test when it is not.
embedded::Error refusal(
    const std::string& path, embedded::OpenMode mode = embedded::OpenMode::Read);

/// Runs SQL on a file as another program would (with triggers; ST_ functions are there).
void runSql(const std::string& path, const std::string& sql);
/// The rows that a query gives, columns between "|", rows between line ends.
std::string sqlAnswer(const std::string& path, const std::string& sql);

/// Output of a program, errors included; empty when it is not installed.
std::string programOutput(const std::string& command);
bool isInstalled(const std::string& program);

std::string bytesOf(const std::string& path);
void writeBytes(const std::string& path, const std::string& bytes);

} // namespace storetest
