// The two advisory locks of a file. Writers exclude each other by the first for as long as their change
// takes; the second keeps readers away for the moments in which a file is written in place.
#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/Backoff.h>

namespace corvane::os {

/// Locks the open file against other writers until it is unlocked or closed. ERROR_SHARING_VIOLATION when
/// `wait` runs out first.
ulong LockForChange(int descriptor, Backoff& wait) noexcept;

/// The same without a wait. A lock that this open file has already is a success.
ulong TryLock(int descriptor) noexcept;

void Unlock(int descriptor) noexcept;

/// The lock on a file's content, held for a scope. Readers share it, a writer in place holds it alone. A file
/// system that has no such locks is no hindrance: the lock then keeps nobody away.
class ContentLock {
public:
    enum class Kind { Shared, Exclusive };

    ContentLock() = default;
    ContentLock(const ContentLock&) = delete;
    ContentLock& operator=(const ContentLock&) = delete;
    ~ContentLock();

    /// ERROR_SHARING_VIOLATION when the lock is not free within about a second.
    ulong Take(int descriptor, Kind kind) noexcept;

    /// Whether somebody may hold the lock alone at this moment. Takes nothing.
    static bool MayBeHeldAlone(int descriptor) noexcept;

private:
    int m_descriptor = -1;
};

} // namespace corvane::os
