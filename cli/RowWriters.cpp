// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "cli/RowWriters.h"

#include <algorithm>

namespace cli {

namespace {

/// RFC 4180: lines end with CR LF; what holds a comma, a quote or a line end is quoted.
class CsvWriter final : public IRowWriter {
public:
    CsvWriter(std::vector<OutputColumn> columns, Output& output)
        : m_columns(std::move(columns))
        , m_output(output)
    {
        std::string line;
        for (const auto& column : m_columns)
            append(line, column.name);
        finish(line);
    }

    bool row(const std::vector<orv::CPolyValue>& cells, gis::CEnt* /*ent*/) override
    {
        std::string line;
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            append(line, shownText(cells[i], m_columns[i]));
        return finish(line);
    }
    bool end() override { return true; }

private:
    std::vector<OutputColumn> m_columns;
    Output& m_output;

    static void append(std::string& line, const std::string& text)
    {
        if (text.find_first_of(",\"\r\n") == std::string::npos) {
            line += text;
        } else {
            line += '"';
            for (const char c : text)
                line.append(c == '"' ? 2 : 1, c);
            line += '"';
        }
        line += ',';
    }
    bool finish(std::string& line)
    {
        if (!line.empty())
            line.pop_back();
        return m_output.write(line += "\r\n");
    }
};

class JsonWriter final : public IRowWriter {
public:
    JsonWriter(std::vector<OutputColumn> columns, Output& output)
        : m_output(output)
    {
        for (const auto& column : columns) {
            m_keys.emplace_back(m_keys.empty() ? "{" : ",");
            appendJsonText(m_keys.back(), column.name);
            m_keys.back() += ':';
        }
    }

    bool row(const std::vector<orv::CPolyValue>& cells, gis::CEnt* /*ent*/) override
    {
        std::string line = m_isFirst ? "[\n" : ",\n";
        m_isFirst = false;
        for (std::size_t i = 0; i < m_keys.size(); ++i) {
            line += m_keys[i];
            appendJson(line, cells[i]);
        }
        return m_output.write(line += '}');
    }
    bool end() override { return m_output.write(m_isFirst ? "[]\n" : "\n]\n"); }

private:
    std::vector<std::string> m_keys; // with the sign before and the colon behind
    Output& m_output;
    bool m_isFirst = true;
};

/// Holds all rows back, since the widest cell decides a column's width.
class TableWriter final : public IRowWriter {
public:
    TableWriter(std::vector<OutputColumn> columns, Output& output)
        : m_columns(std::move(columns))
        , m_output(output)
    {
        std::vector<std::string> names;
        for (const auto& column : m_columns)
            names.push_back(column.name);
        m_widths.resize(m_columns.size());
        add(std::move(names));
    }

    bool row(const std::vector<orv::CPolyValue>& cells, gis::CEnt* /*ent*/) override
    {
        std::vector<std::string> texts;
        texts.reserve(m_columns.size());
        for (std::size_t i = 0; i < m_columns.size(); ++i)
            texts.push_back(shownText(cells[i], m_columns[i]));
        add(std::move(texts));
        return true;
    }

    bool end() override
    {
        for (std::size_t r = 0; r < m_rows.size(); ++r) {
            if (!writeLine(m_rows[r]) || (r == 0 && !writeRule()))
                return false;
        }
        return true;
    }

private:
    std::vector<OutputColumn> m_columns;
    std::vector<int> m_widths;
    std::vector<std::vector<std::string>> m_rows; // the names first
    Output& m_output;

    void add(std::vector<std::string> texts)
    {
        for (std::size_t i = 0; i < texts.size(); ++i) {
            for (char& c : texts[i])
                if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F)
                    c = ' '; // a cell is one line, and no terminal command
            m_widths[i] = std::max(m_widths[i], terminalWidth(texts[i]));
        }
        m_rows.push_back(std::move(texts));
    }
    [[nodiscard]] bool isNumber(std::size_t column) const
    {
        const auto format = m_columns[column].format;
        return format == gis::FieldFormat::Integer || format == gis::FieldFormat::Decimal;
    }
    bool writeLine(const std::vector<std::string>& texts)
    {
        std::string line;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const auto blanks = static_cast<std::size_t>(m_widths[i] - terminalWidth(texts[i]));
            line += i > 0 ? "  " : "";
            line += isNumber(i) ? std::string(blanks, ' ') + texts[i]
                                : texts[i] + std::string(blanks, ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        return m_output.write(line += '\n');
    }
    bool writeRule()
    {
        std::string line;
        for (std::size_t i = 0; i < m_widths.size(); ++i)
            line += (i > 0 ? "  " : "") + std::string(static_cast<std::size_t>(m_widths[i]), '-');
        return m_output.write(line += '\n');
    }
};

} // namespace

std::unique_ptr<IRowWriter> makeRowWriter(
    Format format, std::vector<OutputColumn> columns, Output& output)
{
    switch (format) {
    case Format::Csv:
        return std::make_unique<CsvWriter>(std::move(columns), output);
    case Format::Json:
        return std::make_unique<JsonWriter>(std::move(columns), output);
    case Format::Table:
    case Format::GeoJson:
        break;
    }
    return std::make_unique<TableWriter>(std::move(columns), output);
}

} // namespace cli
