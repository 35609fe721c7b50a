// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/nodes/ExpressionLike.h"
#include "tests/query/support/CaseFile.h"

#include "host/base/Dates.h"
#include "host/expr/Symbols.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

std::string segmentsOf(const char* pattern)
{
    std::string text;
    const CExpressionLike like("f", pattern);
    for (const orv::String& segment : like.GetSegments())
        text += "<" + segment.Bytes() + ">";
    return text;
}

/// The match as it is defined: every way of spending the text on the runs is tried.
bool matchesByTrying(const std::string& text, const std::vector<orv::String>& segments,
    std::size_t at, std::size_t i)
{
    if (i == segments.size())
        return at == text.size();
    const std::string& segment = segments[i].Bytes();
    if (segment == "%") {
        for (std::size_t next = at; next <= text.size(); ++next)
            if (matchesByTrying(text, segments, next, i + 1))
                return true;
        return false;
    }
    if (text.size() - at < segment.size())
        return false;
    for (std::size_t k = 0; k < segment.size(); ++k)
        if (segment[k] != '_' && segment[k] != text[at + k])
            return false;
    return matchesByTrying(text, segments, at + segment.size(), i + 1);
}

/// All words of these letters up to a length.
std::vector<std::string> words(const std::string& letters, std::size_t longest)
{
    std::vector<std::string> all { "" };
    for (std::size_t i = 0; i < all.size(); ++i)
        if (all[i].size() < longest)
            for (char letter : letters)
                all.push_back(all[i] + letter);
    return all;
}

class OneField final {
public:
    explicit OneField(const orv::CPolyValue& value)
    {
        auto* symbol = new CEESymbolConstVar();
        symbol->SetElemValue(value);
        table.AddSymbol("Campo", symbol);
        table.AddSymbol("Now", new CEESymbolFunVarious(EEFunctionNow));
    }
    /// "true", "false", "empty" or "fails".
    std::string eval(const char* field, const char* pattern)
    {
        CExpressionLike like(field, pattern);
        CEEResult result;
        if (!like.Eval(&table, result))
            return "fails";
        if (result.GetElemType() != orv::PolyBool)
            return "not a truth";
        return result.GetElemBool() ? "true" : "false";
    }
    CEESymbolTable table;
};

TEST(ExpressionLikeTest, TextsMatchAsTheTableSays)
{
    for (const auto& line : testing_query::readCases("nodes/like.txt", 3))
        EXPECT_EQ(CExpressionLike("f", orv::String(std::string_view(line.columns[0])))
                      .Matches(line.columns[1])
                ? "yes"
                : "no",
            line.columns[2])
            << "like.txt:" << line.number;
}

TEST(ExpressionLikeTest, PatternsAreCutIntoRuns)
{
    EXPECT_EQ(segmentsOf("a%%b%"), "<a><%><b><%>");
    EXPECT_EQ(segmentsOf("%"), "<%>");
    EXPECT_EQ(segmentsOf("%%%"), "<%>");
    EXPECT_EQ(segmentsOf(""), "");
    EXPECT_EQ(segmentsOf("a_b"), "<a_b>");
}

TEST(ExpressionLikeTest, EverySmallPatternMatchesWhatTryingAllWaysMatches)
{
    const auto texts = words("ab", 6);
    for (const std::string& pattern : words("ab_%", 5)) {
        const CExpressionLike like("f", pattern.c_str());
        for (const std::string& text : texts)
            ASSERT_EQ(like.Matches(text), matchesByTrying(text, like.GetSegments(), 0, 0))
                << "'" << text << "' LIKE '" << pattern << "'";
    }
}

TEST(ExpressionLikeTest, ManyRunsOverALongTextTakeNoTime)
{
    const std::string text(200000, 'a');
    std::string pattern;
    for (int i = 0; i < 50; ++i)
        pattern += "%a";
    EXPECT_FALSE(CExpressionLike("f", (pattern + "%b").c_str()).Matches(text));
    EXPECT_TRUE(CExpressionLike("f", (pattern + "%").c_str()).Matches(text));
}

TEST(ExpressionLikeTest, NulBytesAreBytes)
{
    const std::string text("a\0b", 3);
    EXPECT_TRUE(CExpressionLike("f", "a_b").Matches(text));
    EXPECT_TRUE(CExpressionLike("f", orv::String(std::string_view(text))).Matches(text));
    EXPECT_FALSE(CExpressionLike("f", "a").Matches(text));
}

TEST(ExpressionLikeTest, AnEmptyValueIsLikeNothing)
{
    OneField empty((orv::CPolyValue()));

    EXPECT_EQ(empty.eval("Campo", "%"), "false");
    EXPECT_EQ(empty.eval("Campo", ""), "false");
}

TEST(ExpressionLikeTest, AnEmptyTextIsLikeAnyRun)
{
    OneField text(orv::CPolyValue(""));

    EXPECT_EQ(text.eval("Campo", "%"), "true");
    EXPECT_EQ(text.eval("Campo", "_"), "false");
}

TEST(ExpressionLikeTest, OtherValuesAreComparedAsTheirTexts)
{
    EXPECT_EQ(OneField(orv::CPolyValue(125)).eval("Campo", "1_5"), "true");
    EXPECT_EQ(OneField(orv::CPolyValue(2.5)).eval("Campo", "2.5"), "true");
    EXPECT_EQ(OneField(orv::CPolyValue(1e20)).eval("Campo", "1e+20"), "true");
    EXPECT_EQ(OneField(orv::CPolyValue(true)).eval("Campo", "Sì"), "true");
    EXPECT_EQ(OneField(orv::CPolyValue(false)).eval("Campo", "No"), "true");
    orv::CPolyValue date;
    std::int32_t day = 0;
    ASSERT_TRUE(orv::DayNumber({ 5, 3, 2016 }, day));
    date.SetDateValue(orv::LocalMidnightOfDay(day));
    EXPECT_EQ(OneField(date).eval("Campo", "05/03/%"), "true");
}

TEST(ExpressionLikeTest, AnUnknownNameCannotBeComputed)
{
    EXPECT_EQ(OneField(orv::CPolyValue("x")).eval("Altro", "%"), "fails");
    CEEResult result;
    EXPECT_FALSE(CExpressionLike("Campo", "%").Eval(nullptr, result));
}

TEST(ExpressionLikeTest, AFunctionsNameStandsForItsValueWithoutArguments)
{
    EXPECT_EQ(OneField(orv::CPolyValue("x")).eval("Now", "__/__/____"), "true");
}

class Visitor final : public CEEExpressionConstVisitor, public CEEExpressionVisitor {
public:
    void Visit(const CEEExpression& node) override { visited = &node; }
    const CEEExpression* visited = nullptr;
};

TEST(ExpressionLikeTest, ItPrintsAsNothingAndIsOfNoKind)
{
    CExpressionLike like("Campo", "x%");
    Visitor visitor;

    EXPECT_EQ(like.ToString(), "");
    EXPECT_EQ(like.GetType(), 0);
    EXPECT_FALSE(like.IsConst());
    static_cast<const CEEExpression&>(like).Accept(
        static_cast<CEEExpressionConstVisitor&>(visitor));
    EXPECT_EQ(visitor.visited, &like);
    visitor.visited = nullptr;
    like.Accept(static_cast<CEEExpressionVisitor&>(visitor));
    EXPECT_EQ(visitor.visited, &like);
}

TEST(ExpressionLikeTest, ACloneMatchesTheSame)
{
    const CExpressionLike like("Campo", "x%");
    const std::unique_ptr<CEEExpression> copy(const_cast<CExpressionLike&>(like).Clone());
    const auto* other = dynamic_cast<CExpressionLike*>(copy.get());

    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->GetFieldName(), "Campo");
    EXPECT_EQ(other->GetPattern(), "x%");
    EXPECT_TRUE(other->Matches("xyz"));
}

} // namespace
