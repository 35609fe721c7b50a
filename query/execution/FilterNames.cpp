// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/FilterNames.h"

#include "query/execution/FieldSymbols.h"
#include "query/nodes/ExpressionLike.h"

#include "host/gis/LibGis.h"

#include <set>
#include <string>
#include <utility>

namespace query {

namespace {

class NameCollector final {
public:
    explicit NameCollector(CEESymbolProvider& symbols)
        : m_symbols(symbols)
    {
    }

    void add(const orv::String& name, bool isFunction)
    {
        if (!m_seen.emplace(name.Bytes(), isFunction).second)
            return;
        orv::String sought(name);
        CEESymbol* const symbol
            = isFunction ? m_symbols.GetFunction(sought) : m_symbols.GetSymbol(sought);
        names.push_back({ name, isFunction, symbol != nullptr });
    }

    std::vector<FilterName> names;

private:
    CEESymbolProvider& m_symbols;
    std::set<std::pair<std::string, bool>> m_seen;
};

} // namespace

std::vector<FilterName> filterNames(CEEExpression& filter, CEESymbolProvider& symbols)
{
    NameCollector collector(symbols);
    std::vector<CEEExpression*> pending { &filter }; // a stack: trees may be deep on the left
    while (!pending.empty()) {
        CEEExpression* const node = pending.back();
        pending.pop_back();
        if (!node)
            continue;
        if (auto* const binary = dynamic_cast<CEEExpressionBinOp*>(node)) {
            pending.push_back(binary->GetRight());
            pending.push_back(binary->GetLeft());
        } else if (auto* const unary = dynamic_cast<CEEExpressionUnOp*>(node)) {
            pending.push_back(unary->GetOperand());
        } else if (auto* const call = dynamic_cast<CEEExpressionFun*>(node)) {
            collector.add(call->GetName(), true);
            const auto& arguments = call->GetArguments();
            pending.insert(pending.end(), arguments.rbegin(), arguments.rend());
        } else if (auto* const variable = dynamic_cast<CEEExpressionVar*>(node)) {
            collector.add(variable->GetVarName(), false);
        } else if (auto* const like = dynamic_cast<CExpressionLike*>(node)) {
            collector.add(like->GetFieldName(), false);
        }
    }
    return std::move(collector.names);
}

std::vector<FilterName> filterNames(
    CEEExpression& filter, gis::CLibGis* library, gis::CTheme* theme)
{
    gis::CDBTable* const table = library ? library->GetTable(theme) : nullptr;
    const FieldSymbols symbols = makeFieldSymbols(library, table);
    return filterNames(filter, *symbols.table);
}

} // namespace query
