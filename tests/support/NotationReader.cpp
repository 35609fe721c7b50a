// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/support/NotationReader.h"

#include "host/base/Dates.h"
#include "host/base/Numbers.h"

#include <stdexcept>

namespace support {
namespace {

constexpr std::string_view Blanks = " \t\r\n";
constexpr std::string_view Marks = "()[],;:|";

} // namespace

NotationReader::NotationReader(std::string_view text)
    : m_text(text)
{
    advance();
}

bool NotationReader::isWord(std::string_view word) const
{
    return m_kind == Kind::Word && m_token == word;
}

bool NotationReader::isMark(char mark) const
{
    return m_kind == Kind::Mark && m_token[0] == mark;
}

bool NotationReader::takeWord(std::string_view word)
{
    if (!isWord(word))
        return false;
    advance();
    return true;
}

bool NotationReader::takeMark(char mark)
{
    if (!isMark(mark))
        return false;
    advance();
    return true;
}

void NotationReader::expectWord(std::string_view word)
{
    if (!takeWord(word))
        fail("'" + std::string(word) + "'");
}

void NotationReader::expectMark(char mark)
{
    if (!takeMark(mark))
        fail(std::string("'") + mark + "'");
}

std::string NotationReader::anyWord(const char* what)
{
    if (m_kind != Kind::Word)
        fail(what);
    std::string word = m_token;
    advance();
    return word;
}

orv::String NotationReader::name(const char* what)
{
    if (m_kind != Kind::Word && m_kind != Kind::Name)
        fail(what);
    orv::String name { std::string_view(m_token) };
    advance();
    return name;
}

orv::String NotationReader::text(const char* what)
{
    if (m_kind != Kind::Word && m_kind != Kind::Text)
        fail(what);
    orv::String text { std::string_view(m_token) };
    advance();
    return text;
}

int NotationReader::integer(const char* what)
{
    const double value = number(what);
    if (value < -2147483648.0 || value > 2147483647.0 || value != static_cast<int>(value))
        fail(what);
    return static_cast<int>(value);
}

double NotationReader::number(const char* what)
{
    double value = 0.0;
    if (m_kind != Kind::Word || !orv::ParseDouble(m_token, value))
        fail(what);
    advance();
    return value;
}

orv::CPolyValue NotationReader::value(gis::FieldFormat format)
{
    if (takeWord("-"))
        return {};
    switch (format) {
    case gis::FieldFormat::Boolean: {
        const std::string word = anyWord("yes, no or -");
        if (word != "yes" && word != "no")
            fail("yes, no or -");
        return orv::CPolyValue(word == "yes");
    }
    case gis::FieldFormat::Integer:
        return orv::CPolyValue(integer("a whole number or -"));
    case gis::FieldFormat::Decimal:
        return orv::CPolyValue(number("a number or -"));
    case gis::FieldFormat::Date: {
        std::int64_t midnight = 0;
        if (!orv::ParseDateText(anyWord("a day as dd/mm/yyyy or -"), midnight))
            fail("a day as dd/mm/yyyy or -");
        orv::CPolyValue date;
        date.SetDateValue(midnight);
        return date;
    }
    case gis::FieldFormat::Text:
    case gis::FieldFormat::List:
        break;
    }
    return orv::CPolyValue(text("a text or -"));
}

void NotationReader::fail(const std::string& expected) const
{
    const std::string found = atEnd() ? "the end" : "\"" + m_token + "\"";
    throw std::invalid_argument("library notation, byte " + std::to_string(m_start + 1)
        + ": expected " + expected + ", found " + found);
}

void NotationReader::advance()
{
    m_token.clear();
    m_position = m_text.find_first_not_of(Blanks, m_position);
    if (m_position == std::string_view::npos) {
        m_position = m_start = m_text.size();
        m_kind = Kind::End;
        return;
    }
    m_start = m_position;
    const char first = m_text[m_position];
    if (first == '\'' || first == '"') {
        m_kind = first == '"' ? Kind::Name : Kind::Text;
        readQuoted(first);
    } else if (Marks.find(first) != std::string_view::npos) {
        m_kind = Kind::Mark;
        m_token = first;
        ++m_position;
    } else {
        m_kind = Kind::Word;
        while (m_position < m_text.size()
            && Blanks.find(m_text[m_position]) == std::string_view::npos
            && Marks.find(m_text[m_position]) == std::string_view::npos)
            m_token += m_text[m_position++];
    }
}

void NotationReader::readQuoted(char quote)
{
    ++m_position;
    while (m_position < m_text.size()) {
        const char c = m_text[m_position++];
        if (c == quote) {
            if (m_position >= m_text.size() || m_text[m_position] != quote)
                return;
            ++m_position; // a doubled quote stands for itself
        }
        m_token += c;
    }
    fail("a closing quote");
}

} // namespace support
