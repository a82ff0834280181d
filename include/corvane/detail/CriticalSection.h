// The recursive lock under ThreadLock, with the names of the Windows operations and without <windows.h>. It
// is constant-initialised, so a static lock can be taken before any constructor has run and after every
// destructor has, in whatever order a static build links them.
#pragma once

#ifndef _WIN32
#include <atomic>
#include <mutex>
#include <pthread.h>
#include <type_traits>
#endif

namespace corvane::platform {

#ifdef _WIN32

/// The memory of one critical section, which the first thread to enter initialises; CriticalSection.cpp
/// checks the sizes against the real ones.
struct CRITICAL_SECTION {
    alignas(void*) unsigned char memory[8 + 4 * sizeof(void*)] = {};
    void* once = nullptr;
};

/// A deleted section is initialised again when it is next entered.
void DeleteCriticalSection(CRITICAL_SECTION* section) noexcept;

#else

/// A thread that finds it held spins for some tens of microseconds, longer than most locks are held, before
/// it sleeps. It is not fair: the thread that released it may take it again before one that waits, which
/// saves moving it between processors.
struct CRITICAL_SECTION {
    std::mutex mutex;
    std::atomic<pthread_t> owner{};
    unsigned depth = 0; // used by the owner only
};
static_assert(std::is_trivially_destructible_v<CRITICAL_SECTION>);

constexpr void DeleteCriticalSection(CRITICAL_SECTION*) noexcept {}

#endif

constexpr void InitializeCriticalSection(CRITICAL_SECTION*) noexcept {}

void EnterCriticalSection(CRITICAL_SECTION* section) noexcept;
void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept;

} // namespace corvane::platform
