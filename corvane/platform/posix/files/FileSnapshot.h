// One undivided picture of a file, and the means to tell whether the file has changed since.
#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/posix/files/FileText.h>

#include <ctime>
#include <sys/stat.h>

namespace corvane::posix {

/// What `stat` tells of a file's identity and state.
struct FileStamp {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified{};
    timespec changed{};

    FileStamp() = default;
    explicit FileStamp(const struct stat& status) noexcept
        : device(status.st_dev), inode(status.st_ino), size(status.st_size), modified(status.st_mtim),
          changed(status.st_ctim) {}
};

bool operator==(const FileStamp& a, const FileStamp& b) noexcept;

struct FileSnapshot {
    FileText content;
    FileStamp stamp;
    /// Whether every later change shows in the stamp. False when the file changed so shortly before it was
    /// read that one more change could have got the same time.
    bool settled = false;
};

/// Reads the regular file at `path` (UTF-8) as it stood at one moment: while a writer holds its lock on the
/// file the read waits, for a second at most (ERROR_SHARING_VIOLATION), and a file that changes under the
/// read is read again. Never blocks on a pipe or device. Returns ERROR_SUCCESS or the platform's error
/// number.
ulong ReadSnapshot(const char* path, FileSnapshot& snapshot);

/// The platform's number for an `errno` value that came of opening or examining `path`: for ENOENT it tells a
/// missing folder from a missing file.
ulong ErrorOfPath(const char* path, int error);

} // namespace corvane::posix
