#include <corvane/platform/posix/Errors.h>
#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/files/FileHandle.h>
#include <corvane/platform/posix/files/FileLock.h>
#include <corvane/platform/posix/files/FileSnapshot.h>
#include <corvane/platform/posix/files/ReadFile.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>

namespace corvane::posix {

using namespace platform;

namespace {

std::int64_t Nanoseconds(const timespec& time) noexcept {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

bool SameTime(const timespec& a, const timespec& b) noexcept {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// File times come from the kernel's coarse clock, which moves in ticks of at most 10 ms, and some file
// systems keep them in steps of up to two seconds. A time that lies ahead is one that no change will get
// soon.
bool IsSettled(const FileStamp& stamp, const timespec& readAt) noexcept {
    const std::int64_t window = stamp.changed.tv_nsec == 0 ? 2'100'000'000 : 20'000'000;
    return std::llabs(Nanoseconds(readAt) - Nanoseconds(stamp.changed)) > window;
}

// Whether the content was read while nothing changed, in `stable`.
ulong ReadOnce(int descriptor, FileSnapshot& snapshot, bool& stable) {
    struct stat before {};
    struct stat after {};
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    if (const ulong error = ReadWholeFile(descriptor, snapshot.content, before))
        return error;
    if (::fstat(descriptor, &after) != 0)
        return ErrorFromErrno(errno);
    snapshot.stamp = FileStamp(after);
    snapshot.settled = IsSettled(snapshot.stamp, now);
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
