// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace house {

/// A source of the project, its path from the project's folder with "/".
struct SourceFile {
    std::string path;
    std::vector<std::string> lines;
    [[nodiscard]] bool isHeader() const { return path.ends_with(".h"); }
};

/// All C++ sources below the project's folder, sorted; nothing that is built, hidden or foreign.
[[nodiscard]] const std::vector<SourceFile>& sources();

/// The lines of a text file; empty when it is not there.
[[nodiscard]] std::vector<std::string> linesOf(const std::filesystem::path& path);

/// What a source includes, in order: `name` without quotes or brackets.
struct Include {
    std::string name;
    bool isSystem = false; // in angle brackets
    int lineNumber = 0;
};
[[nodiscard]] std::vector<Include> includesOf(const SourceFile& file);

} // namespace house
