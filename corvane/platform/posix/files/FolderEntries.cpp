#include <corvane/platform/posix/files/FolderEntries.h>

#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane::posix {

FolderEntries::FolderEntries(int folder) noexcept {
    const int own = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (own < 0)
        return;
    m_stream.reset(::fdopendir(own));
    if (!m_stream)
        ::close(own);
}

const char* FolderEntries::Next() noexcept {
    do {
        m_entry = ::readdir(m_stream.get());
    } while (m_entry && (std::strcmp(m_entry->d_name, ".") == 0 || std::strcmp(m_entry->d_name, "..") == 0));
    return m_entry ? m_entry->d_name : nullptr;
}

bool FolderEntries::IsFolder() const noexcept {
    if (m_entry->d_type != DT_UNKNOWN)
        return m_entry->d_type == DT_DIR;
    struct stat status {};
    return ::fstatat(::dirfd(m_stream.get()), m_entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace corvane::posix
