// Memory for much that is made together and goes together.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace corvane {

/// Hands out pieces of a few blocks, which grow with what they have to hold and go with the pool; a single
/// piece is never given back. What is large comes in the platform's large pages. Not for two threads at once.
class MemoryPool {
public:
    MemoryPool() = default;
    MemoryPool(const MemoryPool&) = delete;
    MemoryPool& operator=(const MemoryPool&) = delete;
    ~MemoryPool();

    /// A piece of that many bytes, aligned for numbers of up to 8 bytes. Throws only for lack of memory.
    void* Take(std::size_t bytes);

    void Swap(MemoryPool& other) noexcept {
        m_blocks.swap(other.m_blocks);
        std::swap(m_free, other.m_free);
        std::swap(m_room, other.m_room);
        std::swap(m_total, other.m_total);
    }

private:
    struct Block {
        void* memory;
        std::size_t size;
    };

    void AddBlock(std::size_t least);

    std::vector<Block> m_blocks;
    char* m_free = nullptr; // in the last block
    std::size_t m_room = 0; // from there on
    std::size_t m_total = 0;
};

} // namespace corvane
