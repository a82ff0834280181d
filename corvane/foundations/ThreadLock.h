// The library's lock: recursive, and usable before any constructor has run.
#pragma once

#include <corvane/foundations/Export.h>
#include <corvane/foundations/ScopedResource.h>
#include <corvane/platform/CriticalSection.h>

/// A recursive lock: the thread that holds it may obtain it again and must release it as often.
class CORVANE_API ThreadLock {
public:
    constexpr ThreadLock() noexcept { corvane::platform::InitializeCriticalSection(&m_section); }
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;
    virtual ~ThreadLock();

    /// Waits until no other thread holds the lock.
    void Obtain() noexcept;
    /// Gives back what Obtain took, once.
    void Release() noexcept;

private:
    corvane::platform::CRITICAL_SECTION m_section;
};

/// A scope guard's policy: obtains a lock.
template <class Lock>
struct ThreadLockObtain {
    /// Waits for the lock.
    void operator()(Lock& lock) const noexcept { lock.Obtain(); }
};

/// A scope guard's policy: releases a lock.
template <class Lock>
struct ThreadLockRelease {
    /// Gives the lock back.
    void operator()(Lock& lock) const noexcept { lock.Release(); }
};

/// Holds a ThreadLock for the length of a scope.
using ThreadLockGuard =
    Quillon::ScopedResource<ThreadLock&, ThreadLockRelease<ThreadLock>, ThreadLockObtain<ThreadLock>>;
