#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/files/Backoff.h>
#include <corvane/platform/linux/files/FileAttributes.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/files/FileUpdate.h>
#include <corvane/platform/linux/files/ReadFile.h>
#include <corvane/platform/linux/files/TemporaryFile.h>
#include <corvane/platform/linux/files/WriteFile.h>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace corvane::os {

using namespace platform;

namespace {

// Never blocks on a pipe, never acquires a controlling terminal.
constexpr int openFlags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

// The errors with which a replacement fails although the file itself may be writable: the folder or its
// sticky bit forbids it, the owner or an attribute cannot be kept, the file is a mount point (maybe in a
// read-only folder), or its name is too long for a temporary one. A full disk is not among them.
bool CanFallBackToInPlace(int error) noexcept {
    return error == EACCES || error == EPERM || error == EBUSY || error == EXDEV || error == EROFS ||
           error == ENAMETOOLONG;
}

} // namespace

FileUpdate::~FileUpdate() {
    struct stat status {};
    // Begin may have failed before it had the lock; another writer may be using the file by now.
    if (m_created && TryLock(m_file.Get()) == ERROR_SUCCESS && IsStillTheFile() &&
        ::fstat(m_file.Get(), &status) == 0 && status.st_size == 0)
        ::unlinkat(m_target.folder.Get(), m_target.name.c_str(), 0);
    // Closing alone would leave the lock with a child process that was forked meanwhile.
    if (m_file)
        Unlock(m_file.Get());
}

// Each attempt reopens the file: the locked one may have been replaced, and its replacement is not locked.
ulong FileUpdate::Begin(const std::string& path, Missing missing) {
    Backoff wait;
    do {
        ulong error = ERROR_SUCCESS;
        const Outcome outcome = TryBegin(path, missing, error);
        if (outcome == Outcome::Refused)
            return error;
        if (outcome == Outcome::Locked)
            return ReadWholeFile(m_file.Get(), m_content);
    } while (wait.Pause());
    return ERROR_SHARING_VIOLATION;
}

FileUpdate::Outcome FileUpdate::TryBegin(const std::string& path, Missing missing, ulong& error) {
    m_created = false;
    if ((error = FindTarget(path, m_target)))
        return Outcome::Refused;
    if (const int reason = Open(missing)) {
        error = ErrorFromErrno(reason);
        // Created, removed or turned into a link by another process between two system calls.
        return reason == EEXIST || reason == ELOOP ? Outcome::Busy : Outcome::Refused;
    }
    if ((error = TryLock(m_file.Get())))
        return error == ERROR_SHARING_VIOLATION ? Outcome::Busy : Outcome::Refused;
    return IsStillTheFile() ? Outcome::Locked : Outcome::Busy;
}

int FileUpdate::Open(Missing missing) noexcept {
    const int folder = m_target.folder.Get();
    m_file = FileHandle(::openat(folder, m_target.name.c_str(), openFlags));
    if (!m_file && errno == ENOENT && missing == Missing::Create) {
        m_file = FileHandle(::openat(folder, m_target.name.c_str(), openFlags | O_CREAT | O_EXCL, 0666));
        m_created = static_cast<bool>(m_file);
    }
    struct stat status {};
    if (!m_file || ::fstat(m_file.Get(), &status) != 0)
        return errno;
    return S_ISREG(status.st_mode) ? 0 : EACCES;
}

bool FileUpdate::IsStillTheFile() const noexcept {
    struct stat open {};
    struct stat named {};
    return ::fstat(m_file.Get(), &open) == 0 && open.st_nlink > 0 &&
           ::fstatat(m_target.folder.Get(), m_target.name.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

ulong FileUpdate::Commit(const TextFragments& content, const struct stat* source) {
    // A program that ignores the lock may have replaced the file; its content must not be lost.
    if (!IsStillTheFile())
        return ERROR_SHARING_VIOLATION;
    if (SizeOf(content) > maximumFileSize)
        return ERROR_FILE_TOO_LARGE;
    struct stat status {};
    if (::fstat(m_file.Get(), &status) != 0)
        return ErrorFromErrno(errno);
    if (source && source->st_dev == status.st_dev && source->st_ino == status.st_ino)
        return ERROR_SHARING_VIOLATION;
    if (const int error = status.st_nlink > 1 ? EPERM : Replace(content, status, source)) {
        if (!CanFallBackToInPlace(error))
            return ErrorFromErrno(error);
        if (const ulong refused = WriteInPlace(m_file.Get(), content, Content()))
            return refused;
        if (source)
            SetModificationTime(m_file.Get(), *source);
    }
    m_created = false;
    return ERROR_SUCCESS;
}

int FileUpdate::Replace(const TextFragments& content, const struct stat& status, const struct stat* source) {
    TemporaryFile next;
    if (const int error = next.Create(m_target.folder.Get(), m_target.name))
        return error;
    if (const int error = CopyMetadata(m_file.Get(), status, next.Get()))
        return error;
    if (const int error = WriteWhole(next.Get(), content))
        return error;
    if (source)
        SetModificationTime(next.Get(), *source);
    return next.Replace();
}

} // namespace corvane::os
