// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#include "embedded/model/VertexBlock.h"

#include <map>
#include <mutex>
#include <shared_mutex>

namespace embedded {

namespace {

/// All blocks of the process by their first address.
struct Registry {
    std::shared_mutex mutex;
    std::map<const double*, const VertexBlock*, std::less<>> blocks;
};

Registry& registry()
{
    static Registry blocks;
    return blocks;
}

} // namespace

VertexBlock::VertexBlock(std::size_t doubles, int vertexStride)
    : coordinates(new double[doubles])
    , capacity(doubles)
    , stride(vertexStride)
{
    const std::unique_lock lock(registry().mutex);
    registry().blocks.emplace(coordinates.get(), this);
}

VertexBlock::~VertexBlock()
{
    const std::unique_lock lock(registry().mutex);
    registry().blocks.erase(coordinates.get());
}

const VertexBlock* vertexBlockOf(const double* coordinate)
{
    const std::shared_lock lock(registry().mutex);
    auto after = registry().blocks.upper_bound(coordinate);
    if (after == registry().blocks.begin())
        return nullptr;
    const VertexBlock* block = std::prev(after)->second;
    return coordinate < block->coordinates.get() + block->capacity ? block : nullptr;
}

} // namespace embedded
