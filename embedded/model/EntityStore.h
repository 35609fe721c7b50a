// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include "host/gis/Types.h"

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace embedded {

struct Box {
    double minX = 0, minY = 0, maxX = -1, maxY = -1; // empty while maxX < minX
    [[nodiscard]] bool isEmpty() const { return maxX < minX || maxY < minY; }
    void add(double x, double y);
    void add(const Box& other);
    [[nodiscard]] bool intersects(const Box& other) const;
};

/// Vertices of one part: `count` vertices of `stride` doubles (x, y, then z where there is one,
/// then m).
struct PartView {
    const double* coordinates = nullptr;
    int count = 0;
    int stride = 2;
    [[nodiscard]] double x(int i) const
    {
        return coordinates[static_cast<std::ptrdiff_t>(i) * stride];
    }
    [[nodiscard]] double y(int i) const
    {
        return coordinates[static_cast<std::ptrdiff_t>(i) * stride + 1];
    }
};

/// A drawing's point that vertices are linked to; predefined fields take their values from it.
struct LinkedPoint {
    orv::String name;
    orv::String description;
    orv::String sketch;
    std::array<orv::String, 5> photos;
};

/// The entities of a theme with their parts and vertices. Grows at its end only; taking back
/// shortens it there. Handles (`CEnt`, `CEntPart`, `CEntVert`) keep their addresses while the store
/// lives, also across undo and redo. Polygon parts are rings as in a shapefile: outer rings
/// clockwise, holes counter-clockwise, closed (first = last vertex). An entity without parts is a
/// null shape. NaN measures stand for "no measure". Thread: one writer; `snapshot` may be read by
/// another thread while the store grows or shrinks.
class EntityStore final {
public:
    EntityStore(gis::CTheme& theme, bool hasZ, bool hasM);
    EntityStore(const EntityStore&) = delete;
    EntityStore& operator=(const EntityStore&) = delete;
    ~EntityStore();

    [[nodiscard]] bool hasZ() const;
    [[nodiscard]] bool hasM() const;
    [[nodiscard]] int stride() const; // doubles a vertex: 2 + z + m

    // Building: entity, its parts, their vertices
    /// A new entity without parts. `row` must outlive it.
    gis::CEnt* addEntity(orv::CResultRow* row);
    /// A part of the last entity: room for `vertexCount` vertices (stride doubles each), to be
    /// filled by the caller.
    double* addPart(int vertexCount);
    void truncate(int entityCount);
    /// Brings back what the last `truncate` forgot (nothing was added since).
    void restore(int entityCount, int totalPartCount);
    /// Gives vertices room for measures; false (nothing done) once there are entities.
    bool addMeasures();
    /// Takes that back; nothing is done once there are entities.
    void removeMeasures();
    /// Replaces all parts while keeping the entity handles: used when geometry is read after the
    /// entities.
    void beginGeometry();
    double* addPartTo(int entityIndex, int vertexCount); // entities in ascending order

    [[nodiscard]] int entityCount() const;
    [[nodiscard]] int totalPartCount() const;
    [[nodiscard]] gis::CEnt* entity(int index) const;
    /// Entities whose handles lie at equal distances: each full run of this many, from the first.
    [[nodiscard]] static int entitiesPerBlock();
    [[nodiscard]] static int indexOf(const gis::CEnt* ent);
    [[nodiscard]] static gis::CTheme* themeOf(const gis::CEnt* ent);
    [[nodiscard]] static orv::CResultRow* rowOf(const gis::CEnt* ent);
    [[nodiscard]] int partCount(int entityIndex) const;
    [[nodiscard]] PartView part(int entityIndex, int partIndex) const;
    [[nodiscard]] gis::CEntPart* partHandle(int entityIndex, int partIndex) const;
    /// Coordinates of a part's vertex, which are also the vertex's handle; null out of range.
    [[nodiscard]] static const double* vertexOf(const gis::CEntPart* part, int index);
    [[nodiscard]] static LinkedPoint* linkedPointAt(const double* vertex);
    [[nodiscard]] std::int64_t vertexCount() const;
    [[nodiscard]] Box boxOf(int entityIndex) const;
    [[nodiscard]] Box box() const;

    // Linked points
    void linkPoint(int entityIndex, int partIndex, int vertexIndex, LinkedPoint* point);
    /// Null where none is linked.
    [[nodiscard]] LinkedPoint* linkedPoint(int entityIndex, int partIndex, int vertexIndex) const;
    [[nodiscard]] LinkedPoint* linkedPointOf(
        int entityIndex) const; // of the first vertex of the first part
    [[nodiscard]] bool hasLinkedPoints() const;

    /// A read-only copy for another thread; shares the vertices.
    [[nodiscard]] std::shared_ptr<const class EntitySnapshot> snapshot() const;
    [[nodiscard]] std::size_t sizeBytes() const;

private:
    friend class EntitySnapshot;
    struct Data;
    std::unique_ptr<Data> m_data;
};

/// Geometry of a theme as it was at one moment. Thread: any.
class EntitySnapshot final {
public:
    struct Data;
    explicit EntitySnapshot(std::shared_ptr<const Data> data);
    ~EntitySnapshot();
    [[nodiscard]] int entityCount() const;
    [[nodiscard]] gis::CEnt* entity(int index) const; // an identity to compare, not to look into
    [[nodiscard]] int partCount(int entityIndex) const;
    [[nodiscard]] PartView part(int entityIndex, int partIndex) const;
    [[nodiscard]] Box boxOf(int entityIndex) const;
    /// All boxes by entity, computed at the first call and kept.
    [[nodiscard]] const std::vector<Box>& boxes() const;

private:
    std::shared_ptr<const Data> m_data;
    mutable std::once_flag m_areBoxesMade;
    mutable std::vector<Box> m_boxes;
};

} // namespace embedded
