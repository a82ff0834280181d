// The entries of an open folder.
#pragma once

#include <dirent.h>
#include <memory>
#include <string>

namespace corvane::posix {

/// Walks a folder by a descriptor of its own, from the beginning. Not for sharing between threads.
class FolderEntries {
public:
    explicit FolderEntries(int folder) noexcept;

    /// The next entry's name, valid until the next call. Null at the end and if the folder can't be read.
    const char* Next() noexcept;

    /// The `errno` value for which the walk ended early, or 0.
    int Error() const noexcept { return m_error; }

    /// Whether the entry that Next gave is a folder; a symbolic link to one is not.
    bool IsFolder() const noexcept;

private:
    struct Closer {
        void operator()(DIR* stream) const noexcept { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> m_stream;
    const dirent* m_entry = nullptr;
    int m_error = 0;
};

} // namespace corvane::posix
