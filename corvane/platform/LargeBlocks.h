// Memory in blocks, of which the large ones come in large pages.
#pragma once

#include <cstddef>

namespace corvane::platform {

/// The size of a large page, of which the system has some: a page is made ready at its first use, and that
/// takes far less for a large one than for hundreds of small ones in its place.
inline constexpr std::size_t largePage = std::size_t{2} << 20;

/// So many bytes are quicker in a large page even if it holds no more.
inline constexpr std::size_t worthLargePage = largePage / 8;

/// The size of a block for so many bytes: at least a large page if it is worth one.
constexpr std::size_t BlockSize(std::size_t bytes) noexcept {
    constexpr std::size_t page = 4096;
    if (bytes < worthLargePage)
        return bytes;
    return bytes < largePage ? largePage : (bytes + page - 1) / page * page;
}

/// A block, of a size that BlockSize gave or that is below a large page. Throws std::bad_alloc. Safe from any
/// thread.
void* TakeBlock(std::size_t size);

/// Gives a block of that size back.
void GiveBlockBack(void* block, std::size_t size) noexcept;

} // namespace corvane::platform
