#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileTime.h>

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace corvane {
namespace {

int Refuse(int error) noexcept {
    errno = error;
    return -1;
}

// Calls `operation` with the path in UTF-8.
template <typename Operation>
int WithPath(const wchar* path, Operation operation) noexcept {
    if (!path || *path == 0)
        return Refuse(ENOENT);
    try {
        return operation(ToUtf8(path).c_str());
    } catch (const std::bad_alloc&) {
        return Refuse(ENOMEM);
    }
}

} // namespace

// Checks the effective rights, with which the files will be opened.
int platform::_waccess(const wchar* path, int mode) noexcept {
    if ((mode & ~6) != 0)
        return Refuse(EINVAL);
    const int rights = ((mode & 2) != 0 ? W_OK : 0) | ((mode & 4) != 0 ? R_OK : 0);
    return WithPath(path,
                    [rights](const char* name) { return ::faccessat(AT_FDCWD, name, rights, AT_EACCESS); });
}

int platform::_wstat64(const wchar* path, _stat64* info) noexcept {
    return WithPath(path, [info](const char* name) {
        const int result = ::stat(name, info);
        if (result == 0)
            LoadScope::NoteStatus(name, *info);
        return result;
    });
}

// The status recorded by a load will do: the content is read later.
FileState platform::ExamineFile(const wchar* path) noexcept {
    FileState state;
    const std::int64_t now = os::CoarseNow();
    _stat64 status{};
    const auto examine = [&status](const char* name) {
        return LoadScope::RecallStatus(name, status) ? 0 : ::stat(name, &status);
    };
    if (WithPath(path, examine) != 0) {
        state.error = static_cast<ulong>(errno);
        return state;
    }
    state.volume = status.st_dev;
    state.file = status.st_ino;
    state.size = static_cast<std::uint64_t>(status.st_size);
    state.modified = os::Nanoseconds(status.st_mtim);
    state.changed = os::Nanoseconds(status.st_ctim);
    state.racy = IsRacy(state.changed, now);
    return state;
}

bool platform::HasRemoteClock(const wchar* path) noexcept {
    return WithPath(path, os::HasRemoteClock) != 0;
}

} // namespace corvane
