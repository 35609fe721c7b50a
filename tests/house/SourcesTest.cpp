// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/house/SourceTree.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <regex>

// Habits of the house that a machine can see.

namespace {

using house::SourceFile;

constexpr std::size_t MostSourceLines = 600;
constexpr std::size_t MostHeaderLines = 300;

/// Path to reason, as tools/size-exceptions.txt gives them.
std::map<std::string, std::string> sizeExceptions()
{
    std::map<std::string, std::string> exceptions;
    for (const auto& line : house::linesOf(TEMATICA_SOURCE_DIR "/tools/size-exceptions.txt")) {
        const auto blank = line.find(' ');
        if (!line.empty() && line[0] != '#' && blank != std::string::npos)
            exceptions[line.substr(0, blank)] = line.substr(blank + 1);
    }
    return exceptions;
}

bool isTooLong(const SourceFile& file)
{
    return file.lines.size() > (file.isHeader() ? MostHeaderLines : MostSourceLines);
}

TEST(SourcesTest, FilesAreShortOrSayWhyNot)
{
    const auto exceptions = sizeExceptions();
    for (const auto& file : house::sources())
        EXPECT_TRUE(!isTooLong(file) || exceptions.contains(file.path))
            << file.path << " has " << file.lines.size() << " lines";
}

TEST(SourcesTest, ExceptionsFromTheSizeAreStillNeeded)
{
    for (const auto& [path, reason] : sizeExceptions()) {
        const auto& all = house::sources();
        const auto found = std::find_if(
            all.begin(), all.end(), [&](const SourceFile& file) { return file.path == path; });
        EXPECT_TRUE(found != all.end() && isTooLong(*found)) << path;
        EXPECT_GT(reason.size(), 10u) << path;
    }
}

TEST(SourcesTest, EverySourceNamesItsLicence)
{
    for (const auto& file : house::sources()) {
        ASSERT_GE(file.lines.size(), 2u) << file.path;
        std::string head;
        for (std::size_t i = 0; i < std::min<std::size_t>(file.lines.size(), 4); ++i)
            head += file.lines[i] + "\n";
        EXPECT_NE(head.find("SPDX-FileCopyrightText:"), std::string::npos) << file.path;
        EXPECT_NE(head.find("SPDX-License-Identifier: MIT"), std::string::npos) << file.path;
    }
}

TEST(SourcesTest, HeadersAreReadOnce)
{
    for (const auto& file : house::sources())
        EXPECT_TRUE(!file.isHeader()
            || std::find(file.lines.begin(), file.lines.end(), "#pragma once") != file.lines.end())
            << file.path;
}

/// Headers whose public functions carry a block that says shape, errors, owner and thread.
TEST(SourcesTest, ContractHeadersAreDocumented)
{
    for (const auto& file : house::sources()) {
        const bool isContract = file.isHeader()
            && (file.path.rfind("host/", 0) == 0 || file.path.rfind("include/", 0) == 0)
            && !file.path.ends_with("/Export.h");
        if (!isContract)
            continue;
        const auto documented = std::count_if(file.lines.begin(), file.lines.end(),
            [](const std::string& line) { return line.find("//") != std::string::npos; });
        EXPECT_GT(documented, 2) << file.path << " says nothing of what it offers";
    }
}

/// What reads or writes numbers and letters by the process's locale, or ends the host's process.
TEST(SourcesTest, NothingDependsOnTheLocale)
{
    static const std::regex forbidden(
        R"((^|[^\w.>:])((std::)?(atof|strtod|strtof|atoi|strtol|stod|stof|stoi|toupper|tolower|isalpha|isdigit|isspace|isalnum|setlocale|exit|abort)\s*\()|QString::toDouble)");
    static const std::regex comment(R"(//.*$)");
    for (const auto& file : house::sources()) {
        if (file.path.rfind("tests/", 0) == 0 || file.path.rfind("bench/", 0) == 0)
            continue;
        for (std::size_t i = 0; i < file.lines.size(); ++i) {
            const std::string code = std::regex_replace(file.lines[i], comment, "");
            EXPECT_FALSE(std::regex_search(code, forbidden))
                << file.path << ":" << i + 1 << ": " << file.lines[i];
        }
    }
}

} // namespace
