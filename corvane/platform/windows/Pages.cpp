#include <corvane/platform/Pages.h>

#include <new>

// Large pages take a right here that few programs have.
void* corvane::platform::TakePages(std::size_t size) {
    return ::operator new(size);
}

void corvane::platform::GivePagesBack(void* block, std::size_t) noexcept {
    ::operator delete(block);
}
