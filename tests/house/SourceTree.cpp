// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/house/SourceTree.h"

#include <algorithm>
#include <fstream>
#include <set>

namespace house {

namespace {

bool isSource(const std::filesystem::path& path)
{
    static const std::set<std::string> extensions { ".h", ".cpp", ".y", ".l" };
    return extensions.contains(path.extension().string());
}

std::vector<SourceFile> readSources()
{
    namespace fs = std::filesystem;
    static const char* const folders[] = { "app", "bench", "cli", "embedded", "entry", "exchange",
        "host", "include", "kit", "packaging", "query", "samples", "tables", "tests", "themes" };
    const fs::path root = TEMATICA_SOURCE_DIR;
    std::vector<SourceFile> files;
    for (const char* folder : folders) {
        if (!fs::exists(root / folder))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(root / folder))
            if (entry.is_regular_file() && isSource(entry.path()))
                files.push_back(
                    { fs::relative(entry.path(), root).generic_string(), linesOf(entry.path()) });
    }
    std::sort(files.begin(), files.end(),
        [](const SourceFile& left, const SourceFile& right) { return left.path < right.path; });
    return files;
}

} // namespace

const std::vector<SourceFile>& sources()
{
    static const std::vector<SourceFile> files = readSources();
    return files;
}

std::vector<std::string> linesOf(const std::filesystem::path& path)
{
    std::ifstream stream(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(std::move(line));
    return lines;
}

std::vector<Include> includesOf(const SourceFile& file)
{
    std::vector<Include> includes;
    for (std::size_t i = 0; i < file.lines.size(); ++i) {
        const std::string& line = file.lines[i];
        if (line.rfind("#include", 0) != 0)
            continue;
        const auto first = line.find_first_of("<\"");
        const auto last = first == std::string::npos ? first : line.find_first_of(">\"", first + 1);
        if (last != std::string::npos)
            includes.push_back({ line.substr(first + 1, last - first - 1), line[first] == '<',
                static_cast<int>(i) + 1 });
    }
    return includes;
}

} // namespace house
