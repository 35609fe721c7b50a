// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/store/ByteBuffer.h"
#include "embedded/store/Rings.h"
#include "embedded/store/Wkb.h"
#include "embedded/store/WkbCodes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace embedded::store {
namespace {

constexpr std::uint8_t EmptyFlag = 0x10;
constexpr std::uint8_t ExtendedFlag = 0x20;

struct Header {
    bool isDamaged = false;
    bool isExtended = false;
    bool isEmpty = false;
};

Header readHeader(CByteReader& reader)
{
    static constexpr std::array<std::size_t, 5> BoxBytes = { 0, 32, 48, 48, 64 };
    Header header;
    const auto mark = reader.value<std::uint16_t>();
    reader.skip(1); // version
    const auto flags = reader.value<std::uint8_t>();
    const std::size_t box = (flags >> 1) & 7u;
    header.isExtended = (flags & ExtendedFlag) != 0;
    header.isEmpty = (flags & EmptyFlag) != 0;
    header.isDamaged = mark != 0x5047 || box >= BoxBytes.size() || !reader.skip(4)
        || !reader.skip(BoxBytes[box]);
    return header;
}

struct ShapeCode {
    std::uint32_t base = 0;
    bool hasZ = false;
    bool hasM = false;
};

// PostGIS marks Z and M by high bits instead of thousands; some programs write that form.
ShapeCode readCode(CByteReader& reader)
{
    const auto order = reader.value<std::uint8_t>();
    reader.setBigEndian(order == 0);
    auto code = reader.value<std::uint32_t>();
    ShapeCode result;
    result.hasZ = (code & 0x80000000u) != 0;
    result.hasM = (code & 0x40000000u) != 0;
    if (code & 0x20000000u)
        reader.skip(4);
    code &= 0x0FFFFFFFu;
    const std::uint32_t thousands = code / 1000;
    result.hasZ = result.hasZ || thousands == 1 || thousands == 3;
    result.hasM = result.hasM || thousands == 2 || thousands == 3;
    result.base = order > 1 || thousands > 3 ? 0 : code % 1000;
    return result;
}

/// Reads one shape's members as parts of the entity at the buffer's end.
class CPartReader final {
public:
    CPartReader(CByteReader& reader, const ShapeLayout& layout, bool keepRings, ShapeBuffer& out)
        : m_reader(reader)
        , m_layout(layout)
        , m_keepRings(keepRings)
        , m_out(out)
    {
    }

    ShapeState read()
    {
        const ShapeCode code = readCode(m_reader);
        if (!m_reader.ok())
            return ShapeState::Damaged;
        const auto [single, multi] = codesOf(m_layout.type);
        if (code.base == single)
            readMember(code, false);
        else if (code.base == multi)
            readMembers(single);
        else
            return ShapeState::Unsupported;
        if (m_isUnsupported)
            return ShapeState::Unsupported;
        return m_reader.ok() ? ShapeState::Taken : ShapeState::Damaged;
    }

private:
    static std::pair<std::uint32_t, std::uint32_t> codesOf(gis::EntType type)
    {
        switch (type) {
        case gis::EntType::Points:
            return { wkb::Point, wkb::MultiPoint };
        case gis::EntType::Lines:
            return { wkb::LineString, wkb::MultiLineString };
        case gis::EntType::Polygons:
            break;
        }
        return { wkb::Polygon, wkb::MultiPolygon };
    }

    void readMembers(std::uint32_t single)
    {
        const auto count = m_reader.value<std::uint32_t>();
        for (std::uint32_t i = 0; i < count && m_reader.ok() && !m_isUnsupported; ++i) {
            const ShapeCode code = readCode(m_reader);
            if (m_reader.ok() && code.base != single)
                m_isUnsupported = true;
            else if (m_reader.ok())
                readMember(code, true);
        }
    }

    // A line without vertices is a part only among others; alone it is an empty shape.
    void readMember(const ShapeCode& code, bool isAmongOthers)
    {
        if (m_layout.type == gis::EntType::Points)
            addVertices(1, code);
        else if (m_layout.type == gis::EntType::Lines)
            readLine(code, isAmongOthers);
        else
            readRings(code);
    }

    void readLine(const ShapeCode& code, bool keepEmpty)
    {
        const auto count = m_reader.value<std::uint32_t>();
        if (count > 0 || keepEmpty)
            addVertices(count, code);
    }

    void readRings(const ShapeCode& code)
    {
        const auto rings = m_reader.value<std::uint32_t>();
        for (std::uint32_t i = 0; i < rings && m_reader.ok(); ++i) {
            const auto count = m_reader.value<std::uint32_t>();
            if (addVertices(count, code) && !m_keepRings)
                setRunOfLastRing(i == 0);
        }
    }

    // Memory is taken only for what the bytes can hold.
    bool addVertices(std::uint32_t count, const ShapeCode& code)
    {
        const std::size_t from = 2 + (code.hasZ ? 1u : 0u) + (code.hasM ? 1u : 0u);
        if (!m_reader.ok() || count > m_reader.left() / (from * sizeof(double))) {
            static_cast<void>(m_reader.skip(m_reader.left() + 1)); // damaged from here on
            return false;
        }
        const std::size_t to = static_cast<std::size_t>(m_layout.stride());
        const std::size_t at = m_out.coordinates.size();
        m_out.coordinates.resize(at + count * to);
        double* out = m_out.coordinates.data() + at;
        if (code.hasZ == m_layout.hasZ && code.hasM == m_layout.hasM)
            m_reader.doubles(out, count * to);
        else
            for (std::uint32_t i = 0; i < count; ++i, out += to)
                readOtherVertex(out, code);
        m_out.partSizes.push_back(static_cast<int>(count));
        return m_reader.ok();
    }

    void readOtherVertex(double* out, const ShapeCode& code)
    {
        m_reader.doubles(out, 2);
        const double z = code.hasZ ? m_reader.value<double>() : 0.0;
        const double m
            = code.hasM ? m_reader.value<double>() : std::numeric_limits<double>::quiet_NaN();
        std::size_t next = 2;
        if (m_layout.hasZ)
            out[next++] = z;
        if (m_layout.hasM)
            out[next] = m;
    }

    void setRunOfLastRing(bool isOuter)
    {
        const auto stride = static_cast<std::size_t>(m_layout.stride());
        auto count = static_cast<std::size_t>(m_out.partSizes.back());
        if (count == 0)
            return;
        const std::size_t first = m_out.coordinates.size() - count * stride;
        const auto differs = [&](std::size_t side) {
            return m_out.coordinates[first + side]
                != m_out.coordinates[m_out.coordinates.size() - stride + side];
        };
        if (differs(0) || differs(1)) {
            for (std::size_t i = 0; i < stride; ++i)
                m_out.coordinates.push_back(m_out.coordinates[first + i]);
            ++count;
            ++m_out.partSizes.back();
        }
        double* ring = m_out.coordinates.data() + first;
        const double area
            = doubledArea({ ring, static_cast<int>(count), static_cast<int>(stride) });
        if (isOuter ? area > 0 : area < 0)
            for (std::size_t a = 0, b = count - 1; a < b; ++a, --b)
                std::swap_ranges(ring + a * stride, ring + (a + 1) * stride, ring + b * stride);
    }

    CByteReader& m_reader;
    const ShapeLayout& m_layout;
    bool m_keepRings;
    ShapeBuffer& m_out;
    bool m_isUnsupported = false;
};

std::vector<std::size_t> numbersOf(std::string_view hint)
{
    std::vector<std::size_t> numbers;
    CByteReader reader(hint);
    while (reader.left() > 0 && reader.ok())
        numbers.push_back(static_cast<std::size_t>(reader.varint()));
    return numbers;
}

// Parts of the last entity in the order the hint tells; false when the hint does not fit.
bool reorderParts(ShapeBuffer& out, std::size_t firstPart, std::size_t firstCoordinate,
    std::size_t stride, const std::vector<std::size_t>& partOf)
{
    const std::size_t count = out.partSizes.size() - firstPart;
    std::vector<std::size_t> writtenAt(count, count);
    if (partOf.size() != count)
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        if (partOf[i] >= count || writtenAt[partOf[i]] != count)
            return false;
        writtenAt[partOf[i]] = i;
    }
    std::vector<std::size_t> starts(count + 1, firstCoordinate);
    for (std::size_t i = 0; i < count; ++i)
        starts[i + 1] = starts[i] + static_cast<std::size_t>(out.partSizes[firstPart + i]) * stride;
    std::vector<double> coordinates;
    coordinates.reserve(starts[count] - firstCoordinate);
    std::vector<int> sizes;
    for (std::size_t part = 0; part < count; ++part) {
        const std::size_t i = writtenAt[part];
        const double* all = out.coordinates.data();
        coordinates.insert(coordinates.end(), all + starts[i], all + starts[i + 1]);
        sizes.push_back(out.partSizes[firstPart + i]);
    }
    std::copy(coordinates.begin(), coordinates.end(),
        out.coordinates.begin() + static_cast<std::ptrdiff_t>(firstCoordinate));
    std::copy(
        sizes.begin(), sizes.end(), out.partSizes.begin() + static_cast<std::ptrdiff_t>(firstPart));
    return true;
}

// Points of the last entity as parts of the sizes the hint tells.
bool regroupPoints(ShapeBuffer& out, std::size_t firstPart, const std::vector<std::size_t>& sizes)
{
    const std::size_t points = out.partSizes.size() - firstPart;
    std::size_t sum = 0;
    for (const std::size_t size : sizes) {
        if (size > points)
            return false;
        sum += size;
    }
    if (sum != points)
        return false;
    out.partSizes.resize(firstPart);
    for (const std::size_t size : sizes)
        out.partSizes.push_back(static_cast<int>(size));
    return true;
}

} // namespace

ShapeState decodeShape(
    std::string_view blob, std::string_view hint, const ShapeLayout& layout, ShapeBuffer& out)
{
    const std::size_t firstPart = out.partSizes.size();
    const std::size_t firstCoordinate = out.coordinates.size();
    CByteReader reader(blob);
    const Header header = readHeader(reader);
    ShapeState state = ShapeState::None;
    if (header.isDamaged)
        state = ShapeState::Damaged;
    else if (header.isExtended)
        state = ShapeState::Unsupported;
    else if (!header.isEmpty)
        state = CPartReader(reader, layout, !hint.empty(), out).read();
    if (state == ShapeState::Taken && !hint.empty()) {
        const auto numbers = numbersOf(hint);
        const bool fits = layout.type == gis::EntType::Points
            ? regroupPoints(out, firstPart, numbers)
            : reorderParts(out, firstPart, firstCoordinate,
                static_cast<std::size_t>(layout.stride()), numbers);
        if (!fits) {
            out.partSizes.resize(firstPart);
            out.coordinates.resize(firstCoordinate);
            return decodeShape(blob, {}, layout, out);
        }
    }
    if (state != ShapeState::Taken) {
        out.partSizes.resize(firstPart);
        out.coordinates.resize(firstCoordinate);
    } else if (out.partSizes.size() == firstPart) {
        state = ShapeState::None;
    }
    out.partCounts.push_back(static_cast<int>(out.partSizes.size() - firstPart));
    return state;
}

ShapeLook lookAtShape(std::string_view blob)
{
    CByteReader reader(blob);
    const Header header = readHeader(reader);
    if (header.isDamaged || header.isExtended)
        return {};
    if (header.isEmpty)
        return { 0, false, false };
    const ShapeCode code = readCode(reader);
    ShapeLook look { -1, code.hasZ, code.hasM };
    if (!reader.ok())
        return look;
    if (code.base == wkb::Point || code.base == wkb::MultiPoint)
        look.kind = static_cast<int>(gis::EntType::Points);
    else if (code.base == wkb::LineString || code.base == wkb::MultiLineString)
        look.kind = static_cast<int>(gis::EntType::Lines);
    else if (code.base == wkb::Polygon || code.base == wkb::MultiPolygon)
        look.kind = static_cast<int>(gis::EntType::Polygons);
    return look;
}

} // namespace embedded::store
