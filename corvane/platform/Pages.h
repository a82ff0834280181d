// Memory in whole pages, for blocks of many kilobytes.
#pragma once

#include <cstddef>

namespace corvane::platform {

/// From this size on, a block comes in pages of this size where the system has them: a page is made ready at
/// its first use, and that takes far less for a large one than for the hundreds of small ones in its place.
inline constexpr std::size_t largePage = std::size_t{2} << 20;

/// The size of the whole pages that have room for so many bytes.
constexpr std::size_t WholePages(std::size_t bytes) noexcept {
    const std::size_t page = bytes < largePage ? 4096 : largePage;
    return (bytes + page - 1) / page * page;
}

/// A block of whole pages. Throws std::bad_alloc. Safe from any thread.
void* TakePages(std::size_t size);

/// Gives a block back, of the same size.
void GivePagesBack(void* block, std::size_t size) noexcept;

} // namespace corvane::platform
