#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileTime.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <iterator>
#include <new>
#include <sys/vfs.h>
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

int platform::_wutime64(const wchar* path, const __utimbuf64*) noexcept {
    return WithPath(path, [](const char* name) { return ::utimensat(AT_FDCWD, name, nullptr, 0); });
}

bool os::HasRemoteClock(const char* path) noexcept {
    constexpr std::uint32_t local[] = {
        0xEF53,     // ext2 to ext4
        0x58465342, // XFS
        0x9123683E, // Btrfs
        0xCA451A4E, // bcachefs
        0xF2F52010, // F2FS
        0x2FC12FC1, // ZFS
        0x7366746E, // NTFS
        0x4D44,     // FAT
        0x2011BAB0, // exFAT
        0x01021994, // tmpfs
        0x858458F6, // ramfs
        0x794C7630, // overlayfs
    };
    struct statfs system {};
    if (::statfs(path, &system) != 0)
        return true;
    const auto type = static_cast<std::uint32_t>(system.f_type);
    return std::find(std::begin(local), std::end(local), type) == std::end(local);
}

bool platform::HasRemoteClock(const wchar* path) noexcept {
    return WithPath(path, os::HasRemoteClock) != 0;
}

} // namespace corvane
