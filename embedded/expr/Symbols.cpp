// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT

#include "host/expr/Symbols.h"

#include "host/base/Numbers.h"

#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace {

struct ExactHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const
    {
        return std::hash<std::string_view>()(name);
    }
};

struct FoldedHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const
    {
        std::uint64_t hash = 14695981039346656037U; // FNV-1a over the folded bytes
        for (const char byte : name) {
            const bool isUpper = byte >= 'A' && byte <= 'Z';
            const auto folded = static_cast<unsigned char>(isUpper ? byte + ('a' - 'A') : byte);
            hash = (hash ^ folded) * 1099511628211U;
        }
        return hash;
    }
};

struct FoldedEqual {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const
    {
        return left.size() == right.size() && orv::CompareIgnoreAsciiCase(left, right) == 0;
    }
};

/// Symbols of one kind, by exact name and else without regard to ASCII case; the first of a name
/// stays.
class NameMap {
public:
    void add(const std::string& name, CEESymbol* symbol)
    {
        m_exact.try_emplace(name, symbol);
        m_folded.try_emplace(name, symbol);
    }
    [[nodiscard]] CEESymbol* find(std::string_view name) const
    {
        if (const auto exact = m_exact.find(name); exact != m_exact.end())
            return exact->second;
        const auto folded = m_folded.find(name);
        return folded == m_folded.end() ? nullptr : folded->second;
    }

private:
    std::unordered_map<std::string, CEESymbol*, ExactHash, std::equal_to<>> m_exact;
    std::unordered_map<std::string, CEESymbol*, FoldedHash, FoldedEqual> m_folded;
};

} // namespace

CEESymbol::~CEESymbol() = default;
CEESymbolProvider::~CEESymbolProvider() = default;

class CEESymbolTable::Impl {
public:
    Impl() = default;
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl()
    {
        for (CEESymbol* symbol : owned)
            delete symbol;
    }
    NameMap variables;
    NameMap functions;
    std::unordered_set<CEESymbol*> owned; // a set, since a symbol may have several names
};

CEESymbolTable::CEESymbolTable()
    : m_impl(std::make_unique<Impl>())
{
}

CEESymbolTable::~CEESymbolTable() = default;

void CEESymbolTable::AddSymbol(orv::String name, CEESymbol* symbol)
{
    if (!symbol)
        return;
    m_impl->owned.insert(symbol);
    (symbol->IsFunction() ? m_impl->functions : m_impl->variables).add(name.Bytes(), symbol);
}

CEESymbol* CEESymbolTable::Find(std::string_view name) const
{
    CEESymbol* variable = m_impl->variables.find(name);
    return variable ? variable : m_impl->functions.find(name);
}

CEESymbol* CEESymbolTable::GetSymbol(orv::String& name)
{
    return Find(name.View());
}

CEESymbol* CEESymbolTable::GetFunction(orv::String& name)
{
    return m_impl->functions.find(name.View());
}

CEESymbolConstVar::CEESymbolConstVar() = default;
CEESymbolConstVar::~CEESymbolConstVar() = default;

void CEESymbolConstVar::SetElemValue(const orv::CPolyValue& value)
{
    m_value = value;
}

bool CEESymbolConstVar::Eval(int /*argumentCount*/, CEEResult* /*arguments*/, CEEResult& result)
{
    result.SetElem(m_value);
    return true;
}
