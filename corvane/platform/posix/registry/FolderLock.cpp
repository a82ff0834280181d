#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/registry/FolderLock.h>

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>

namespace corvane::posix {

using namespace platform;

ulong FolderLock::Take(const KeyFolder& key) {
    using std::chrono::steady_clock;
    m_own = FileHandle(::openat(key.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!m_own)
        return key.IsDeleted() ? ERROR_KEY_DELETED : KeyError();
    const auto deadline = steady_clock::now() + std::chrono::seconds(10);
    while (::flock(m_own.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR)
            continue;
        if (errno != EWOULDBLOCK)
            return KeyError();
        if (steady_clock::now() > deadline)
            return ERROR_SHARING_VIOLATION;
        std::this_thread::sleep_for(std::chrono::microseconds(500));
    }
    return key.IsDeleted() ? ERROR_KEY_DELETED : ERROR_SUCCESS;
}

} // namespace corvane::posix
