// A recursive mutex under the platform's names. It is constant-initialised and needs no clean-up, so a static
// lock can be taken before any constructor has run and after every destructor has.
#pragma once

#include <pthread.h>

/// Where the lock needs no code to come up, its owner's constructor is constexpr.
#define CORVANE_LOCK_CONSTEXPR constexpr

namespace corvane::platform {

struct CRITICAL_SECTION {
    pthread_mutex_t mutex = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
};

constexpr void InitializeCriticalSection(CRITICAL_SECTION*) noexcept {}
constexpr void DeleteCriticalSection(CRITICAL_SECTION*) noexcept {}

inline void EnterCriticalSection(CRITICAL_SECTION* section) noexcept {
    pthread_mutex_lock(&section->mutex);
}

inline void LeaveCriticalSection(CRITICAL_SECTION* section) noexcept {
    pthread_mutex_unlock(&section->mutex);
}

} // namespace corvane::platform
