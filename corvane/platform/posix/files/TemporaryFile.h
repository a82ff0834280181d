#pragma once

#include <corvane/platform/posix/files/FileHandle.h>

#include <string>

namespace corvane::posix {

/// A new file on its way to its name: open for writing, for its owner only, without a name where the file
/// system can do that, else under one that cannot be guessed and begins with a dot and ends in `.tmp`. What
/// was not put in place vanishes with the object, or if the process is killed, when another one writes the
/// same file for the first time. All operations return an `errno` value, 0 for done.
class TemporaryFile {
public:
    TemporaryFile() = default;
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    /// Makes the file in the open folder, which outlives this object, to become `name`.
    int Create(int folder, const std::string& name);

    int Get() const noexcept { return m_file.Get(); }

    /// Puts it in the place of whatever has the name.
    int Replace();

    /// Gives it the name, unless something else has it (EEXIST).
    int Appear() noexcept;

private:
    int CreateNamed();
    template <typename Operation>
    int TakeTemporaryName(Operation take);
    int LinkTo(const std::string& name) noexcept;
    int InPlace() noexcept;

    int m_folder = -1;
    FileHandle m_file;
    std::string m_name;
    std::string m_temporaryName; // empty while there is none to remove
};

/// Flushes a folder's entries, as far as the folder can be opened for it.
void FlushFolder(int folder) noexcept;

} // namespace corvane::posix
