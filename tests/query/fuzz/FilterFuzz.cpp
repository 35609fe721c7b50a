// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/execution/FilterNames.h"
#include "query/language/FilterParser.h"

#include "host/expr/Symbols.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

/// Parses a text, then does with its tree everything that is done with trees.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const query::ParseOutcome outcome = query::parseFilter(text, query::ErrorReport::Silent);
    if ((outcome.status == 0 && !outcome.root)
        || (outcome.status != 0 && outcome.errorPosition < 1))
        std::abort();
    if (outcome.status != 0) // what the message of a refused text is made of
        (void)query::expectedAfter(text, outcome.errorPosition - 1);
    if (!outcome.root)
        return 0;
    CEESymbolTable symbols;
    symbols.AddSymbol("a", new CEESymbolConstVar());
    symbols.AddSymbol("Date", new CEESymbolFunVarious(EEFunctionDate));
    symbols.AddSymbol("Year", new CEESymbolFunDate(EEFunctionYear));
    (void)query::filterNames(*outcome.root, symbols);
    const std::unique_ptr<CEEExpression> copy(outcome.root->Clone());
    CEEResult result;
    CEEResult again;
    const bool isComputed = outcome.root->Eval(&symbols, result);
    if (copy->Eval(&symbols, again) != isComputed
        || (isComputed && result.GetElemBool() != again.GetElemBool()))
        std::abort();
    return 0;
}
