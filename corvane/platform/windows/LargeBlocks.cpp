#include <corvane/platform/LargeBlocks.h>

#include <new>

// Large pages take a right here that few programs have.
void* corvane::platform::TakeBlock(std::size_t size) {
    return ::operator new(size);
}

void corvane::platform::GiveBlockBack(void* block, std::size_t) noexcept {
    ::operator delete(block);
}
