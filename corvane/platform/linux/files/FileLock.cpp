#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/Backoff.h>
#include <corvane/platform/linux/files/FileLock.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace corvane::os {

using namespace platform;

namespace {

// The whole file, however long it becomes.
struct flock WholeFile(short type) noexcept {
    struct flock whole {};
    whole.l_type = type;
    whole.l_whence = SEEK_SET;
    return whole;
}

// Open file description locks: threads exclude each other too, and closing another descriptor of the same
// file does not release the lock.
int SetContentLock(int descriptor, short type) noexcept {
    struct flock whole = WholeFile(type);
    return ::fcntl(descriptor, F_OFD_SETLK, &whole);
}

} // namespace

ulong TryLock(int descriptor) noexcept {
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return ERROR_SUCCESS;
    return errno == EINTR ? ERROR_SHARING_VIOLATION : ErrorFromErrno(errno);
}

void Unlock(int descriptor) noexcept {
    ::flock(descriptor, LOCK_UN);
}

ulong ContentLock::Acquire(int descriptor, Kind kind) noexcept {
    Backoff wait;
    while (SetContentLock(descriptor, kind == Kind::Exclusive ? F_WRLCK : F_RDLCK) != 0) {
        if (errno != EAGAIN && errno != EACCES && errno != EINTR)
            return ERROR_SUCCESS;
        if (!wait.Pause())
            return ERROR_SHARING_VIOLATION;
    }
    m_descriptor = descriptor;
    return ERROR_SUCCESS;
}

bool ContentLock::MayBeExclusive(int descriptor) noexcept {
    struct flock whole = WholeFile(F_RDLCK);
    return ::fcntl(descriptor, F_OFD_GETLK, &whole) != 0 || whole.l_type != F_UNLCK;
}

ContentLock::~ContentLock() {
    if (m_descriptor >= 0)
        SetContentLock(m_descriptor, F_UNLCK);
}

} // namespace corvane::os
