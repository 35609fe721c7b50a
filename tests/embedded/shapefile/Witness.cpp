// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/shapefile/Witness.h"

#include "host/base/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <memory>

namespace shapetest {

namespace {

std::string quotedForShell(const std::string& text)
{
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

bool outputOf(const std::string& command, std::string& output)
{
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe)
        return false;
    char buffer[65536];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    return ::pclose(pipe) == 0;
}

std::string sortKey(const std::vector<double>& vertex)
{
    std::string key;
    for (const double value : vertex) {
        char buffer[40];
        const auto end = std::to_chars(
            buffer, buffer + sizeof buffer, value + 0.0, std::chars_format::general, 11);
        key.append(buffer, end.ptr);
        key += ' ';
    }
    return key;
}

} // namespace

bool hasWitness()
{
    std::string ignored;
    static const bool isThere = outputOf("ogr2ogr --version 2>/dev/null", ignored);
    return isThere;
}

std::vector<std::vector<std::string>> parseCsv(const std::string& text)
{
    std::vector<std::vector<std::string>> rows;
    std::vector<std::string> row;
    std::string cell;
    bool isQuoted = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (isQuoted) {
            const bool isDoubled = c == '"' && i + 1 < text.size() && text[i + 1] == '"';
            if (c == '"' && !isDoubled)
                isQuoted = false;
            else
                cell += c;
            i += isDoubled ? 1 : 0;
        } else if (c == '"') {
            isQuoted = true;
        } else if (c == ',' || c == '\n') {
            row.push_back(std::move(cell));
            cell.clear();
            if (c == '\n') {
                rows.push_back(std::move(row));
                row.clear();
            }
        } else {
            cell += c;
        }
    }
    return rows;
}

WitnessTable askWitness(const std::string& shpPath, const std::string& encoding, bool makeIndex)
{
    std::string output;
    WitnessTable table;
    const std::string command = "ogr2ogr -f CSV /vsistdout/ " + quotedForShell(shpPath)
        + " -lco GEOMETRY=AS_WKT -lco LINEFORMAT=LF --config "
          "SHAPE_ENCODING "
        + quotedForShell(encoding) + (makeIndex ? " --config SHAPE_RESTORE_SHX YES" : "")
        + " 2>/dev/null";
    if (!outputOf(command, output))
        return table;
    auto rows = parseCsv(output);
    if (rows.empty())
        return table;
    table.isOpen = true;
    table.fields.assign(rows[0].begin() + 1, rows[0].end());
    table.rows.assign(rows.begin() + 1, rows.end());
    return table;
}

std::vector<std::vector<double>> verticesOf(const std::string& wkt, bool withZ)
{
    std::vector<std::vector<double>> vertices;
    const std::size_t wanted = withZ ? 3 : 2;
    std::size_t at = wkt.find('(');
    while (at < wkt.size()) {
        const std::size_t end = std::min(wkt.find_first_of(",()", at + 1), wkt.size());
        const std::string_view tuple(wkt.data() + at + 1, end - at - 1);
        std::vector<double> vertex;
        for (std::size_t from = 0; from < tuple.size() && vertex.size() < wanted;) {
            const std::size_t to = std::min(tuple.find(' ', from), tuple.size());
            double value = 0.0;
            if (to > from && orv::ParseDouble(tuple.substr(from, to - from), value))
                vertex.push_back(value);
            from = to + 1;
        }
        if (vertex.size() == wanted)
            vertices.push_back(std::move(vertex));
        at = end;
    }
    return vertices;
}

bool sameVertices(std::vector<std::vector<double>> ours, std::vector<std::vector<double>> theirs)
{
    if (ours.size() != theirs.size())
        return false;
    // Sorted by fewer digits than are written, so that rounding does not change the order.
    for (auto* vertices : { &ours, &theirs })
        std::stable_sort(vertices->begin(), vertices->end(),
            [](const auto& a, const auto& b) { return sortKey(a) < sortKey(b); });
    // It writes 15 digits, at most 15 of them after the point, and leaves out a last one after
    // many nines or noughts.
    const auto isSame = [](double a, double b) {
        return std::abs(a - b) <= 1e-13 * std::max({ 1.0, std::abs(a), std::abs(b) });
    };
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (!std::equal(ours[i].begin(), ours[i].end(), theirs[i].begin(), theirs[i].end(), isSame))
            return false;
    return true;
}

} // namespace shapetest
