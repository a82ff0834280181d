// A consistent view of a file, and the means to tell whether the file has changed since.
#pragma once

#include <corvane/foundations/WideString.h>
#include <corvane/platform/linux/files/FileText.h>

#include <ctime>
#include <sys/stat.h>

namespace corvane::os {

/// A file's identity and state, as `stat` reports them.
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
    /// Whether the timestamp is racy: the file changed so shortly before it was read that a later change
    /// could get the same time, and would not show in the stamp.
    bool racy = true;
};

/// Reads the regular file at `path` (UTF-8) as it stood at one moment. `status` is the path's from just
/// before: a file that has changed since then, or changes during the read, is read again. The read waits for
/// a writer that holds its lock on the file, for a second at most (ERROR_SHARING_VIOLATION). It never blocks
/// on a pipe or device. Returns ERROR_SUCCESS or the platform's error number.
ulong ReadSnapshot(const char* path, struct stat status, FileSnapshot& snapshot);

/// The platform's number for an `errno` value from opening or examining `path`: for ENOENT it distinguishes a
/// missing folder from a missing file.
ulong ErrorOfPath(const char* path, int error);

} // namespace corvane::os
