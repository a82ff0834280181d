#include <corvane/platform/LargeBlocks.h>

#include <cstdint>
#include <sys/mman.h>

namespace corvane {

// Maps more than needed and unmaps the excess on either side, so that the mapping begins at a large page.
void* platform::AllocateLargeBlock(std::size_t size) {
    const std::size_t mapped = size + largePage;
    void* const map = ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (map == MAP_FAILED)
        throw std::bad_alloc();
    char* const begin = static_cast<char*>(map);
    const std::size_t before = (largePage - reinterpret_cast<std::uintptr_t>(map) % largePage) % largePage;
    if (before > 0)
        ::munmap(begin, before);
    ::munmap(begin + before + size, mapped - before - size);
    ::madvise(begin + before, size, MADV_HUGEPAGE); // only a hint: small pages work as well
    return begin + before;
}

void platform::FreeLargeBlock(void* block, std::size_t size) noexcept {
    ::munmap(block, size);
}

} // namespace corvane
