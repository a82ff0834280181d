// One atomic change of a private-profile file, locked against other writers.
#pragma once

#include <corvane/platform/windows/FileHandle.h>

#include <string>

namespace corvane::windows {

/// Holds the file open so that others can read but not write it, while a copy beside it is changed and then
/// replaces it. On failure the operations return false with the error in GetLastError. Unless committed, the
/// destructor removes the copy, and the file if it was created here.
class HeldProfile {
public:
    HeldProfile() = default;
    HeldProfile(const HeldProfile&) = delete;
    HeldProfile& operator=(const HeldProfile&) = delete;
    ~HeldProfile();

    /// Opens the file; with `create`, creates a missing one. A file with several hard links is refused,
    /// because the other links would keep the old content.
    bool Acquire(const char* file, bool create);

    /// Creates the copy with the file's access list, replacing one that a killed process left.
    bool MakeCopy();

    /// The copy's path, for the operations that change it.
    const std::string& Copy() const noexcept { return m_copy; }

    /// Flushes the copy to disk and replaces the file with it; does nothing if they are equal. If the process
    /// is killed while it does, the next one to open or write the file finds it as it was.
    bool Commit();

private:
    bool IsStill(const std::string& path) const noexcept;

    std::string m_path; // with links resolved
    std::string m_copy;
    std::string m_content;
    FileHandle m_file;
    bool m_isNew = false;
    bool m_hasCopy = false;
};

/// Undoes a replacement in which a process was killed, and removes what it left beside the file. False, with
/// ERROR_SHARING_VIOLATION, while another process replaces the file.
bool CleanUp(const char* file);

/// The same before a write in place; until `kept` is closed, no process replaces the file.
bool KeepInPlace(const char* file, FileHandle& kept);

} // namespace corvane::windows
