// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "query/language/ScanState.h"

#include "FilterGrammar.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cstring>

namespace query {

std::size_t ScanState::read(char* buffer, std::size_t capacity)
{
    const auto left = static_cast<std::size_t>(length - readBytes);
    const std::size_t count = std::min(left, capacity);
    if (count > 0)
        std::memcpy(buffer, text + readBytes, count);
    readBytes += static_cast<int>(count);
    return count;
}

int ScanState::give(int code)
{
    token.code = code;
    return code;
}

int ScanState::giveText(int code, std::string_view bytes)
{
    token.text = bytes;
    return give(code);
}

int ScanState::giveInteger(std::string_view digits)
{
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), token.integer);
    return read.ec == std::errc() ? give(TOKEN_INTEGER) : giveNumber(digits);
}

int ScanState::giveNumber(std::string_view digits)
{
    token.number = orv_atof(digits);
    return give(TOKEN_FLOAT);
}

int FilterScanner::line() const
{
    return m_state->line;
}

} // namespace query
