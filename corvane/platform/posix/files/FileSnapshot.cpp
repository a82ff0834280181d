#include <corvane/platform/FileState.h>
#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/files/FileHandle.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/FileSnapshot.h>
#include <corvane/platform/posix/files/FileTime.h>
#include <corvane/platform/posix/files/ReadFile.h>

#include <cerrno>
#include <fcntl.h>
#include <string_view>

namespace corvane::posix {

using namespace platform;

namespace {

bool SameTime(const timespec& a, const timespec& b) noexcept {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Whether the content was read while nothing changed, in `stable`.
ulong ReadOnce(int descriptor, FileSnapshot& snapshot, bool& stable) {
    struct stat before {};
    struct stat after {};
    const std::int64_t now = CoarseNow();
    if (const ulong error = ReadWholeFile(descriptor, snapshot.content, before))
        return error;
    if (::fstat(descriptor, &after) != 0)
        return ErrorFromErrno(errno);
    snapshot.stamp = FileStamp(after);
    snapshot.settled = HasSettled(Nanoseconds(snapshot.stamp.changed), now);
    stable = snapshot.stamp == FileStamp(before);
    return ERROR_SUCCESS;
}

} // namespace

bool operator==(const FileStamp& a, const FileStamp& b) noexcept {
    return a.device == b.device && a.inode == b.inode && a.size == b.size &&
           SameTime(a.modified, b.modified) && SameTime(a.changed, b.changed);
}

ulong ReadSnapshot(const char* path, FileSnapshot& snapshot) {
    constexpr int tries = 8;
    for (int i = 0; i < tries; ++i) {
        const FileHandle file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
        if (!file)
            return ErrorOfPath(path, errno);
        ContentLock lock;
        if (const ulong error = lock.Take(file.Get(), ContentLock::Kind::Shared))
            return error;
        bool stable = false;
        if (const ulong error = ReadOnce(file.Get(), snapshot, stable); error || stable)
            return error;
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

} // namespace corvane::posix
