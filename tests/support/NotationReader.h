// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/LibraryPlan.h"

#include <string>
#include <string_view>

namespace support {

/// Reads the words of a notation one by one.
/// Errors: what does not fit throws std::invalid_argument.
class NotationReader final {
public:
    explicit NotationReader(std::string_view text);

    enum class Kind { End, Word, Text, Name, Mark };
    [[nodiscard]] Kind kind() const { return m_kind; }
    [[nodiscard]] bool atEnd() const { return m_kind == Kind::End; }
    [[nodiscard]] bool isWord(std::string_view word) const;
    [[nodiscard]] bool isMark(char mark) const;

    bool takeWord(std::string_view word);
    bool takeMark(char mark);
    void expectWord(std::string_view word);
    void expectMark(char mark);
    std::string anyWord(const char* what);
    orv::String name(const char* what);
    orv::String text(const char* what);
    int integer(const char* what);
    double number(const char* what);
    /// A cell of a field of this format.
    orv::CPolyValue value(gis::FieldFormat format);

    [[noreturn]] void fail(const std::string& expected) const;

private:
    void advance();
    void readQuoted(char quote);

    std::string_view m_text;
    std::size_t m_position = 0;
    std::size_t m_start = 0;
    Kind m_kind = Kind::End;
    std::string m_token;
};

} // namespace support
