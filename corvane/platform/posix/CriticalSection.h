// A recursive lock under the platform's names. It is constant-initialised and needs no clean-up, so a static
// lock can be taken before any constructor has run and after every destructor has.
#pragma once

#include <atomic>
#include <cstdint>
#include <pthread.h>

/// Where the lock needs no code to come up, its owner's constructor is constexpr.
#define CORVANE_LOCK_CONSTEXPR constexpr

namespace corvane::platform {

/// A thread that finds it held looks again for some tens of microseconds, which is longer than most locks are
/// held, and then sleeps. It is not fair: the thread that gave it back may take it again before one that
/// waits, which saves both the way between two processors.
struct CRITICAL_SECTION {
    std::atomic<std::uint32_t> state{0}; // CriticalSection.cpp says what it tells
    std::atomic<pthread_t> owner{};
    std::uint32_t depth = 0; // the owner's alone
};

constexpr void InitializeCriticalSection(CRITICAL_SECTION*) noexcept {}
constexpr void DeleteCriticalSection(CRITICAL_SECTION*) noexcept {}

void EnterCriticalSection(CRITICAL_SECTION* section) noexcept;
void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept;

} // namespace corvane::platform
