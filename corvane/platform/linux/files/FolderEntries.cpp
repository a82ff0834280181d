#include <corvane/platform/linux/files/FolderEntries.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::os {

FolderEntries::FolderEntries(int folder) noexcept {
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own >= 0)
        m_stream.reset(::fdopendir(own));
    if (m_stream)
        return;
    m_error = errno;
    if (own >= 0)
        ::close(own);
}

const char* FolderEntries::Next() noexcept {
    if (m_error != 0)
        return nullptr;
    do {
        errno = 0; // distinguishes an error from the end
        m_entry = ::readdir(m_stream.get());
    } while (m_entry && (std::strcmp(m_entry->d_name, ".") == 0 || std::strcmp(m_entry->d_name, "..") == 0));
    if (m_entry)
        return m_entry->d_name;
    m_error = errno;
    return nullptr;
}

bool FolderEntries::IsFolder() const noexcept {
    if (m_entry->d_type != DT_UNKNOWN)
        return m_entry->d_type == DT_DIR;
    struct stat status {};
    return ::fstatat(::dirfd(m_stream.get()), m_entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace corvane::os
