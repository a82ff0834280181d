#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/FileLock.h>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>

namespace corvane::os {

using namespace platform;

namespace {

// From the start to the end that the file has at any time.
struct flock WholeFile(short type) noexcept {
    struct flock whole {};
    whole.l_type = type;
    whole.l_whence = SEEK_SET;
    return whole;
}

// Belongs to the open file, not to the process: threads exclude each other too, and another descriptor of the
// same file may be closed meanwhile.
int SetContentLock(int descriptor, short type) noexcept {
    struct flock whole = WholeFile(type);
    return ::fcntl(descriptor, F_OFD_SETLK, &whole);
}

} // namespace

ulong LockForChange(int descriptor, Backoff& wait) noexcept {
    ulong error = ERROR_SUCCESS;
    do
        error = TryLock(descriptor);
    while (error == ERROR_SHARING_VIOLATION && wait.Pause());
    return error;
}

ulong TryLock(int descriptor) noexcept {
    if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0)
        return ERROR_SUCCESS;
    return errno == EINTR ? ERROR_SHARING_VIOLATION : ErrorFromErrno(errno);
}

void Unlock(int descriptor) noexcept {
    ::flock(descriptor, LOCK_UN);
}

ulong ContentLock::Take(int descriptor, Kind kind) noexcept {
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

bool ContentLock::MayBeHeldAlone(int descriptor) noexcept {
    struct flock whole = WholeFile(F_RDLCK);
    return ::fcntl(descriptor, F_OFD_GETLK, &whole) != 0 || whole.l_type != F_UNLCK;
}

ContentLock::~ContentLock() {
    if (m_descriptor >= 0)
        SetContentLock(m_descriptor, F_UNLCK);
}

} // namespace corvane::os
