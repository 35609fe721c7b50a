// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

// What the generated scanner keeps beside its own buffer. Only for the sources of query/language.

#include "query/language/FilterScanner.h"

#include <cstddef>
#include <exception>

namespace query {

/// Thrown where the generated scanner would end the process; never leaves FilterScanner.
class ScannerFailure final : public std::exception { };

struct ScanState {
    const char* text = nullptr;
    int length = 0;
    int readBytes = 0; ///< Already handed to the scanner's buffer.
    int offset = 0; ///< End of the last match.
    int line = 0;
    Token token;

    /// The next bytes of the text, at most `capacity`; 0 at its end.
    std::size_t read(char* buffer, std::size_t capacity);
    int give(int code);
    int giveText(int code, std::string_view bytes);
    /// Digits that do not fit 32 bits are a decimal number: they must not be compared as another
    /// number than the one written.
    int giveInteger(std::string_view digits);
    int giveNumber(std::string_view digits);
};

} // namespace query
