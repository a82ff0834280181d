// One safe change of one file: locked against other writers, replaced whole or not at all.
#pragma once

#include <corvane/platform/posix/files/FileHandle.h>
#include <corvane/platform/posix/files/FileText.h>
#include <corvane/platform/posix/files/TargetPath.h>
#include <corvane/platform/posix/files/TextPieces.h>

#include <string>
#include <sys/stat.h>

namespace corvane::posix {

/// The reading, changing and writing of a file under one exclusive advisory lock, which the destructor
/// releases. Statuses are platform error numbers, ERROR_SUCCESS for done. Not for sharing between threads.
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

    /// Opens the file behind `path` (a symbolic link is followed to its target), takes the lock, makes sure
    /// that the locked file is still the one under that name, and reads it. A lock that is not free within a
    /// short wait is ERROR_SHARING_VIOLATION. What is no regular file is refused. A file that Begin made goes
    /// away again when nothing is committed.
    ulong Begin(const std::string& path, Missing missing);

    std::string_view Content() const noexcept { return m_content.View(); }

    /// Puts `content`, whose pieces may be of Content(), in the file's place and flushes it to disk: through
    /// a temporary file in the same folder that takes over owner, permissions and attributes, or in place
    /// where that cannot serve. On failure the file holds what it held.
    ulong Commit(const TextPieces& content);

    /// The same for a copy of the file with the status `source`, whose modification time it takes over too. A
    /// file as its own source is ERROR_SHARING_VIOLATION.
    ulong CommitCopy(const TextPieces& content, const struct stat& source);

private:
    enum class Outcome { Locked, Refused, Busy };

    Outcome TryBegin(const std::string& path, Missing missing, ulong& error);
    int Open(Missing missing) noexcept;
    bool IsStillTheFile() const noexcept;
    ulong Done() noexcept;
    ulong Write(const TextPieces& content, const struct stat* source);
    int Replace(const TextPieces& content, const struct stat& status, const struct stat* source);

    TargetPath m_target;
    FileHandle m_file;
    bool m_created = false; // by Begin, and nothing committed yet
    FileText m_content;
};

} // namespace corvane::posix
