// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/EntityStore.h"

#include "embedded/model/Handles.h"
#include "embedded/model/RecordArena.h"
#include "embedded/model/VertexBlock.h"

#include <algorithm>
#include <limits>

namespace embedded {

namespace {
constexpr std::size_t BlockDoubles = 32 * 1024;
}

void Box::add(double x, double y)
{
    if (isEmpty())
        *this = { x, y, x, y };
    minX = std::min(minX, x);
    minY = std::min(minY, y);
    maxX = std::max(maxX, x);
    maxY = std::max(maxY, y);
}

void Box::add(const Box& other)
{
    if (other.isEmpty())
        return;
    add(other.minX, other.minY);
    add(other.maxX, other.maxY);
}

bool Box::intersects(const Box& other) const
{
    return !isEmpty() && !other.isEmpty() && minX <= other.maxX && maxX >= other.minX
        && minY <= other.maxY && maxY >= other.minY;
}

struct EntityStore::Data {
    Data(gis::CTheme& owner, bool z, bool m)
        : theme(owner)
        , hasZ(z)
        , hasM(m)
        , stride(2 + z + m)
        , entities(&owner)
        , parts(this)
    {
    }
    gis::CTheme& theme;
    bool hasZ;
    bool hasM;
    int stride;
    RecordArena<gis::CEnt> entities;
    RecordArena<gis::CEntPart> parts;
    std::vector<std::shared_ptr<VertexBlock>> blocks;
    bool freshBlock = false; // after shortening: what snapshots read must not be written over
    bool anyLinks = false;
    mutable std::shared_ptr<const EntitySnapshot> kept;

    VertexBlock& blockFor(std::size_t doubles)
    {
        if (blocks.empty() || freshBlock
            || blocks.back()->capacity - blocks.back()->used < doubles) {
            // The first blocks are small: a library may have a thousand themes with a handful of
            // entities.
            const std::size_t usual
                = blocks.size() < 4 ? BlockDoubles / 16 << blocks.size() : BlockDoubles;
            blocks.push_back(std::make_shared<VertexBlock>(std::max(usual, doubles), stride));
            freshBlock = false;
        }
        return *blocks.back();
    }
};

struct EntitySnapshot::Data {
    struct Part {
        const double* coordinates;
        std::int32_t count;
    };
    std::vector<gis::CEnt*> entities;
    std::vector<std::int32_t> firstParts; // one more than entities
    std::vector<Part> parts;
    std::vector<std::shared_ptr<VertexBlock>> blocks;
    int stride = 2;
};

EntityStore::EntityStore(gis::CTheme& theme, bool hasZ, bool hasM)
    : m_data(std::make_unique<Data>(theme, hasZ, hasM))
{
}
EntityStore::~EntityStore() = default;

bool EntityStore::hasZ() const
{
    return m_data->hasZ;
}
bool EntityStore::hasM() const
{
    return m_data->hasM;
}
int EntityStore::stride() const
{
    return m_data->stride;
}

gis::CEnt* EntityStore::addEntity(orv::CResultRow* row)
{
    m_data->kept.reset();
    const int index = m_data->entities.size();
    m_data->entities.resize(index + 1);
    gis::CEnt* ent = m_data->entities.at(index);
    *ent = {};
    ent->row = row;
    ent->firstPart = m_data->parts.size();
    if (row)
        row->entity = ent;
    return ent;
}

double* EntityStore::addPart(int vertexCount)
{
    return addPartTo(m_data->entities.size() - 1, vertexCount);
}

double* EntityStore::addPartTo(int entityIndex, int vertexCount)
{
    m_data->kept.reset();
    gis::CEnt* ent = m_data->entities.at(entityIndex);
    const std::size_t doubles
        = static_cast<std::size_t>(vertexCount) * static_cast<std::size_t>(m_data->stride);
    VertexBlock& block = m_data->blockFor(doubles);
    const int index = m_data->parts.size();
    m_data->parts.resize(index + 1);
    if (ent->partCount == 0)
        ent->firstPart = index;
    ++ent->partCount;
    gis::CEntPart* part = m_data->parts.at(index);
    part->coordinates = block.coordinates.get() + block.used;
    part->vertexCount = vertexCount;
    part->block = static_cast<std::int32_t>(m_data->blocks.size()) - 1;
    block.used += doubles;
    return part->coordinates;
}

void EntityStore::truncate(int count)
{
    if (count >= m_data->entities.size())
        return;
    m_data->kept.reset();
    for (int i = count; i < m_data->entities.size(); ++i)
        if (orv::CResultRow* row = m_data->entities.at(i)->row)
            row->entity = nullptr;
    int partCount = m_data->parts.size();
    for (int i = m_data->entities.size() - 1; i >= count; --i)
        if (m_data->entities.at(i)->partCount > 0)
            partCount = std::min(partCount, m_data->entities.at(i)->firstPart);
    m_data->parts.resize(partCount);
    m_data->entities.resize(count);
    m_data->freshBlock = true;
}

void EntityStore::restore(int count, int partCount)
{
    m_data->kept.reset();
    const int first = m_data->entities.size();
    m_data->entities.resize(count);
    m_data->parts.resize(partCount);
    for (int i = first; i < count; ++i) {
        gis::CEnt* ent = m_data->entities.at(i);
        if (ent->row)
            ent->row->entity = ent;
    }
}

void EntityStore::beginGeometry()
{
    m_data->kept.reset();
    for (int i = 0; i < m_data->entities.size(); ++i) {
        m_data->entities.at(i)->firstPart = 0;
        m_data->entities.at(i)->partCount = 0;
    }
    m_data->parts.resize(0);
    m_data->freshBlock = true;
}

bool EntityStore::addMeasures()
{
    if (entityCount() > 0)
        return false;
    m_data->hasM = true;
    m_data->stride = 2 + m_data->hasZ + 1;
    m_data->freshBlock = true;
    return true;
}

void EntityStore::removeMeasures()
{
    if (entityCount() > 0)
        return;
    m_data->hasM = false;
    m_data->stride = 2 + m_data->hasZ;
    m_data->freshBlock = true;
}

int EntityStore::entityCount() const
{
    return m_data->entities.size();
}
int EntityStore::totalPartCount() const
{
    return m_data->parts.size();
}

gis::CEnt* EntityStore::entity(int index) const
{
    return index >= 0 && index < m_data->entities.size() ? m_data->entities.at(index) : nullptr;
}
int EntityStore::indexOf(const gis::CEnt* ent)
{
    return ent ? RecordArena<gis::CEnt>::indexOf(ent) : -1;
}
gis::CTheme* EntityStore::themeOf(const gis::CEnt* ent)
{
    return ent ? static_cast<gis::CTheme*>(RecordArena<gis::CEnt>::ownerOf(ent)) : nullptr;
}
orv::CResultRow* EntityStore::rowOf(const gis::CEnt* ent)
{
    return ent ? ent->row : nullptr;
}
int EntityStore::entitiesPerBlock()
{
    return static_cast<int>(RecordArena<gis::CEnt>::PerBlock);
}

int EntityStore::partCount(int entityIndex) const
{
    return m_data->entities.at(entityIndex)->partCount;
}

gis::CEntPart* EntityStore::partHandle(int entityIndex, int partIndex) const
{
    const gis::CEnt* ent = entity(entityIndex);
    return ent && partIndex >= 0 && partIndex < ent->partCount
        ? m_data->parts.at(ent->firstPart + partIndex)
        : nullptr;
}

PartView EntityStore::part(int entityIndex, int partIndex) const
{
    const gis::CEntPart* part = partHandle(entityIndex, partIndex);
    return part ? PartView { part->coordinates, part->vertexCount, m_data->stride } : PartView {};
}

const double* EntityStore::vertexOf(const gis::CEntPart* part, int index)
{
    if (!part || index < 0 || index >= part->vertexCount)
        return nullptr;
    const auto* data = static_cast<const Data*>(RecordArena<gis::CEntPart>::ownerOf(part));
    return part->coordinates + static_cast<std::ptrdiff_t>(index) * data->stride;
}

std::int64_t EntityStore::vertexCount() const
{
    std::int64_t count = 0;
    for (int i = 0; i < m_data->parts.size(); ++i)
        count += m_data->parts.at(i)->vertexCount;
    return count;
}

namespace {

void addPartTo(Box& box, const PartView& part)
{
    for (int i = 0; i < part.count; ++i)
        box.add(part.x(i), part.y(i));
}

} // namespace

Box EntityStore::boxOf(int entityIndex) const
{
    Box box;
    for (int p = 0; p < partCount(entityIndex); ++p)
        embedded::addPartTo(box, part(entityIndex, p));
    return box;
}

Box EntityStore::box() const
{
    Box box;
    for (int i = 0; i < entityCount(); ++i)
        box.add(boxOf(i));
    return box;
}

void EntityStore::linkPoint(int entityIndex, int partIndex, int vertexIndex, LinkedPoint* point)
{
    const gis::CEntPart* part = partHandle(entityIndex, partIndex);
    if (!part || vertexIndex < 0 || vertexIndex >= part->vertexCount)
        return;
    VertexBlock& block = *m_data->blocks[static_cast<std::size_t>(part->block)];
    if (block.links.empty())
        block.links.resize(block.capacity / static_cast<std::size_t>(block.stride));
    const auto first = static_cast<std::size_t>(part->coordinates - block.coordinates.get());
    block.links[first / static_cast<std::size_t>(block.stride)
        + static_cast<std::size_t>(vertexIndex)]
        = point;
    m_data->anyLinks = true;
}

LinkedPoint* EntityStore::linkedPointAt(const double* vertex)
{
    const VertexBlock* block = vertex ? vertexBlockOf(vertex) : nullptr;
    if (!block || block->links.empty())
        return nullptr;
    return block->links[static_cast<std::size_t>(vertex - block->coordinates.get())
        / static_cast<std::size_t>(block->stride)];
}

LinkedPoint* EntityStore::linkedPoint(int entityIndex, int partIndex, int vertexIndex) const
{
    return m_data->anyLinks
        ? linkedPointAt(vertexOf(partHandle(entityIndex, partIndex), vertexIndex))
        : nullptr;
}

LinkedPoint* EntityStore::linkedPointOf(int entityIndex) const
{
    return linkedPoint(entityIndex, 0, 0);
}

bool EntityStore::hasLinkedPoints() const
{
    return m_data->anyLinks;
}

std::shared_ptr<const EntitySnapshot> EntityStore::snapshot() const
{
    if (m_data->kept)
        return m_data->kept;
    auto copy = std::make_shared<EntitySnapshot::Data>();
    copy->stride = m_data->stride;
    copy->blocks = m_data->blocks;
    const int count = entityCount();
    copy->entities.reserve(static_cast<std::size_t>(count));
    copy->firstParts.reserve(static_cast<std::size_t>(count) + 1);
    copy->parts.reserve(static_cast<std::size_t>(m_data->parts.size()));
    for (int i = 0; i < count; ++i) {
        gis::CEnt* ent = m_data->entities.at(i);
        copy->entities.push_back(ent);
        copy->firstParts.push_back(static_cast<std::int32_t>(copy->parts.size()));
        for (int p = 0; p < ent->partCount; ++p) {
            const gis::CEntPart* part = m_data->parts.at(ent->firstPart + p);
            copy->parts.push_back({ part->coordinates, part->vertexCount });
        }
    }
    copy->firstParts.push_back(static_cast<std::int32_t>(copy->parts.size()));
    m_data->kept = std::make_shared<const EntitySnapshot>(std::move(copy));
    return m_data->kept;
}

std::size_t EntityStore::sizeBytes() const
{
    std::size_t bytes = m_data->entities.sizeBytes() + m_data->parts.sizeBytes();
    for (const auto& block : m_data->blocks)
        bytes += block->capacity * sizeof(double) + block->links.capacity() * sizeof(LinkedPoint*);
    return bytes;
}

EntitySnapshot::EntitySnapshot(std::shared_ptr<const Data> data)
    : m_data(std::move(data))
{
}
EntitySnapshot::~EntitySnapshot() = default;

const std::vector<Box>& EntitySnapshot::boxes() const
{
    std::call_once(m_areBoxesMade, [this] {
        m_boxes.reserve(static_cast<std::size_t>(entityCount()));
        for (int i = 0; i < entityCount(); ++i)
            m_boxes.push_back(boxOf(i));
    });
    return m_boxes;
}

int EntitySnapshot::entityCount() const
{
    return static_cast<int>(m_data->entities.size());
}
gis::CEnt* EntitySnapshot::entity(int index) const
{
    return m_data->entities[static_cast<std::size_t>(index)];
}
int EntitySnapshot::partCount(int entityIndex) const
{
    const auto i = static_cast<std::size_t>(entityIndex);
    return m_data->firstParts[i + 1] - m_data->firstParts[i];
}
PartView EntitySnapshot::part(int entityIndex, int partIndex) const
{
    const auto first
        = static_cast<std::size_t>(m_data->firstParts[static_cast<std::size_t>(entityIndex)]);
    const Data::Part& part = m_data->parts[first + static_cast<std::size_t>(partIndex)];
    return { part.coordinates, part.count, m_data->stride };
}
Box EntitySnapshot::boxOf(int entityIndex) const
{
    Box box;
    for (int p = 0; p < partCount(entityIndex); ++p)
        addPartTo(box, part(entityIndex, p));
    return box;
}

} // namespace embedded
