// Allocates memory, large blocks in large (huge) pages.
#pragma once

#include <cstddef>
#include <new>

namespace corvane::platform {

/// The size of a large page. A page fault is taken at the first use of each page: one large page costs far
/// less than the hundreds of small ones that it replaces.
inline constexpr std::size_t largePage = std::size_t{2} << 20;

/// From this size on, a block is faster in a large page even if it fills only a part of it.
inline constexpr std::size_t largePageThreshold = largePage / 8;

/// The size to allocate for that many bytes: at least a large page from the threshold on.
constexpr std::size_t BlockSize(std::size_t bytes) noexcept {
    constexpr std::size_t page = 4096;
    if (bytes < largePageThreshold)
        return bytes;
    return bytes < largePage ? largePage : (bytes + page - 1) / page * page;
}

/// Allocates at least largePage bytes in large pages. Throws std::bad_alloc; thread-safe.
void* AllocateLargeBlock(std::size_t size);
void FreeLargeBlock(void* block, std::size_t size) noexcept;

/// An allocator for the standard containers that uses large pages from largePage bytes on. Value-initialized
/// items are left uninitialized. Stateless: all instances are equal.
template <class T>
class LargeBlockAllocator {
public:
    using value_type = T;

    LargeBlockAllocator() = default;
    template <class Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers make one of another so
    LargeBlockAllocator(const LargeBlockAllocator<Other>&) noexcept {}

    T* allocate(std::size_t count) {
        const std::size_t bytes = count * sizeof(T);
        return static_cast<T*>(bytes < largePage ? ::operator new(bytes)
                                                 : AllocateLargeBlock(BlockSize(bytes)));
    }
    void deallocate(T* items, std::size_t count) noexcept {
        const std::size_t bytes = count * sizeof(T);
        if (bytes < largePage)
            ::operator delete(items);
        else
            FreeLargeBlock(items, BlockSize(bytes));
    }
    template <class Item>
    void construct(Item* item) noexcept {
        ::new (static_cast<void*>(item)) Item;
    }

    friend bool operator==(LargeBlockAllocator, LargeBlockAllocator) noexcept { return true; }
    friend bool operator!=(LargeBlockAllocator, LargeBlockAllocator) noexcept { return false; }
};

} // namespace corvane::platform
