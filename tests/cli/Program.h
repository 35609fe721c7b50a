// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// The command line as its users have it: the real program, run in a folder of its own.

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace cli_test {

struct Outcome {
    int exitCode = -1; // 128 + the signal's number when one ended the program
    std::string out;
    std::string err;
};

/// A folder that goes with the object.
class Folder final {
public:
    Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder();

    [[nodiscard]] std::string path(std::string_view name = {}) const;
    /// A library file made from the notation of tests/support.
    [[nodiscard]] std::string library(std::string_view name, std::string_view notation) const;
    std::string file(std::string_view name, std::string_view bytes) const;
    /// Names of what lies in it, sorted.
    [[nodiscard]] std::vector<std::string> names() const;
    /// The bytes of all files in it and in its folders, by their paths.
    [[nodiscard]] std::map<std::string, std::string> bytes() const;

private:
    std::filesystem::path m_path;
};

/// Runs the program with these words to its end.
[[nodiscard]] Outcome run(const std::vector<std::string>& words);
/// The same with the program's standard output closed after this many bytes, as "head" does.
[[nodiscard]] Outcome runInto(
    const std::vector<std::string>& words, std::size_t readBytes, bool isPipeSignalIgnored);

/// The same, with Ctrl+C after so many milliseconds.
[[nodiscard]] Outcome runInterrupted(const std::vector<std::string>& words, int afterMs);
/// The same, with these signals one after the other as soon as a file is there.
[[nodiscard]] Outcome runSignalled(const std::vector<std::string>& words,
    const std::string& whenThere, const std::vector<int>& signals);

[[nodiscard]] std::string contents(const std::string& path);

} // namespace cli_test
