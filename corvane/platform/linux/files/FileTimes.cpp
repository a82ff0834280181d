#include <corvane/platform/linux/LinuxPlatform.h>
#include <corvane/platform/linux/files/FileTime.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <fcntl.h>
#include <iterator>
#include <sys/vfs.h>

namespace corvane {

int platform::_wutime64(const wchar* path, const __utimbuf64*) noexcept {
    try {
        if (path)
            return ::utimensat(AT_FDCWD, ToUtf8(path).c_str(), nullptr, 0);
        errno = EINVAL;
    } catch (const std::exception&) {
        errno = ENOMEM;
    }
    return -1;
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

} // namespace corvane
