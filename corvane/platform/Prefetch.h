// Memory fetched before it is needed.
#pragma once

namespace corvane::platform {

/// Has the processor bring the line of memory at `address` into its cache, where the compiler can say so.
/// Never waits, never fails.
inline void Prefetch([[maybe_unused]] const void* address) noexcept {
#ifdef __GNUC__
    __builtin_prefetch(address);
#endif
}

} // namespace corvane::platform
