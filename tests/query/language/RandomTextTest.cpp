// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/FilterParser.h"
#include "query/language/FilterScanner.h"
#include "tests/query/support/GrammarReference.h"
#include "tests/query/support/RandomTable.h"
#include "tests/query/support/TreeText.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

// Random texts, mostly almost filters: nothing may crash or be lost (the sanitizer run counts), and
// what is accepted is what the rules say.

namespace {

using query::ErrorReport;
using query::parseFilter;
using query::ParseOutcome;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int TextCount = 100000;
#else
constexpr int TextCount = 300000;
#endif

using testing_query::seedOfRun;

class TextMaker final {
public:
    explicit TextMaker(unsigned seed)
        : m_random(seed)
    {
    }

    std::string make()
    {
        std::string text;
        if (chance(2))
            addFilter(text, 3);
        else
            addPieces(text, 14);
        if (chance(2))
            damage(text);
        return text;
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(m_random); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    std::string piece()
    {
        static const std::vector<std::string> pieces { "a", "Nome", "[x y]", "12abc", "1", "-", "+",
            "*", "/", "(", "(", ")", ")", "AND", "OR", "NOT", "LIKE", "IS", "NULL", "BETWEEN", "IN",
            "=", "<>", "<", ">", "<=", ">=", "'x%'", "''", "2.5", ".5", "5.", "99999999999", "TRUE",
            "false", ",", "f(", "'", "[", "\n", "\r", std::string(1, '\0'), "\xC3\xA0", ";" };
        return pieces[static_cast<std::size_t>(below(static_cast<int>(pieces.size())))];
    }

    void addPieces(std::string& text, int most)
    {
        for (int i = below(most); i >= 0; --i)
            text += piece() + (chance(4) ? "" : " ");
    }

    void addFilter(std::string& text, int depth)
    {
        addPredicate(text, depth);
        while (chance(3)) {
            text += chance(2) ? " AND " : " OR ";
            addPredicate(text, depth);
        }
    }

    void addPredicate(std::string& text, int depth)
    {
        if (chance(4))
            text += "NOT ";
        switch (below(depth > 0 ? 5 : 3)) {
        case 0:
            text += chance(2) ? "a LIKE 'x%'" : "[b c] IS NULL";
            break;
        case 1:
        case 2:
            addValue(text, depth - 1);
            text += chance(2) ? " = " : " <= ";
            addValue(text, depth - 1);
            break;
        default:
            text += "(";
            addFilter(text, depth - 1);
            text += ")";
        }
    }

    void addValue(std::string& text, int depth)
    {
        switch (below(depth > 0 ? 7 : 4)) {
        case 0:
            text += "a";
            break;
        case 1:
            text += "-12";
            break;
        case 2:
            text += "'t'";
            break;
        case 3:
            text += "1.5";
            break;
        case 4:
            text += "(";
            addValue(text, depth - 1);
            text += ")";
            break;
        case 5:
            text += "f(";
            addValue(text, depth - 1);
            text += ",";
            addValue(text, depth - 1);
            text += ")";
            break;
        default:
            addValue(text, depth - 1);
            text += chance(2) ? " + " : " / ";
            addValue(text, depth - 1);
        }
    }

    void damage(std::string& text)
    {
        const int position = below(static_cast<int>(text.size()) + 1);
        const auto at = static_cast<std::size_t>(position);
        switch (below(4)) {
        case 0:
            text.resize(at);
            break;
        case 1:
            text.insert(at, piece());
            break;
        case 2:
            if (at < text.size())
                text.erase(at, 1);
            break;
        default:
            if (at < text.size())
                text[at] = static_cast<char>(below(256));
        }
    }

    std::mt19937 m_random;
};

std::vector<int> codesOf(const std::string& text)
{
    query::FilterScanner scanner(text.data(), static_cast<int>(text.size()));
    std::vector<int> codes;
    for (int code = scanner.next().code; code != 0; code = scanner.next().code)
        codes.push_back(code);
    return codes;
}

TEST(RandomTextTest, AcceptedIsWhatTheRulesSay)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    TextMaker maker(seed);
    int accepted = 0;
    int shortened = 0;
    for (int i = 0; i < TextCount && !HasFailure(); ++i) {
        const std::string text = maker.make();
        const ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
        EXPECT_EQ(outcome.status == 0, testing_query::isFilter(codesOf(text))) << text;
        EXPECT_TRUE(outcome.status != 0 || outcome.root) << text;
        accepted += outcome.status == 0 ? 1 : 0;
        shortened += outcome.isShortened() ? 1 : 0;
    }
    // The texts must reach all three outcomes, or the test would prove little.
    EXPECT_GT(accepted, TextCount / 20);
    EXPECT_GT(shortened, TextCount / 100);
}

TEST(RandomTextTest, AShortenedConditionIsTheOneWrittenThere)
{
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    TextMaker maker(seed);
    for (int i = 0; i < TextCount / 10 && !HasFailure(); ++i) {
        const std::string text = maker.make();
        const ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
        if (!outcome.root)
            continue;
        const std::string condition
            = text.substr(static_cast<std::size_t>(outcome.conditionPosition - 1),
                static_cast<std::size_t>(outcome.conditionBytes));
        const ParseOutcome again = parseFilter(condition, ErrorReport::Silent);
        EXPECT_EQ(again.status, 0) << text;
        EXPECT_EQ(
            testing_query::treeText(again.root.get()), testing_query::treeText(outcome.root.get()))
            << text;
    }
}

TEST(RandomTextTest, TheBytesBeforeTheErrorCouldBeginAFilter)
{
    // The parser stops at the first token that no filter can have at that place.
    const unsigned seed = seedOfRun();
    SCOPED_TRACE("seed " + std::to_string(seed));
    TextMaker maker(seed);
    for (int i = 0; i < TextCount / 100 && !HasFailure(); ++i) {
        const std::string text = maker.make();
        const ParseOutcome outcome = parseFilter(text, ErrorReport::Silent);
        if (outcome.status == 0)
            continue;
        const query::ExpectedAt at = query::expectedAfter(text, outcome.errorPosition - 1);
        EXPECT_TRUE(at.condition || at.value || at.comparison || at.likeOrIs || at.pattern
            || at.nullWord || at.arithmetic || at.connective || at.comma || at.closingParenthesis
            || at.end)
            << text;
    }
}

} // namespace
