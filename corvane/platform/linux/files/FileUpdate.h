// One atomic change of a file, locked against other writers.
#pragma once

#include <corvane/platform/linux/files/FileHandle.h>
#include <corvane/platform/linux/files/FileText.h>
#include <corvane/platform/linux/files/TargetPath.h>
#include <corvane/platform/linux/files/TextFragments.h>

#include <string>
#include <sys/stat.h>

namespace corvane::os {

/// Reads, changes and writes a file under one exclusive advisory lock, which the destructor releases. Returns
/// platform error numbers, ERROR_SUCCESS for success. Not thread-safe.
///
///     FileUpdate update;
///     if (const ulong error = update.Begin(path)) return error;
///     return update.Commit(Edited(update.Content()));
class FileUpdate {
public:
    enum class Missing { Refuse, Create };

    FileUpdate() = default;
    FileUpdate(const FileUpdate&) = delete;
    FileUpdate& operator=(const FileUpdate&) = delete;
    ~FileUpdate();

    /// Opens the file at `path` (a symbolic link is followed to its target), takes the lock, checks that the
    /// locked file still has that name, and reads it. ERROR_SHARING_VIOLATION if the lock is not free within
    /// a short wait. Anything but a regular file is refused. A file that Begin created is removed again if
    /// nothing is committed.
    ulong Begin(const std::string& path, Missing missing);

    std::string_view Content() const noexcept { return m_content.View(); }

    /// Replaces the file's content with `content`, which may refer to Content(), and flushes it to disk:
    /// through a temporary file in the same folder with the same owner, permissions and attributes, or in
    /// place where a replacement is impossible. On failure the file is unchanged. For a copy, `source` is the
    /// status of the copied file, which gives the modification time; ERROR_SHARING_VIOLATION if both are the
    /// same file.
    ulong Commit(const TextFragments& content, const struct stat* source = nullptr);

private:
    enum class Outcome { Locked, Refused, Busy };

    Outcome TryBegin(const std::string& path, Missing missing, ulong& error);
    int Open(Missing missing) noexcept;
    bool IsStillTheFile() const noexcept;
    int Replace(const TextFragments& content, const struct stat& status, const struct stat* source);

    TargetPath m_target;
    FileHandle m_file;
    bool m_created = false; // by Begin, and nothing committed yet
    FileText m_content;
};

} // namespace corvane::os
