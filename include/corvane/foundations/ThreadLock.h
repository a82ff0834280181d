// The library's lock: recursive, and usable before any constructor has run.
#pragma once

#include <corvane/detail/CriticalSection.h>
#include <corvane/detail/Export.h>
#include <corvane/detail/ThreadSafety.h>
#include <corvane/foundations/ScopedResource.h>

/// A recursive lock: the thread that holds it may obtain it again and must release it as often.
class CORVANE_API CORVANE_LOCK ThreadLock {
public:
    constexpr ThreadLock() noexcept { corvane::platform::InitializeCriticalSection(&m_section); }
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;
    virtual ~ThreadLock();

    /// Waits until no other thread holds the lock.
    void Obtain() noexcept CORVANE_ACQUIRES();
    /// Undoes one Obtain.
    void Release() noexcept CORVANE_RELEASES();

private:
    corvane::platform::CRITICAL_SECTION m_section;
};

/// The policy of a scope guard that obtains a lock.
template <class Lock>
struct ThreadLockObtain {
    /// Waits for the lock.
    void operator()(Lock& lock) const noexcept CORVANE_ACQUIRES(lock) { lock.Obtain(); }
};

/// The policy of a scope guard that releases a lock.
template <class Lock>
struct ThreadLockRelease {
    /// Releases the lock.
    void operator()(Lock& lock) const noexcept CORVANE_RELEASES(lock) { lock.Release(); }
};

/// Holds a ThreadLock for a scope.
class CORVANE_LOCK_GUARD ThreadLockGuard
    : public Quillon::ScopedResource<ThreadLock&, ThreadLockRelease<ThreadLock>,
                                     ThreadLockObtain<ThreadLock>> {
public:
    /// Waits for the lock.
    explicit ThreadLockGuard(ThreadLock& lock) CORVANE_ACQUIRES(lock) : ScopedResource(lock) {}
    ThreadLockGuard(const ThreadLockGuard&) = delete;
    ThreadLockGuard& operator=(const ThreadLockGuard&) = delete;
    ~ThreadLockGuard() CORVANE_RELEASES() override {}
};
