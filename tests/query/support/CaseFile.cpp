// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/support/CaseFile.h"

#include <gtest/gtest.h>

#include <fstream>

namespace testing_query {

namespace {

std::string unescaped(const std::string& text)
{
    const std::string letters = "ntr0\\";
    const std::string bytes("\n\t\r\0\\", 5);
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEscape = text[i] == '\\' && i + 1 < text.size();
        const std::size_t at = isEscape ? letters.find(text[i + 1]) : std::string::npos;
        out += at == std::string::npos ? text[i] : bytes[at];
        i += at == std::string::npos ? 0 : 1;
    }
    return out;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::vector<std::string> columnsOf(const std::string& line)
{
    const std::size_t arrow = line.find("=>");
    std::vector<std::string> columns { unescaped(trimmed(line.substr(0, arrow))) };
    std::size_t start = arrow == std::string::npos ? std::string::npos : arrow + 2;
    while (start != std::string::npos) {
        const std::size_t bar = line.find('|', start);
        columns.push_back(unescaped(trimmed(line.substr(start, bar - start))));
        start = bar == std::string::npos ? bar : bar + 1;
    }
    return columns;
}

} // namespace

std::vector<CaseLine> readCases(const std::string& path, std::size_t columnCount)
{
    std::ifstream file(std::string(TEMATICA_SOURCE_DIR "/tests/query/") + path);
    std::vector<CaseLine> cases;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        if (trimmed(line).empty() || line.rfind("--", 0) == 0)
            continue;
        cases.push_back({ number, columnsOf(line) });
        EXPECT_EQ(cases.back().columns.size(), columnCount) << path << ":" << number;
        cases.back().columns.resize(columnCount);
    }
    EXPECT_FALSE(cases.empty()) << path << " holds no cases";
    return cases;
}

} // namespace testing_query
