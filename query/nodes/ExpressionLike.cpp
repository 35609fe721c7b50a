// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/nodes/ExpressionLike.h"

#include "host/expr/Symbols.h"

#include <algorithm>

namespace {

constexpr char AnyRun = '%';
constexpr char AnyByte = '_';

bool isAnyRun(const orv::String& segment)
{
    return segment.View() == std::string_view(&AnyRun, 1);
}

/// `literal` at the beginning of `text`, which is at least as long.
bool literalMatches(std::string_view text, std::string_view literal)
{
    for (std::size_t i = 0; i < literal.size(); ++i)
        if (literal[i] != AnyByte && literal[i] != text[i])
            return false;
    return true;
}

/// First match of `literal` in `text` at or after `start`; npos when there is none.
std::size_t findLiteral(std::string_view text, std::string_view literal, std::size_t start)
{
    if (literal.find(AnyByte) == std::string_view::npos)
        return text.find(literal, start);
    for (std::size_t at = start; at + literal.size() <= text.size(); ++at)
        if (literalMatches(text.substr(at), literal))
            return at;
    return std::string_view::npos;
}

} // namespace

CExpressionLike::CExpressionLike(const orv::String& field, const orv::String& pattern)
    : m_field(field)
    , m_pattern(pattern)
{
    compile();
}

CExpressionLike::~CExpressionLike() = default;

void CExpressionLike::compile()
{
    const std::string_view pattern = m_pattern.View();
    std::size_t start = 0;
    while (start < pattern.size()) {
        const std::size_t run = std::min(pattern.find(AnyRun, start), pattern.size());
        if (run > start)
            m_segments.emplace_back(pattern.substr(start, run - start));
        if (run == pattern.size())
            return;
        m_segments.emplace_back(pattern.substr(run, 1));
        start = std::min(pattern.find_first_not_of(AnyRun, run), pattern.size());
    }
}

bool CExpressionLike::Matches(std::string_view text) const
{
    // The first place where a run after "%" fits leaves the most text for the runs that follow, so
    // no later place needs a try; only the last run is bound to the end of the text.
    std::size_t position = 0;
    bool afterAnyRun = false;
    for (std::size_t i = 0; i < m_segments.size(); ++i) {
        const std::string_view segment = m_segments[i].View();
        if (isAnyRun(m_segments[i])) {
            afterAnyRun = true;
            continue;
        }
        if (segment.size() > text.size() - position)
            return false;
        if (afterAnyRun && i + 1 == m_segments.size())
            return literalMatches(text.substr(text.size() - segment.size()), segment);
        const std::size_t at = afterAnyRun ? findLiteral(text, segment, position) : position;
        if (at == std::string_view::npos
            || (!afterAnyRun && !literalMatches(text.substr(at), segment)))
            return false;
        position = at + segment.size();
        afterAnyRun = false;
    }
    return afterAnyRun || position == text.size();
}

int CExpressionLike::GetType()
{
    return EETypeOther;
}

bool CExpressionLike::Eval(CEESymbolProvider* provider, CEEResult& result)
{
    if (!provider)
        return false;
    orv::String name(m_field); // the provider may change what it is given
    CEESymbol* const symbol = provider->GetSymbol(name);
    CEEResult value;
    if (!symbol || !symbol->Eval(0, nullptr, value))
        return false;
    const bool isText = value.GetElemType() == orv::PolyString;
    const bool matched
        = isText ? Matches(value.GetElem().TextView()) : Matches(value.GetElemString().View());
    result.SetElemBool(matched && value.GetElemType() != orv::PolyEmpty);
    return true;
}

orv::String CExpressionLike::ToString() const
{
    return {};
}

bool CExpressionLike::IsConst()
{
    return false;
}

void CExpressionLike::Accept(CEEExpressionConstVisitor& visitor) const
{
    visitor.Visit(*this);
}

void CExpressionLike::Accept(CEEExpressionVisitor& visitor)
{
    visitor.Visit(*this);
}

CEEExpression* CExpressionLike::Clone()
{
    return new CExpressionLike(m_field, m_pattern);
}
