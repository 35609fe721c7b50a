// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "embedded/shapefile/ShpFile.h"

#include <cstdint>

namespace embedded {

/// Why a record gives no shape.
enum class ShapeFault {
    None,
    ImpossibleLength,
    Cut,
    ImpossibleCounts,
    ImpossibleParts,
    UnusableCoordinates, // NaN or infinite
    OtherType, // than the file's
};

/// Where the parts of one shape lie in a record. Points: one part for each.
class ShapeView final {
public:
    /// A null shape, and a shape without vertices, have no parts and no fault.
    [[nodiscard]] static ShapeFault read(
        const ShpFile& file, const ShpRecord& record, ShapeView& shape);

    [[nodiscard]] int partCount() const { return m_partCount; }
    [[nodiscard]] int vertexCount() const { return m_vertexCount; }
    /// First vertex of a part and the one after its last.
    [[nodiscard]] int partStart(int part) const;
    [[nodiscard]] int partEnd(int part) const { return partStart(part + 1); }
    [[nodiscard]] double x(int vertex) const
    {
        return shp::littleDouble(m_points + 16 * at(vertex));
    }
    [[nodiscard]] double y(int vertex) const
    {
        return shp::littleDouble(m_points + 16 * at(vertex) + 8);
    }
    /// 0 where the shape has no heights.
    [[nodiscard]] double z(int vertex) const
    {
        return m_heights ? shp::littleDouble(m_heights + 8 * at(vertex)) : 0.0;
    }
    /// NaN where there is no measure.
    [[nodiscard]] double m(int vertex) const;
    [[nodiscard]] bool hasRealMeasure() const;

private:
    [[nodiscard]] static std::size_t at(int vertex) { return static_cast<std::size_t>(vertex); }
    [[nodiscard]] bool partsAreSound() const;
    [[nodiscard]] bool coordinatesAreUsable() const;
    void placePoint(const unsigned char* content, std::int32_t type, std::uint32_t sizeBytes);
    void placeMany(const unsigned char* content, std::int32_t type, std::uint32_t sizeBytes);

    int m_partCount = 0;
    int m_vertexCount = 0;
    const unsigned char* m_partStarts = nullptr; // null: each vertex is a part
    const unsigned char* m_points = nullptr;
    const unsigned char* m_heights = nullptr;
    const unsigned char* m_measures = nullptr;
};

} // namespace embedded
