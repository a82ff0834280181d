#include <corvane/platform/posix/PosixPlatform.h>
#include <corvane/platform/posix/files/FileTime.h>

#include <cerrno>

namespace corvane {

FileState platform::ExamineFile(const wchar* path) noexcept {
    FileState state;
    const std::int64_t now = posix::CoarseNow();
    _stat64 status{};
    if (_wstat64(path, &status) != 0) {
        state.error = static_cast<ulong>(errno);
        return state;
    }
    state.volume = status.st_dev;
    state.file = status.st_ino;
    state.size = static_cast<std::uint64_t>(status.st_size);
    state.modified = posix::Nanoseconds(status.st_mtim);
    state.changed = posix::Nanoseconds(status.st_ctim);
    state.settled = HasSettled(state.changed, now);
    return state;
}

} // namespace corvane
