// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/shapefile/ShapeView.h"

#include <cmath>
#include <limits>

namespace embedded {

ShapeFault ShapeView::read(const ShpFile& file, const ShpRecord& record, ShapeView& shape)
{
    shape = ShapeView();
    if (record.state == ShpRecordState::Impossible)
        return ShapeFault::ImpossibleLength;
    if (record.state == ShpRecordState::Cut)
        return ShapeFault::Cut;
    const unsigned char* content = file.content(record);
    const std::int32_t type = shp::little32(content);
    if (type == shp::Null)
        return ShapeFault::None;
    if (type != file.shapeType())
        return ShapeFault::OtherType;
    const ShapeSize stated = statedShapeSize(content, record.sizeBytes);
    if (stated.smallest < 0 || stated.smallest > record.sizeBytes)
        return ShapeFault::ImpossibleCounts;
    if (shp::familyOf(type) == shp::Point)
        shape.placePoint(content, type, record.sizeBytes);
    else
        shape.placeMany(content, type, record.sizeBytes);
    ShapeFault fault = ShapeFault::None;
    if (!shape.partsAreSound())
        fault = ShapeFault::ImpossibleParts;
    else if (!shape.coordinatesAreUsable())
        fault = ShapeFault::UnusableCoordinates;
    if (fault != ShapeFault::None)
        shape = ShapeView();
    return fault;
}

void ShapeView::placePoint(const unsigned char* content, std::int32_t type, std::uint32_t sizeBytes)
{
    m_partCount = 1;
    m_vertexCount = 1;
    m_points = content + 4;
    if (shp::hasZ(type)) {
        m_heights = content + 20;
        m_measures = sizeBytes >= 36 ? content + 28 : nullptr;
    } else if (shp::isMType(type)) {
        m_measures = content + 20;
    }
}

void ShapeView::placeMany(const unsigned char* content, std::int32_t type, std::uint32_t sizeBytes)
{
    const bool hasParts = shp::familyOf(type) != shp::MultiPoint;
    m_vertexCount = shp::little32(content + (hasParts ? 40 : 36));
    m_partCount = hasParts ? shp::little32(content + 36) : m_vertexCount;
    const unsigned char* next = content + (hasParts ? 44 : 40);
    if (hasParts) {
        m_partStarts = next;
        next += 4 * at(m_partCount);
    }
    m_points = next;
    next += 16 * at(m_vertexCount);
    const std::size_t ordinates = 16 + 8 * at(m_vertexCount); // after their lowest and highest
    if (shp::hasZ(type)) {
        m_heights = next + 16;
        next += ordinates;
    }
    const bool mayHaveMeasures = shp::hasZ(type) || shp::isMType(type);
    const auto used = static_cast<std::size_t>(next - content);
    if (mayHaveMeasures && used + ordinates <= sizeBytes)
        m_measures = next + 16;
    if (m_vertexCount == 0)
        m_partCount = 0;
}

int ShapeView::partStart(int part) const
{
    if (part >= m_partCount)
        return m_vertexCount;
    return m_partStarts ? shp::little32(m_partStarts + 4 * at(part)) : part;
}

bool ShapeView::partsAreSound() const
{
    if (m_vertexCount == 0 || !m_partStarts)
        return true;
    if (m_partCount == 0 || partStart(0) != 0)
        return false;
    for (int part = 0; part < m_partCount; ++part)
        if (partStart(part) < 0 || partStart(part) > partEnd(part))
            return false;
    return true;
}

bool ShapeView::coordinatesAreUsable() const
{
    for (int vertex = 0; vertex < m_vertexCount; ++vertex)
        if (!std::isfinite(x(vertex)) || !std::isfinite(y(vertex)))
            return false;
    return true;
}

double ShapeView::m(int vertex) const
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (!m_measures)
        return none;
    const double measure = shp::littleDouble(m_measures + 8 * at(vertex));
    return std::isfinite(measure) && measure >= shp::NoMeasureLimit ? measure : none;
}

bool ShapeView::hasRealMeasure() const
{
    if (!m_measures)
        return false;
    for (int vertex = 0; vertex < m_vertexCount; ++vertex)
        if (!std::isnan(m(vertex)))
            return true;
    return false;
}

} // namespace embedded
