// One change of a key at a time: the lock is on the key's folder.
#pragma once

#include <corvane/platform/posix/registry/KeyFolder.h>

namespace corvane::posix {

/// An exclusive advisory lock between threads and processes, released by the destructor and with the process.
class FolderLock {
public:
    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    /// Waits about ten seconds, then ERROR_SHARING_VIOLATION. ERROR_KEY_DELETED if the key went away, before
    /// or during the wait. Locks of a key and its subkey are taken in that order.
    ulong Take(const KeyFolder& key);

private:
    FileHandle
        m_own; // a description of its own: threads that share a key's descriptor exclude each other too
};

} // namespace corvane::posix
