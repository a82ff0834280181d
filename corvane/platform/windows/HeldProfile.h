// One change of a private-profile file, with nobody else writing to it, whole or not at all.
#pragma once

#include <corvane/platform/windows/WindowsPlatform.h>

#include <string>
#include <utility>

namespace corvane::windows {

class FileHandle {
public:
    explicit FileHandle(HANDLE handle = INVALID_HANDLE_VALUE) noexcept : m_handle(handle) {}
    FileHandle(FileHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(m_handle, other.m_handle);
        return *this;
    }
    ~FileHandle() {
        if (*this)
            ::CloseHandle(m_handle);
    }

    explicit operator bool() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return m_handle; }

private:
    HANDLE m_handle;
};

/// Holds the file open, so that others can read it and not write to it, while a copy beside it is changed and
/// then put in its place. The operations give false with the reason in GetLastError. The copy and a file that
/// was made here go away with the object, unless they were committed.
class HeldProfile {
public:
    HeldProfile() = default;
    HeldProfile(const HeldProfile&) = delete;
    HeldProfile& operator=(const HeldProfile&) = delete;
    ~HeldProfile();

    /// Opens the file, and with `create` makes it where it is missing. What has several names in the file
    /// system is refused: the others would keep the old content.
    bool Take(const char* file, bool create);

    /// Makes the copy, for the same eyes as the file. One that a killed process left goes.
    bool MakeCopy();

    /// The copy's path, for the operations that change it.
    const std::string& Copy() const noexcept { return m_copy; }

    /// Puts the copy in the file's place, flushed to disk, in one step; if it is as the file was, does
    /// nothing.
    bool Commit();

private:
    bool IsStillTheFile() const noexcept;

    std::string m_path; // behind links
    std::string m_copy;
    std::string m_content;
    FileHandle m_file;
    bool m_isNew = false;
    bool m_hasCopy = false;
};

/// Removes the copy that a killed process may have left beside the file.
void RemoveLeftCopy(const char* file);

} // namespace corvane::windows
