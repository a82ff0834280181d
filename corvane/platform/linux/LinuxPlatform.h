// The platform's operations as the Linux layer gives them: the same arguments and the same answers as the
// real ones for everything that a well-formed file or key can hold. All of them may be called from any
// thread.
#pragma once

#include <corvane/detail/FileState.h>
#include <corvane/platform/ProfileChange.h>

#include <cstdarg>
#include <cstddef>
#include <memory>
#include <sys/stat.h>
#include <type_traits>
#include <vector>

struct __utimbuf64;

namespace corvane::os {
class LoadCursor;
}

namespace corvane::platform {

inline constexpr unsigned CP_UTF8 = 65001;

/// The error of the calling thread's last failed operation.
ulong GetLastError() noexcept;
void SetLastError(ulong error) noexcept;
void Sleep(ulong milliseconds) noexcept;

/// Converts UTF-8 (code page 65001 and flags 0 only) to UTF-16. A negative `length` means up to and with the
/// NUL. Returns the count of units, or 0 for failure; with `capacity` 0 only the count is given.
int MultiByteToWideChar(unsigned codePage, ulong flags, const char* text, int length, wchar* buffer,
                        int capacity) noexcept;

template <class T>
T* ReadPointerAcquire(T* const volatile* pointer) noexcept {
    return __atomic_load_n(pointer, __ATOMIC_ACQUIRE);
}

template <class T>
T* InterlockedExchangePointer(T* volatile* pointer, std::common_type_t<T*> value) noexcept {
    return __atomic_exchange_n(pointer, value, __ATOMIC_ACQ_REL);
}

/// The lower-case form of a code unit outside ASCII, whatever the process's locale is.
wchar LowerInvariant(wchar unit) noexcept;

int _wcsicmp(const wchar* a, const wchar* b) noexcept;
int _wcsnicmp(const wchar* a, const wchar* b, std::size_t count) noexcept;
int _vsnwprintf(wchar* buffer, std::size_t count, const wchar* format, std::va_list arguments) noexcept;

/// `mode` 0 asks whether the path exists, 2 for writing, 4 for reading, 6 for both. 0, or -1 with `errno`
/// set.
int _waccess(const wchar* path, int mode) noexcept;

using _stat64 = struct ::stat;
int _wstat64(const wchar* path, _stat64* info) noexcept;

/// The state of the file at `path`; `error` is an `errno`.
FileState ExamineFile(const wchar* path) noexcept;

/// Sets both times of the file to the present; `times` is always null. 0, or -1 with `errno` set.
int _wutime64(const wchar* path, const __utimbuf64* times) noexcept;

/// Copies the content, and to a new file the permissions; one that exists keeps its own. The target appears
/// whole or not at all. With `failIfExists` an existing target is left alone (ERROR_FILE_EXISTS); a file is
/// not copied onto itself (ERROR_SHARING_VIOLATION). Non-zero on success.
int CopyFileW(const wchar* from, const wchar* to, int failIfExists) noexcept;

/// While it lives, this thread's reads of one file, the first that it reads, show one consistent view of that
/// file, whoever writes to it meanwhile. Reads of other files, and those in a scope within, are not affected.
class LoadScope {
public:
    LoadScope();
    LoadScope(const LoadScope&) = delete;
    LoadScope& operator=(const LoadScope&) = delete;
    ~LoadScope();

    /// Spares the first read of `file` in this thread's scope, if it has one, a look at the file's status.
    static void NoteStatus(const char* file, const _stat64& status);

    /// Gives the status noted for `file`. False when there is none, or the scope has read its file.
    static bool RecallStatus(const char* file, _stat64& status) noexcept;

private:
    std::unique_ptr<os::LoadCursor> m_cursor;
    os::LoadCursor* m_outer;
};

/// While it lives, the writes of this thread wait for a lock that another process holds for a twentieth of a
/// second, and no longer for a second. For further attempts at a write that has had its patience.
class BriefWaits {
public:
    explicit BriefWaits(bool wanted) noexcept;
    BriefWaits(const BriefWaits&) = delete;
    BriefWaits& operator=(const BriefWaits&) = delete;
    ~BriefWaits();

private:
    bool m_outer;
};

/// Reads from a private-profile file: a value, with a null tag the section's tag names, with a null section
/// all section names. Results and truncation are those of the real operation; 0 with the error in
/// GetLastError when there is nothing. `defaultText` is used when nothing is there and it is not null.
ulong GetPrivateProfileStringA(const char* section, const char* tag, const char* defaultText, char* buffer,
                               ulong size, const char* file);

/// Reads the lines of one section, each followed by a NUL, and one more NUL behind the last.
ulong GetPrivateProfileSectionA(const char* section, char* buffer, ulong size, const char* file);

/// The longest section, tag or value that can be written, in bytes: as long as the largest file that is read.
inline constexpr std::size_t longestProfileText = std::size_t{1} << 30;

/// Writes one value, or with a null value removes the tag, or with a null tag and value the section. A write
/// ignores blanks around the names, a removal finds no name with blanks around it. Non-zero when the file
/// then stands as asked; 0 on failure, with the error in GetLastError, and worth another try. Throws
/// std::invalid_argument, with nothing written, for what the file could never give back.
int WritePrivateProfileStringA(const char* section, const char* tag, const char* value, const char* file);
int WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value, const wchar* file);

/// Makes all changes, one after the other, or none: readers, even after a crash, find the file
/// before them or after them. The last change of a tag counts. Otherwise as the write of one value, which
/// costs the same.
int WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file);

} // namespace corvane::platform

#include <corvane/platform/linux/LinuxRegistry.h>
