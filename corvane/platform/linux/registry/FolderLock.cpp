#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/Backoff.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/registry/FolderLock.h>

#include <cerrno>
#include <fcntl.h>

namespace corvane::os {

using namespace platform;

FolderLock::~FolderLock() {
    // Closing alone would leave the lock with a child process that was forked meanwhile.
    if (m_own)
        Unlock(m_own.Get());
}

ulong FolderLock::Acquire(const KeyFolder& key) {
    constexpr int seconds = 10;
    m_own = FileHandle(::openat(key.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_own)
        return KeyError(errno);
    ulong error = TryLock(m_own.Get());
    for (int i = 0; i < seconds && error == ERROR_SHARING_VIOLATION; ++i) {
        Backoff wait;
        while (error == ERROR_SHARING_VIOLATION && wait.Pause())
            error = TryLock(m_own.Get());
    }
    if (error)
        return error;
    return key.IsDeleted() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

} // namespace corvane::os
