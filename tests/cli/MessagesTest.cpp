// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Messages.h"

#include "query/language/FilterParser.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <string>

using namespace embedded;

namespace {

/// How many enumerators a header declares for an enumeration.
int enumeratorCount(const char* header, const std::string& name)
{
    std::ifstream stream(std::string(TEMATICA_SOURCE_DIR "/embedded/base/") + header);
    static const std::regex enumerator(R"(^    ([A-Z]\w+),)");
    bool isInside = false;
    int count = 0;
    for (std::string line; std::getline(stream, line);) {
        if (line == "enum class " + name + " {")
            isInside = true;
        else if (line == "};")
            isInside = false;
        else if (isInside && std::regex_search(line, enumerator))
            ++count;
    }
    return count;
}

TEST(MessagesTest, EveryErrorHasASentence)
{
    const int count = enumeratorCount("Result.h", "ErrorCode");
    ASSERT_GT(count, 20);
    for (int code = 0; code < count; ++code) {
        const auto text
            = cli::sentence(Error { static_cast<ErrorCode>(code), "file.shp", "because" });
        EXPECT_GT(text.size(), 10u) << code;
        EXPECT_EQ(text.find_first_of("{}\n"), std::string::npos) << text;
    }
    EXPECT_EQ(cli::sentence(Error { static_cast<ErrorCode>(count), "", "" }), "");
}

TEST(MessagesTest, EveryFindingHasASentenceAndAWordOfItsOwn)
{
    const int count = enumeratorCount("Report.h", "FindingCode");
    ASSERT_GT(count, 30);
    std::set<std::string_view> words;
    for (int code = 0; code < count; ++code) {
        const Finding finding { static_cast<FindingCode>(code), FindingSeverity::Warning, "Nome",
            "because", 7, 3 };
        const auto text = cli::sentence(finding);
        EXPECT_GT(text.size(), 10u) << code;
        EXPECT_EQ(text.find_first_of("{}\n"), std::string::npos) << text;
        EXPECT_TRUE(words.insert(cli::word(finding.code)).second) << code;
    }
    EXPECT_FALSE(words.contains(""));
}

TEST(MessagesTest, AFilterTooLongForTheMemoryIsNotBlamedOnAWord)
{
    query::ParseOutcome filter;
    filter.failure = query::ParseFailure::OutOfMemory;

    EXPECT_EQ(cli::refusal(filter),
        "the filter is refused: it is too long for the memory there is; make it shorter");
}

TEST(MessagesTest, NamesWithBracesArePrintedAsTheyAre)
{
    EXPECT_EQ(cli::sentence(Error { ErrorCode::UnknownTheme, "{subject} {0} %s", "" }),
        "there is no theme named {subject} {0} %s");
}

TEST(MessagesTest, DetailsStandInBracketsUnlessTheSentenceNeedsThem)
{
    EXPECT_EQ(cli::sentence(Error { ErrorCode::WriteFailed, "a.gpkg", "Permission denied" }),
        "a.gpkg: could not be written (Permission denied)");
    EXPECT_EQ(cli::sentence(Error { ErrorCode::WriteFailed, "a.gpkg", "" }),
        "a.gpkg: could not be written");
    EXPECT_EQ(cli::sentence(Finding { FindingCode::FieldNameCut, FindingSeverity::Warning,
                  "Larghezza media", "Larghezza_", 0, 0 }),
        "field Larghezza media is named Larghezza_ in the file");
}

} // namespace
