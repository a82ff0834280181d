// The file of a key's values.
#pragma once

#include <corvane/platform/posix/files/FileSnapshot.h>
#include <corvane/platform/posix/registry/KeyFolder.h>
#include <corvane/platform/posix/registry/ValuesText.h>

namespace corvane::posix {

/// A key's values as they were read last. While the file stays the same, asking again costs one system call.
/// Statuses are platform error numbers. Not for sharing between threads.
class ValuesFile {
public:
    /// Reads the file if it isn't the one that was read last. No file is no values, ERROR_KEY_DELETED if the
    /// key is gone. A damaged file is ERROR_BADDB.
    ulong Refresh(const KeyFolder& key);

    /// Whether there was a file, and it was in order.
    bool WasRead() const noexcept { return static_cast<bool>(m_file); }

    const std::vector<RegistryValue>& Values() const noexcept { return m_content.values; }

private:
    ulong Read(const KeyFolder& key);

    FileHandle m_file; // stays open, so that no other file takes over its inode number
    FileStamp m_stamp;
    RegistryValues m_content;
};

/// Stores one value among the others, on disk when it returns: under the key's lock, and the whole file
/// replaced in one step. A damaged file is refused (ERROR_BADDB) and left alone.
ulong StoreValue(const KeyFolder& key, RegistryValue value);

} // namespace corvane::posix
