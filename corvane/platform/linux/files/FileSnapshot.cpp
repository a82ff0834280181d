#include <corvane/detail/FileState.h>
#include <corvane/platform/linux/Errors.h>
#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileHandle.h>
#include <corvane/platform/linux/files/FileLock.h>
#include <corvane/platform/linux/files/FileSnapshot.h>
#include <corvane/platform/linux/files/FileTime.h>
#include <corvane/platform/linux/files/ReadFile.h>

#include <cerrno>
#include <fcntl.h>
#include <string_view>

namespace corvane::os {

using namespace platform;

namespace {

bool SameTime(const timespec& a, const timespec& b) noexcept {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

} // namespace

bool operator==(const FileStamp& a, const FileStamp& b) noexcept {
    return a.device == b.device && a.inode == b.inode && a.size == b.size &&
           SameTime(a.modified, b.modified) && SameTime(a.changed, b.changed);
}

ulong ReadSnapshot(const char* path, struct stat status, FileSnapshot& snapshot) {
    if (!S_ISREG(status.st_mode)) // not even opened: that alone sets some devices going
        return ERROR_ACCESS_DENIED;
    const FileHandle file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    if (!file)
        return ErrorOfPath(path, errno);
    ContentLock lock;
    constexpr int tries = 8;
    for (int i = 0; i < tries; ++i) {
        const std::int64_t now = CoarseNow();
        snapshot.stamp = FileStamp(status);
        snapshot.racy = IsRacy(Nanoseconds(snapshot.stamp.changed), now);
        // A change from here on shows in the stamp unless that is racy. So a lock is needed only then, or to
        // wait for a change that has begun.
        if (snapshot.racy || ContentLock::MayBeExclusive(file.Get())) {
            if (const ulong error = lock.Acquire(file.Get(), ContentLock::Kind::Shared))
                return error;
        }
        if (const ulong error = ReadWholeFile(file.Get(), status, snapshot.content))
            return error;
        if (::fstat(file.Get(), &status) != 0)
            return ErrorFromErrno(errno);
        if (snapshot.stamp == FileStamp(status))
            return ERROR_SUCCESS;
    }
    return ERROR_SHARING_VIOLATION;
}

ulong ErrorOfPath(const char* path, int error) {
    const std::string_view text = path;
    const std::size_t slash = text.rfind('/');
    if (error != ENOENT || slash == std::string_view::npos || slash == 0)
        return ErrorFromErrno(error);
    const std::string folder(text.substr(0, slash));
    struct stat status {};
    return ::stat(folder.c_str(), &status) == 0 ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

} // namespace corvane::os
