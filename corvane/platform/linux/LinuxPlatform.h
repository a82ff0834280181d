// The platform's operations on Linux: the same arguments and results as the real ones for everything that a
// well-formed file or key can contain. All of them are thread-safe.
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

/// Converts UTF-8 (code page 65001 and flags 0 only) to UTF-16. A negative `length` means up to and including
/// the NUL. Returns the number of units, or 0 on failure; with `capacity` 0 it only counts.
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

/// The lower-case form of a code unit outside ASCII, independent of the locale.
wchar LowerInvariant(wchar unit) noexcept;

int _wcsicmp(const wchar* a, const wchar* b) noexcept;
int _wcsnicmp(const wchar* a, const wchar* b, std::size_t count) noexcept;
int _vsnwprintf(wchar* buffer, std::size_t count, const wchar* format, std::va_list arguments) noexcept;

/// Checks access: `mode` 0 for existence, 2 for writing, 4 for reading, 6 for both. 0, or -1 with `errno`
/// set.
int _waccess(const wchar* path, int mode) noexcept;

using _stat64 = struct ::stat;
int _wstat64(const wchar* path, _stat64* info) noexcept;

/// The state of the file at `path`; `error` is an `errno`.
FileState ExamineFile(const wchar* path) noexcept;

/// Whether the times of the file at `path` may come from another machine's clock. True also when it cannot
/// be known.
bool HasRemoteClock(const wchar* path) noexcept;

/// Sets both times of the file to the current time; `times` is always null. 0, or -1 with `errno` set.
int _wutime64(const wchar* path, const __utimbuf64* times) noexcept;

/// Copies the content and, for a new file, the permissions; an existing target keeps its own. The target
/// appears whole or not at all. With `failIfExists` an existing target is not touched (ERROR_FILE_EXISTS);
/// copying a file onto itself is refused (ERROR_SHARING_VIOLATION). Non-zero on success.
int CopyFileW(const wchar* from, const wchar* to, int failIfExists) noexcept;

/// During its lifetime, the reads of this thread see one consistent view of the first file that it reads,
/// even if others write to it. Reads of other files, and those in a nested scope, are not affected.
class LoadScope {
public:
    LoadScope();
    LoadScope(const LoadScope&) = delete;
    LoadScope& operator=(const LoadScope&) = delete;
    ~LoadScope();

    /// Records the status of `file`, so that the first read in this thread's scope, if any, need not ask for
    /// it.
    static void NoteStatus(const char* file, const _stat64& status);

    /// Gets the recorded status of `file`. False if there is none, or the scope has read its file.
    static bool RecallStatus(const char* file, _stat64& status) noexcept;

private:
    std::unique_ptr<os::LoadCursor> m_cursor;
    os::LoadCursor* m_outer;
};

/// During its lifetime, the writes of this thread wait only a twentieth of a second, not a second, for a lock
/// that another process holds: for retries of a write that has waited once.
class BriefWaits {
public:
    explicit BriefWaits(bool wanted) noexcept;
    BriefWaits(const BriefWaits&) = delete;
    BriefWaits& operator=(const BriefWaits&) = delete;
    ~BriefWaits();

private:
    bool m_outer;
};

/// Reads from a private-profile file: a value; with a null tag, the section's tag names; with a null section,
/// all section names. Results and truncation are those of the real operation; 0 with the error in
/// GetLastError if nothing is found. `defaultText`, if not null, is used when nothing is found.
ulong GetPrivateProfileStringA(const char* section, const char* tag, const char* defaultText, char* buffer,
                               ulong size, const char* file);

/// Reads the lines of one section, each followed by a NUL, with another NUL at the end.
ulong GetPrivateProfileSectionA(const char* section, char* buffer, ulong size, const char* file);

/// The longest section, tag or value that can be written, in bytes: the size of the largest file that is
/// read.
inline constexpr std::size_t longestProfileText = std::size_t{1} << 30;

/// Writes one value; with a null value removes the tag; with a null tag and value removes the section. A
/// write ignores blanks around the names; a removal finds no name with blanks around it. Non-zero on success,
/// also if nothing had to change; 0, with the error in GetLastError, for a failure that may be retried.
/// Throws std::invalid_argument, with nothing written, for what could not be read back.
int WritePrivateProfileStringA(const char* section, const char* tag, const char* value, const char* file);
int WritePrivateProfileStringW(const wchar* section, const wchar* tag, const wchar* value, const wchar* file);

/// Makes all changes in order, or none: readers, even after a crash, find the file before or after all of
/// them. The last change of a tag counts. Otherwise like the write of one value, at the same cost.
int WritePrivateProfileChanges(const std::vector<ProfileChange>& changes, const char* file);

} // namespace corvane::platform

#include <corvane/platform/linux/LinuxRegistry.h>
