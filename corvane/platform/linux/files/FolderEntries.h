// The entries of an open folder.
#pragma once

#include <dirent.h>
#include <memory>
#include <string>

namespace corvane::os {

/// Iterates over a folder's entries from the beginning, with its own descriptor. Not thread-safe.
class FolderEntries {
public:
    explicit FolderEntries(int folder) noexcept;

    /// The next entry's name, valid until the next call. Null at the end and on error.
    const char* Next() noexcept;

    /// The `errno` value that ended the iteration early, or 0.
    int Error() const noexcept { return m_error; }

    /// Whether the current entry is a folder; a symbolic link to one is not.
    bool IsFolder() const noexcept;

private:
    struct Closer {
        void operator()(DIR* stream) const noexcept { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> m_stream;
    const dirent* m_entry = nullptr;
    int m_error = 0;
};

} // namespace corvane::os
