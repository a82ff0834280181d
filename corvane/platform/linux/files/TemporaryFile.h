#pragma once

#include <corvane/platform/linux/files/FileHandle.h>

#include <string>

namespace corvane::os {

/// A temporary file that later gets its final name: open for writing, accessible by its owner only, without a
/// name where the file system supports that, otherwise with an unpredictable one that begins with a dot and
/// ends in
/// `.tmp`. Unless it got its final name, the destructor removes it; after a kill, the next process that
/// writes the same file does. Operations return an `errno` value, 0 for success.
class TemporaryFile {
public:
    TemporaryFile() = default;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// Creates the file in the open folder, which must outlive this object, with the final name `name`.
    int Create(int folder, const std::string& name);

    int Get() const noexcept { return m_file.Get(); }

    /// Gives it its final name, replacing an existing file; flushes the file before and its folder after.
    int Replace();

    /// The same unless that name is taken (EEXIST).
    int Publish() noexcept;

private:
    int CreateNamed();
    template <typename Operation>
    int TryTemporaryNames(Operation take);
    int LinkTo(const std::string& name) noexcept;
    int FinishPublishing() noexcept;

    int m_folder = -1;
    FileHandle m_file;
    std::string m_name;
    std::string m_temporaryName; // empty while there is none to remove
};

/// Flushes a folder's entries to disk if the folder can be opened.
void FlushFolder(int folder) noexcept;

} // namespace corvane::os
