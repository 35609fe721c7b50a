// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

namespace embedded {

/// Small records with addresses that never change, in blocks aligned to their size: from a record's
/// address a mask gives its block, and the block knows the owner and its first index. So a handle
/// needs no owner of its own. Records are zero at first and are never destroyed; shortening only
/// forgets them.
template <typename Record> class RecordArena final {
public:
    static constexpr std::size_t BlockBytes = 256 * 1024;

    explicit RecordArena(void* owner)
        : m_owner(owner)
    {
    }
    RecordArena(const RecordArena&) = delete;
    RecordArena& operator=(const RecordArena&) = delete;
    ~RecordArena()
    {
        for (Block* block : m_blocks)
            std::free(block);
    }

    [[nodiscard]] int size() const { return m_size; }
    void resize(int size)
    {
        while (static_cast<std::size_t>(size) > m_blocks.size() * PerBlock)
            addBlock();
        m_size = size;
    }
    [[nodiscard]] Record* at(int index) const
    {
        const auto position = static_cast<std::size_t>(index);
        return records(m_blocks[position / PerBlock]) + position % PerBlock;
    }
    [[nodiscard]] static void* ownerOf(const Record* record) { return blockOf(record)->owner; }
    [[nodiscard]] static int indexOf(const Record* record)
    {
        const Block* block = blockOf(record);
        return block->firstIndex + static_cast<int>(record - records(const_cast<Block*>(block)));
    }
    [[nodiscard]] std::size_t sizeBytes() const
    {
        return static_cast<std::size_t>(m_size) * sizeof(Record);
    }

    /// Records that lie side by side in one block.
    static constexpr std::size_t PerBlock = (BlockBytes - 64) / sizeof(Record);

private:
    struct Block {
        void* owner;
        int firstIndex;
    };
    static_assert(sizeof(Block) <= 64);

    static Record* records(Block* block)
    {
        return reinterpret_cast<Record*>(reinterpret_cast<char*>(block) + 64);
    }
    static Block* blockOf(const Record* record)
    {
        return reinterpret_cast<Block*>(reinterpret_cast<std::uintptr_t>(record)
            & ~static_cast<std::uintptr_t>(BlockBytes - 1));
    }
    void addBlock()
    {
        void* memory = std::aligned_alloc(BlockBytes, BlockBytes);
        if (!memory)
            throw std::bad_alloc();
        auto* block = new (memory) Block { m_owner, static_cast<int>(m_blocks.size() * PerBlock) };
        for (std::size_t i = 0; i < PerBlock; ++i)
            new (records(block) + i) Record {};
        m_blocks.push_back(block);
    }

    void* m_owner;
    std::vector<Block*> m_blocks;
    int m_size = 0;
};

} // namespace embedded
