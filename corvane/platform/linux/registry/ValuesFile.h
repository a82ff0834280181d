// The file of a key's values.
#pragma once

#include <corvane/platform/linux/files/FileSnapshot.h>
#include <corvane/platform/linux/registry/KeyFolder.h>
#include <corvane/platform/linux/registry/ValuesText.h>

namespace corvane::os {

/// Caches a key's values. While the file is unchanged, another read costs one system call. Returns platform
/// error numbers. Not thread-safe.
class ValuesFile {
public:
    /// Reads the file unless it is the one that was read last. A missing file means no values, or
    /// ERROR_KEY_DELETED if the key was deleted. ERROR_BADDB for a damaged file.
    ulong Refresh(const KeyFolder& key);

    /// Whether there was a file and it was well-formed.
    bool WasRead() const noexcept { return static_cast<bool>(m_file); }

    const std::vector<RegistryValue>& Values() const noexcept { return m_content.values; }

private:
    FileHandle m_file; // kept open so that its inode number is not reused
    FileStamp m_stamp;
    RegistryValues m_content;
};

/// Stores one value durably: replaces the whole file atomically, under the key's lock. A damaged file is
/// refused (ERROR_BADDB) and left unchanged.
ulong StoreValue(const KeyFolder& key, RegistryValue value);

} // namespace corvane::os
