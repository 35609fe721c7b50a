// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "tests/embedded/shapefile/RawShapefile.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace shapetest {

TemporaryFolder::TemporaryFolder()
{
    std::string pattern
        = (std::filesystem::temp_directory_path() / "tematica-shape-XXXXXX").string();
    m_path = ::mkdtemp(pattern.data());
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

void writeFile(const std::string& path, std::string_view bytes)
{
    // A file that is written over may have to reach the disk first; a new one has not.
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    std::ofstream(path, std::ios::binary)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

std::string little16(std::uint32_t value)
{
    return { static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF) };
}

std::string little32(std::int64_t value)
{
    const auto bits = static_cast<std::uint32_t>(value);
    return little16(bits & 0xFFFF) + little16(bits >> 16);
}

std::string big32(std::int64_t value)
{
    std::string bytes = little32(value);
    std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

std::string number(double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return little32(static_cast<std::int64_t>(bits & 0xFFFFFFFFu))
        + little32(static_cast<std::int64_t>(bits >> 32));
}

std::string RawDbf::bytes() const
{
    std::size_t recordBytes = 1;
    for (const RawField& field : fields)
        recordBytes += static_cast<std::size_t>(field.width);
    std::string out { static_cast<char>(version), 26, 1, 2 };
    out += little32(static_cast<std::int64_t>(rows.size()));
    out += little16(static_cast<std::uint32_t>(33 + 32 * fields.size()));
    out += little16(static_cast<std::uint32_t>(recordBytes));
    out += std::string(17, '\0') + static_cast<char>(languageByte) + std::string(2, '\0');
    for (const RawField& field : fields) {
        std::string descriptor = field.name.substr(0, 11);
        descriptor.resize(11, '\0');
        descriptor += field.type;
        descriptor += std::string(4, '\0');
        descriptor += static_cast<char>(field.width);
        descriptor += static_cast<char>(field.decimals);
        descriptor.resize(32, '\0');
        out += descriptor;
    }
    out += '\x0D';
    for (std::size_t row = 0; row < rows.size(); ++row) {
        out += !deleted.empty() && deleted[row] ? '*' : ' ';
        for (std::size_t i = 0; i < fields.size(); ++i) {
            std::string cell = rows[row][i];
            cell.resize(static_cast<std::size_t>(fields[i].width), ' ');
            out += cell;
        }
    }
    return out + '\x1A';
}

namespace {

std::string fileHeader(std::int32_t type, std::size_t fileBytes)
{
    std::string out = big32(9994) + std::string(20, '\0');
    out += big32(static_cast<std::int64_t>(fileBytes / 2)) + little32(1000) + little32(type);
    return out + std::string(64, '\0');
}

} // namespace

std::string RawShp::shp() const
{
    std::string records;
    for (std::size_t i = 0; i < contents.size(); ++i)
        records += big32(static_cast<std::int64_t>(i + 1))
            + big32(static_cast<std::int64_t>(contents[i].size() / 2)) + contents[i];
    return fileHeader(type, 100 + records.size()) + records;
}

std::string RawShp::shx() const
{
    std::string entries;
    std::size_t offset = 100;
    for (const std::string& content : contents) {
        entries += big32(static_cast<std::int64_t>(offset / 2))
            + big32(static_cast<std::int64_t>(content.size() / 2));
        offset += 8 + content.size();
    }
    return fileHeader(type, 100 + entries.size()) + entries;
}

std::string pointContent(double x, double y)
{
    return little32(1) + number(x) + number(y);
}

std::string pointContent(double x, double y, double z, double m)
{
    return little32(11) + number(x) + number(y) + number(z) + number(m);
}

std::string partsContent(std::int32_t type, const std::vector<std::vector<double>>& parts,
    const std::vector<double>& z, const std::vector<double>& m)
{
    std::string starts;
    std::string points;
    std::size_t vertices = 0;
    for (const std::vector<double>& part : parts) {
        starts += little32(static_cast<std::int64_t>(vertices));
        for (const double ordinate : part)
            points += number(ordinate);
        vertices += part.size() / 2;
    }
    const bool hasParts = type % 10 != 8;
    std::string out = little32(type) + std::string(32, '\0');
    if (hasParts)
        out += little32(static_cast<std::int64_t>(parts.size()));
    out += little32(static_cast<std::int64_t>(vertices));
    out += (hasParts ? starts : std::string()) + points;
    for (const std::vector<double>* ordinates : { &z, &m }) {
        if (ordinates->empty())
            continue;
        out += std::string(16, '\0');
        for (const double ordinate : *ordinates)
            out += number(ordinate);
    }
    return out;
}

std::string nullContent()
{
    return little32(0);
}

RawShp pointFile(int count)
{
    RawShp shp;
    for (int i = 0; i < count; ++i)
        shp.contents.push_back(pointContent(i, 10.0 * i));
    return shp;
}

std::string writeShapefile(
    const TemporaryFolder& folder, const std::string& name, const RawShp& shp, const RawDbf& dbf)
{
    writeFile(folder / (name + ".shp"), shp.shp());
    writeFile(folder / (name + ".shx"), shp.shx());
    writeFile(folder / (name + ".dbf"), dbf.bytes());
    return folder / (name + ".shp");
}

RawDbf textTable(const std::vector<std::string>& cells, int width)
{
    std::size_t longest = 1;
    for (const std::string& cell : cells)
        longest = std::max(longest, cell.size());
    return oneColumn({ "NOME", 'C', width > 0 ? width : static_cast<int>(longest) }, cells);
}

RawDbf oneColumn(const RawField& field, const std::vector<std::string>& cells)
{
    RawDbf dbf;
    dbf.fields.push_back(field);
    for (const std::string& cell : cells)
        dbf.rows.push_back({ cell });
    return dbf;
}

} // namespace shapetest
