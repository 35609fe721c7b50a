// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ShpWriter.h"

#include "embedded/shapefile/ShpFormat.h"

#include <bit>
#include <cmath>
#include <limits>

namespace embedded {

namespace {

/// What readers with 32-bit offsets can still open.
constexpr std::uint64_t LongestFile = std::numeric_limits<std::int32_t>::max();

class Bytes final {
public:
    void big32(std::int64_t value) { put(static_cast<std::uint32_t>(value), true); }
    void little32(std::int64_t value) { put(static_cast<std::uint32_t>(value), false); }
    void number(double value)
    {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        char bytes[8];
        for (int i = 0; i < 8; ++i)
            bytes[i] = static_cast<char>(bits >> (8 * i) & 0xFF);
        m_bytes.append(bytes, 8);
    }
    void clear() { m_bytes.clear(); }
    [[nodiscard]] const std::string& text() const { return m_bytes; }

private:
    void put(std::uint32_t value, bool isBig)
    {
        char bytes[4];
        for (int i = 0; i < 4; ++i)
            bytes[isBig ? 3 - i : i] = static_cast<char>(value >> (8 * i) & 0xFF);
        m_bytes.append(bytes, 4);
    }
    std::string m_bytes;
};

struct Range {
    double lowest = std::numeric_limits<double>::infinity();
    double highest = -std::numeric_limits<double>::infinity();
    void add(double value)
    {
        if (value < lowest)
            lowest = value;
        if (value > highest)
            highest = value;
    }
    [[nodiscard]] double low() const { return lowest <= highest ? lowest : 0.0; }
    [[nodiscard]] double high() const { return lowest <= highest ? highest : 0.0; }
};

struct Extent {
    Range x;
    Range y;
    Range z;
    Range m;
};

class ShapeWriter final {
public:
    ShapeWriter(const EntityStore& entities, const ShapeLayout& layout)
        : m_entities(entities)
        , m_layout(layout)
        , m_family(shp::familyOf(layout.type))
        , m_zAt(entities.hasZ() ? 2 : -1)
        , m_mAt(entities.hasM() ? (entities.hasZ() ? 3 : 2) : -1)
    {
    }

    /// The content of an entity's record.
    const std::string& record(int entity)
    {
        m_out.clear();
        const int parts = m_entities.partCount(entity);
        std::int64_t vertices = 0;
        for (int part = 0; part < parts; ++part)
            vertices += m_entities.part(entity, part).count;
        const bool isUsable = isFinite(entity, parts);
        if (vertices == 0 || !isUsable) {
            m_unusable += isUsable ? 0 : 1;
            m_out.little32(shp::Null);
            return m_out.text();
        }
        m_out.little32(m_layout.type);
        if (m_family == shp::Point)
            writePoint(m_entities.part(entity, 0));
        else
            writeMany(entity, parts, vertices);
        return m_out.text();
    }

    [[nodiscard]] std::string header(std::uint64_t fileBytes) const
    {
        Bytes bytes;
        bytes.big32(shp::FileCode);
        for (int i = 0; i < 5; ++i)
            bytes.big32(0);
        bytes.big32(static_cast<std::int64_t>(fileBytes / 2));
        bytes.little32(shp::Version);
        bytes.little32(m_layout.type);
        for (const double value :
            { m_extent.x.low(), m_extent.y.low(), m_extent.x.high(), m_extent.y.high(),
                m_extent.z.low(), m_extent.z.high(), m_extent.m.low(), m_extent.m.high() })
            bytes.number(value);
        return bytes.text();
    }

    [[nodiscard]] std::int64_t unusable() const { return m_unusable; }

private:
    /// Readers take what is no number for a damaged file.
    [[nodiscard]] bool isFinite(int entity, int parts) const
    {
        for (int p = 0; p < parts; ++p) {
            const PartView part = m_entities.part(entity, p);
            for (int i = 0; i < part.count; ++i)
                if (!std::isfinite(part.x(i)) || !std::isfinite(part.y(i))
                    || (m_layout.hasZ && !std::isfinite(z(part, i))))
                    return false;
        }
        return true;
    }
    [[nodiscard]] double z(const PartView& part, int i) const
    {
        return m_zAt < 0 ? 0.0 : part.coordinates[std::ptrdiff_t { i } * part.stride + m_zAt];
    }
    [[nodiscard]] double m(const PartView& part, int i) const
    {
        const double measure = m_mAt < 0
            ? std::numeric_limits<double>::quiet_NaN()
            : part.coordinates[std::ptrdiff_t { i } * part.stride + m_mAt];
        return std::isfinite(measure) ? measure : shp::NoMeasure;
    }
    void addTo(Extent& extent, const PartView& part, int i) const
    {
        extent.x.add(part.x(i));
        extent.y.add(part.y(i));
        if (m_layout.hasZ)
            extent.z.add(z(part, i));
        if (m_layout.hasM && m(part, i) > shp::NoMeasureLimit)
            extent.m.add(m(part, i));
    }

    void writePoint(const PartView& part)
    {
        addTo(m_extent, part, 0);
        m_out.number(part.x(0));
        m_out.number(part.y(0));
        if (m_layout.hasZ)
            m_out.number(z(part, 0));
        if (m_layout.hasZ || m_layout.hasM)
            m_out.number(m_layout.hasM ? m(part, 0) : shp::NoMeasure);
    }

    void writeMany(int entity, int parts, std::int64_t vertices)
    {
        Extent extent;
        for (int p = 0; p < parts; ++p) {
            const PartView part = m_entities.part(entity, p);
            for (int i = 0; i < part.count; ++i)
                addTo(extent, part, i);
        }
        for (const double value :
            { extent.x.low(), extent.y.low(), extent.x.high(), extent.y.high() })
            m_out.number(value);
        if (m_family != shp::MultiPoint)
            m_out.little32(parts);
        m_out.little32(vertices);
        std::int64_t start = 0;
        for (int p = 0; p < parts && m_family != shp::MultiPoint; ++p) {
            m_out.little32(start);
            start += m_entities.part(entity, p).count;
        }
        for (int p = 0; p < parts; ++p) {
            const PartView part = m_entities.part(entity, p);
            for (int i = 0; i < part.count; ++i) {
                m_out.number(part.x(i));
                m_out.number(part.y(i));
            }
        }
        if (m_layout.hasZ)
            writeOrdinates(entity, parts, extent.z, &ShapeWriter::z);
        if (m_layout.hasM)
            writeOrdinates(entity, parts, extent.m, &ShapeWriter::m);
        merge(m_extent.x, extent.x);
        merge(m_extent.y, extent.y);
        merge(m_extent.z, extent.z);
        merge(m_extent.m, extent.m);
    }

    void writeOrdinates(int entity, int parts, const Range& range,
        double (ShapeWriter::*ordinate)(const PartView&, int) const)
    {
        m_out.number(range.low());
        m_out.number(range.high());
        for (int p = 0; p < parts; ++p) {
            const PartView part = m_entities.part(entity, p);
            for (int i = 0; i < part.count; ++i)
                m_out.number((this->*ordinate)(part, i));
        }
    }

    static void merge(Range& range, const Range& other)
    {
        if (other.lowest > other.highest)
            return;
        range.add(other.lowest);
        range.add(other.highest);
    }

    const EntityStore& m_entities;
    ShapeLayout m_layout;
    std::int32_t m_family;
    int m_zAt;
    int m_mAt;
    Extent m_extent;
    Bytes m_out;
    std::int64_t m_unusable = 0;
};

bool hasSeveralVertices(const EntityStore& entities)
{
    for (int i = 0; i < entities.entityCount(); ++i)
        if (entities.partCount(i) > 1
            || (entities.partCount(i) == 1 && entities.part(i, 0).count > 1))
            return true;
    return false;
}

void reportCoordinate(Report& report, FindingCode code, const char* which)
{
    Finding finding;
    finding.code = code;
    // The user asked for these coordinates.
    finding.severity = FindingSeverity::Note;
    finding.detail = which;
    report.add(std::move(finding));
}

} // namespace

ShapeLayout shapeLayout(gis::CTheme& theme, ExportCoordinates coordinates, Report& report)
{
    const EntityStore& entities = theme.geometry();
    ShapeLayout layout;
    layout.hasZ = coordinates == ExportCoordinates::AsTheme ? entities.hasZ()
                                                            : coordinates == ExportCoordinates::XYZ;
    layout.hasM = entities.hasM() && coordinates != ExportCoordinates::XY;
    if (entities.hasZ() && !layout.hasZ)
        reportCoordinate(report, FindingCode::CoordinateDropped, "Z");
    if (entities.hasM() && !layout.hasM)
        reportCoordinate(report, FindingCode::CoordinateDropped, "M");
    if (!entities.hasZ() && layout.hasZ)
        reportCoordinate(report, FindingCode::CoordinateAdded, "Z");
    std::int32_t family = static_cast<std::int32_t>(theme.type);
    if (family == shp::Point && hasSeveralVertices(entities))
        family = shp::MultiPoint;
    layout.type = family + (layout.hasZ ? 10 : (layout.hasM ? 20 : 0));
    return layout;
}

std::int64_t writeShapes(const EntityStore& entities, const ShapeLayout& layout, OutputFile& shp,
    OutputFile& shx, const std::atomic<bool>& stop, std::atomic<std::int64_t>& done)
{
    ShapeWriter writer(entities, layout);
    shp.write(writer.header(0));
    shx.write(writer.header(0));
    Bytes header;
    for (int i = 0; i < entities.entityCount() && shp.ok() && shx.ok() && !stop; ++i) {
        const std::string& content = writer.record(i);
        const std::uint64_t offset = shp.sizeBytes();
        if (offset + shp::RecordHeaderBytes + content.size() > LongestFile) {
            shp.fail("more than 2 GiB of shapes");
            return writer.unusable();
        }
        header.clear();
        header.big32(i + 1);
        header.big32(static_cast<std::int64_t>(content.size() / 2));
        shp.write(header.text());
        shp.write(content);
        header.clear();
        header.big32(static_cast<std::int64_t>(offset / 2));
        header.big32(static_cast<std::int64_t>(content.size() / 2));
        shx.write(header.text());
        ++done;
    }
    shp.patchStart(writer.header(shp.sizeBytes()));
    shx.patchStart(writer.header(shx.sizeBytes()));
    return writer.unusable();
}

} // namespace embedded
