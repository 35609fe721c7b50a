// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/query/support/GrammarReference.h"

#include <functional>
#include <map>
#include <set>
#include <utility>

namespace testing_query {

namespace {

using Ends = std::set<std::size_t>;

enum Code {
    Not = 258,
    Or,
    And,
    Like,
    Between,
    In,
    Is,
    Null,
    Open,
    Close,
    Comma,
    Plus,
    Minus,
    Star,
    Slash,
    Equal,
    NotEqual,
    Greater,
    Less,
    GreaterEqual,
    LessEqual,
    Ident,
    String,
    Integer,
    True,
    False,
    Float
};

class Reference final {
public:
    explicit Reference(const std::vector<int>& tokens)
        : m_tokens(tokens)
    {
    }

    Ends filter(std::size_t at)
    {
        return memo(0, at, [&] { return disjunction(at); });
    }

private:
    using Rule = std::function<Ends(std::size_t)>;

    template <typename Make> Ends memo(int rule, std::size_t at, const Make& make)
    {
        const auto key = std::make_pair(rule, at);
        if (const auto found = m_known.find(key); found != m_known.end())
            return found->second;
        return m_known[key] = make();
    }

    Ends token(const Ends& starts, std::initializer_list<int> codes) const
    {
        Ends ends;
        for (std::size_t start : starts)
            for (int code : codes)
                if (start < m_tokens.size() && m_tokens[start] == code)
                    ends.insert(start + 1);
        return ends;
    }

    static Ends each(const Ends& starts, const Rule& rule)
    {
        Ends ends;
        for (std::size_t start : starts)
            ends.merge(rule(start));
        return ends;
    }

    /// item (separator item)*
    Ends chain(std::size_t at, const Rule& item, std::initializer_list<int> separators)
    {
        Ends ends = item(at);
        Ends fresh = ends;
        while (!fresh.empty()) {
            Ends more = each(token(fresh, separators), item);
            fresh.clear();
            for (std::size_t end : more)
                if (ends.insert(end).second)
                    fresh.insert(end);
        }
        return ends;
    }

    Ends disjunction(std::size_t at)
    {
        return chain(at, [&](std::size_t s) { return conjunction(s); }, { Or });
    }
    Ends conjunction(std::size_t at)
    {
        return chain(at, [&](std::size_t s) { return negation(s); }, { And });
    }
    Ends negation(std::size_t at)
    {
        Ends ends = predicate(at);
        ends.merge(each(token({ at }, { Not }), [&](std::size_t s) { return predicate(s); }));
        return ends;
    }
    Ends predicate(std::size_t at)
    {
        const Ends start { at };
        Ends ends = token(
            each(token(start, { Open }), [&](std::size_t s) { return filter(s); }), { Close });
        const Ends compared
            = token(arith(at), { Equal, NotEqual, Greater, Less, GreaterEqual, LessEqual });
        ends.merge(each(compared, [&](std::size_t s) { return arith(s); }));
        const Ends field = token(start, { Ident });
        ends.merge(token(token(field, { Like }), { String }));
        const Ends is = token(field, { Is });
        ends.merge(token(is, { Null }));
        ends.merge(token(token(is, { Not }), { Null }));
        return ends;
    }
    Ends arith(std::size_t at)
    {
        return memo(1, at, [&] {
            return chain(at, [&](std::size_t s) { return term(s); }, { Plus, Minus });
        });
    }
    Ends term(std::size_t at)
    {
        return chain(at, [&](std::size_t s) { return factor(s); }, { Star, Slash });
    }
    Ends factor(std::size_t at)
    {
        const Ends start { at };
        Ends ends = token(start, { Integer, Float, String, True, False, Ident });
        ends.merge(token(token(start, { Plus, Minus }), { Integer, Float }));
        ends.merge(token(
            each(token(start, { Open }), [&](std::size_t s) { return arith(s); }), { Close }));
        const Ends call = token(token(start, { Ident }), { Open });
        ends.merge(token(call, { Close }));
        const Rule item = [&](std::size_t s) { return arith(s); };
        ends.merge(
            token(each(call, [&](std::size_t s) { return chain(s, item, { Comma }); }), { Close }));
        return ends;
    }

    const std::vector<int>& m_tokens;
    std::map<std::pair<int, std::size_t>, Ends> m_known;
};

} // namespace

bool isFilter(const std::vector<int>& tokens)
{
    return Reference(tokens).filter(0).contains(tokens.size());
}

} // namespace testing_query
