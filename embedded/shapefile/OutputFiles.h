// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/base/Result.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace embedded {

/// A file that is being written under a passing name. The first failure is kept, later writes do
/// nothing.
class OutputFile final {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    /// `path`: where it is written; `finalPath`: the name for errors.
    void open(const std::string& path, const std::string& finalPath);
    void write(std::string_view bytes);
    /// Replaces bytes at the file's beginning.
    void patchStart(std::string_view bytes);
    void close();
    void fail(std::string detail);

    [[nodiscard]] std::uint64_t sizeBytes() const { return m_written + m_buffer.size(); }
    [[nodiscard]] const Result<void>& state() const { return m_state; }
    [[nodiscard]] bool ok() const { return m_state.ok(); }

private:
    void flush();
    void put(std::string_view bytes, std::int64_t offset);
    void failBySystem(int systemError);

    std::string m_finalPath;
    std::string m_buffer;
    std::uint64_t m_written = 0;
    int m_descriptor = -1;
    Result<void> m_state;
};

/// Files that take their places together. What was not put in place is removed.
class OutputSet final {
public:
    explicit OutputSet(std::string folder);
    OutputSet(const OutputSet&) = delete;
    OutputSet& operator=(const OutputSet&) = delete;
    ~OutputSet();

    /// Opens the file that will be `folder`/`name`.
    void add(OutputFile& file, const std::string& name);
    /// Puts all files in their places; on failure the files that were there are there again, and
    /// `failedName` is the one that stood in the way.
    Result<void> commit(std::string& failedName);

private:
    struct Entry {
        std::string name;
        std::string passingPath;
        std::string backupPath; // empty: there was no file, or its system has no links
        bool isInPlace = false;
    };
    [[nodiscard]] std::string finalPath(const Entry& entry) const;
    void takeBack();

    std::string m_folder;
    std::vector<Entry> m_entries;
};

/// `folder` with `name` behind it.
std::string pathIn(const std::string& folder, const std::string& name);

} // namespace embedded
