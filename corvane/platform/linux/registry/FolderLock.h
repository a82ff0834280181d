// Serializes changes of a key by a lock on its folder.
#pragma once

#include <corvane/platform/linux/registry/KeyFolder.h>

namespace corvane::os {

/// An exclusive advisory lock between threads and processes, released by the destructor or at process exit.
class FolderLock {
public:
    FolderLock() = default;
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

    /// ERROR_SHARING_VIOLATION after about ten seconds; ERROR_KEY_DELETED if the key was deleted before or
    /// during the wait. Lock order: a key before its subkey.
    ulong Acquire(const KeyFolder& key);

private:
    FileHandle
        m_own; // its own file description, so that threads sharing a key's descriptor exclude each other too
};

} // namespace corvane::os
