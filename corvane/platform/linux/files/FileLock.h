// The two advisory locks of a file. Writers hold the first for the whole of their change; the second keeps
// readers away while a file is overwritten in place.
#pragma once

#include <corvane/foundations/WideString.h>

namespace corvane::os {

/// Locks the open file against other writers until it is unlocked or closed. Does not wait:
/// ERROR_SHARING_VIOLATION if another one has the lock. Succeeds if this open file has it already.
ulong TryLock(int descriptor) noexcept;

void Unlock(int descriptor) noexcept;

/// The lock on a file's content, held for a scope: shared by readers, exclusive for a writer in place. On a
/// file system without such locks it locks nothing and succeeds.
class ContentLock {
public:
    enum class Kind { Shared, Exclusive };

    ContentLock() = default;
    ContentLock(const ContentLock&) = delete;
    ContentLock& operator=(const ContentLock&) = delete;
    ~ContentLock();

    /// ERROR_SHARING_VIOLATION if the lock is not free within about a second.
    ulong Acquire(int descriptor, Kind kind) noexcept;

    /// Whether another process may hold the lock exclusively at this moment. Does not lock.
    static bool MayBeExclusive(int descriptor) noexcept;

private:
    int m_descriptor = -1;
};

} // namespace corvane::os
