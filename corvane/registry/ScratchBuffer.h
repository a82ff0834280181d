// A zero-filled buffer for one platform call; null instead of an exception if out of memory.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace corvane {

struct FreeDeleter {
    void operator()(void* block) const noexcept { std::free(block); }
};

template <typename T>
using ScratchBuffer = std::unique_ptr<T[], FreeDeleter>;

template <typename T>
ScratchBuffer<T> AllocateScratch(std::size_t count) noexcept {
    return ScratchBuffer<T>(static_cast<T*>(std::calloc(count, sizeof(T))));
}

} // namespace corvane
