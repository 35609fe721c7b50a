// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace embedded {

struct LinkedPoint;

/// Memory for vertices that never moves; parts lie in one piece. Never rewritten: what is forgotten
/// stays readable for snapshots until the last of them is gone.
struct VertexBlock {
    explicit VertexBlock(std::size_t doubles, int vertexStride);
    VertexBlock(const VertexBlock&) = delete;
    VertexBlock& operator=(const VertexBlock&) = delete;
    ~VertexBlock();

    std::unique_ptr<double[]> coordinates;
    std::size_t capacity;
    std::size_t used = 0; // doubles
    int stride;
    std::vector<LinkedPoint*> links; // by vertex of the block; empty: none is linked
};

/// The block that holds an address, for the one question that comes with a bare vertex; null where
/// none does. Thread: any.
const VertexBlock* vertexBlockOf(const double* coordinate);

} // namespace embedded
