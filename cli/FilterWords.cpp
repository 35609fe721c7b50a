// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/Messages.h"

#include "query/language/FilterParser.h"

#include <fmt/format.h>

namespace cli {

std::string hiddenSlip(const query::ParseOutcome& filter)
{
    if (filter.failure == query::ParseFailure::StackOverflow)
        return "it is nested too deep there; use fewer parentheses and calls one inside the other";
    if (filter.isTextOpen())
        return "the text that begins there has no end; close it with a quote (')";
    if (filter.isNameOpen())
        return "the name that begins there has no end; close it with a bracket (])";
    return {};
}

std::string refusal(const query::ParseOutcome& filter)
{
    if (filter.failure == query::ParseFailure::OutOfMemory)
        return "the filter is refused: it is too long for the memory there is; make it shorter";
    std::string slip = hiddenSlip(filter);
    if (slip.empty())
        slip = filter.unexpectedToken.empty()
            ? "it ends too early"
            : fmt::format("\"{}\" cannot stand there", filter.unexpectedToken);
    return fmt::format("the filter is refused at position {}: {}", filter.errorPosition, slip);
}

} // namespace cli
