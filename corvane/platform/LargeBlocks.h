// Memory in blocks, of which the large ones come in large pages.
#pragma once

#include <cstddef>
#include <new>

namespace corvane::platform {

/// The size of a large page, of which the system has some: a page is made ready at its first use, and that
/// takes far less for a large one than for hundreds of small ones in its place.
inline constexpr std::size_t largePage = std::size_t{2} << 20;

/// So many bytes are quicker in a large page even if it holds no more.
inline constexpr std::size_t worthLargePage = largePage / 8;

/// How much to reserve for so many bytes: at least a large page if they are worth one.
constexpr std::size_t BlockSize(std::size_t bytes) noexcept {
    constexpr std::size_t page = 4096;
    if (bytes < worthLargePage)
        return bytes;
    return bytes < largePage ? largePage : (bytes + page - 1) / page * page;
}

/// A block of whole large pages, of at least largePage bytes. Throws std::bad_alloc. Safe from any thread.
void* AllocateLargeBlock(std::size_t size);
void FreeLargeBlock(void* block, std::size_t size) noexcept;

/// An allocator for the standard containers that takes large pages for blocks of largePage bytes and more.
/// Items that a container adds without a value are not cleared. All of them are equal.
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
