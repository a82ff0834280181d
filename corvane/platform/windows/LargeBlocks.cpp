#include <corvane/platform/LargeBlocks.h>

// Large pages need a privilege that few programs have.
void* corvane::platform::AllocateLargeBlock(std::size_t size) {
    return ::operator new(size);
}

void corvane::platform::FreeLargeBlock(void* block, std::size_t) noexcept {
    ::operator delete(block);
}
