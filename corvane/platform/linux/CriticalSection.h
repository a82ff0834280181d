// A recursive lock under the platform's names. It is constant-initialised and needs no clean-up, so a static
// lock can be taken before any constructor has run and after every destructor has.
#pragma once

#include <atomic>
#include <mutex>
#include <pthread.h>
#include <type_traits>

namespace corvane::platform {

/// A thread that finds it held tries again for some tens of microseconds, which is longer than most locks are
/// held, and then sleeps. It is not fair: the thread that released it may take it again before one that
/// waits, which saves both the way between two processors.
struct CRITICAL_SECTION {
    std::mutex mutex;
    std::atomic<pthread_t> owner{};
    unsigned depth = 0; // the owner's alone
};
static_assert(std::is_trivially_destructible_v<CRITICAL_SECTION>);

constexpr void InitializeCriticalSection(CRITICAL_SECTION*) noexcept {}
constexpr void DeleteCriticalSection(CRITICAL_SECTION*) noexcept {}

void EnterCriticalSection(CRITICAL_SECTION* section) noexcept;
void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept;

} // namespace corvane::platform
