// Prefetching of memory.
#pragma once

namespace corvane::platform {

/// Prefetches the cache line at `address`, where the compiler supports it. Never blocks or fails.
inline void Prefetch([[maybe_unused]] const void* address) noexcept {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

} // namespace corvane::platform
