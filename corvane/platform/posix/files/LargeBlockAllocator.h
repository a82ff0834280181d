// Large pages for the standard containers.
#pragma once

#include <corvane/platform/LargeBlocks.h>

#include <cstddef>

namespace corvane::posix {

/// An allocator whose memory, from the size of a large page on, comes in large pages. For less a large page
/// would be too much: a container may have reserved most of it for nothing. All of them are equal.
template <typename T>
class LargeBlockAllocator {
public:
    using value_type = T;

    LargeBlockAllocator() = default;
    template <typename Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers make one of another so
    LargeBlockAllocator(const LargeBlockAllocator<Other>&) noexcept {}

    T* allocate(std::size_t count) { return static_cast<T*>(platform::TakeBlock(SizeFor(count))); }
    void deallocate(T* items, std::size_t count) noexcept { platform::GiveBlockBack(items, SizeFor(count)); }

    friend bool operator==(LargeBlockAllocator, LargeBlockAllocator) noexcept { return true; }
    friend bool operator!=(LargeBlockAllocator, LargeBlockAllocator) noexcept { return false; }

private:
    static std::size_t SizeFor(std::size_t count) noexcept {
        const std::size_t bytes = count * sizeof(T);
        return bytes < platform::largePage ? bytes : platform::BlockSize(bytes);
    }
};

} // namespace corvane::posix
