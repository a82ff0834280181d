// Memory for the tables of one load, in a few large blocks.
#pragma once

#include <corvane/platform/LargeBlocks.h>

#include <algorithm>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace corvane {

/// A monotonic allocator: hands out parts of a few growing blocks, which are freed with the arena; a single
/// allocation is never freed. Not thread-safe.
class Arena {
public:
    /// Allocates that many bytes, aligned for 64-bit integers. Throws only std::bad_alloc.
    void* Allocate(std::size_t bytes) {
        const std::size_t words = (bytes + sizeof(Word) - 1) / sizeof(Word);
        if (m_blocks.empty() || m_blocks.back().capacity() - m_blocks.back().size() < words)
            AddBlock(words * sizeof(Word));
        Block& block = m_blocks.back();
        block.resize(block.size() + words);
        return block.data() + block.size() - words;
    }

private:
    using Word = std::uint64_t;
    using Block = std::vector<Word, platform::LargeBlockAllocator<Word>>;

    // As large as all blocks before it, so that there are few of them, up to the size of a large page.
    void AddBlock(std::size_t least) {
        constexpr std::size_t smallest = 4096;
        const std::size_t ordinary = std::clamp(m_total, smallest, platform::largePageThreshold);
        const std::size_t size = platform::BlockSize(std::max(least, ordinary));
        Block block;
        block.reserve(size / sizeof(Word));
        m_blocks.push_back(std::move(block));
        m_total += size;
    }

    std::vector<Block> m_blocks;
    std::size_t m_total = 0; // bytes
};

/// Allocates from an arena, or without one as LargeBlockAllocator does. A copy of a container does not use
/// the arena; a moved container keeps its memory.
template <class T>
class ArenaAllocator : public platform::LargeBlockAllocator<T> {
public:
    using propagate_on_container_move_assignment = std::true_type;
    using propagate_on_container_swap = std::true_type;

    ArenaAllocator() = default;
    explicit ArenaAllocator(Arena* arena) noexcept : m_arena(arena) {}
    template <class Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers make one of another so
    ArenaAllocator(const ArenaAllocator<Other>& other) noexcept : m_arena(other.GetArena()) {}

    Arena* GetArena() const noexcept { return m_arena; }
    ArenaAllocator select_on_container_copy_construction() const noexcept { return {}; }

    T* allocate(std::size_t count) {
        return m_arena ? static_cast<T*>(m_arena->Allocate(count * sizeof(T))) : Heap().allocate(count);
    }
    void deallocate(T* items, std::size_t count) noexcept {
        if (!m_arena)
            Heap().deallocate(items, count);
    }

    friend bool operator==(ArenaAllocator a, ArenaAllocator b) noexcept { return a.m_arena == b.m_arena; }
    friend bool operator!=(ArenaAllocator a, ArenaAllocator b) noexcept { return a.m_arena != b.m_arena; }

private:
    using Heap = platform::LargeBlockAllocator<T>;

    Arena* m_arena = nullptr;
};

} // namespace corvane
