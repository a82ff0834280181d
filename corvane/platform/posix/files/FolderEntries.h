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

    /// False with `errno` set if the folder can't be read.
    explicit operator bool() const noexcept { return m_stream != nullptr; }

    /// The next entry's name, valid until the next call, or null at the end.
    const char* Next() noexcept;

    /// Whether the entry that Next gave is a folder; a symbolic link to one is not.
    bool IsFolder() const noexcept;

private:
    struct Closer {
        void operator()(DIR* stream) const noexcept { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> m_stream;
    const dirent* m_entry = nullptr;
};

} // namespace corvane::posix
